#pragma once

#include <cstdint>
#include <string_view>

#include "store/records/drafts.h"

namespace tavrok::domain {

/** Which counterparty a document has, and of which partner type. */
enum class counterparty { none, supplier, client, any_partner, department };

/** A kind of documents. */
struct document_kind {
    std::int64_t type;
    std::string_view page;   /**< whose rights govern it */
    std::string_view prefix; /**< two letters that begin its numbers */
    counterparty partner;
};

/** Refuses a kind that the module does not have. */
const document_kind& kind_of(store::document_module module, std::int64_t type);

} // namespace tavrok::domain
