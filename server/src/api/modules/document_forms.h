#pragma once

#include <span>
#include <string_view>

#include "api/endpoint.h"
#include "domain/documents.h"

namespace tavrok::api {

/** The right on any of these pages lets in; the domain judges the record. */
access on_any_page(std::span<const std::string_view> pages, std::string_view right);

/** The keys that lines and their stock have in common. */
domain::document_line line_of(const fields& form);

} // namespace tavrok::api
