#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "api/form_parser.h"
#include "api/json_writer.h"
#include "domain/listing.h"

namespace tavrok::api {

/** The value of a key that may be left out: none when it was. */
std::optional<std::string> given(const fields& form, std::string_view key);

std::optional<std::int64_t> given_number(const fields& form, std::string_view key);

/** A moment in seconds that may be left out. */
key date_key(std::string_view name);
/** The keys that end every request for a page. */
key page_num_key();
key page_size_key();
/** The page that such a request asks for. */
domain::page_wish page_wish_of(const fields& form);

/** Writes the answer to an addition. */
void write_added(std::string& answer, const domain::added& what);

/** Writes a page; `write(json, record)` writes a record of the list. */
template <typename record, typename writer>
void write_page(std::string& answer, const domain::list_page<record>& page, writer write) {
    answer.reserve(80 + page.list.size() * 320);
    json_writer json(answer);
    json.open_object().name("list").open_array();
    for (const auto& one : page.list)
        write(json, one);
    json.close_array().integer("total", page.total).integer("page_count", page.page_count);
    json.integer("page_num", page.page_num).close_object();
}

} // namespace tavrok::api
