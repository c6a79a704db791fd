#include "domain/document_parts.h"
#include "domain/documents.h"
#include "domain/fold.h"
#include "domain/postings.h"
#include "domain/refused.h"

namespace tavrok::domain {

namespace {

constexpr auto g_module = document_module::transfer;

/** The document of the draft, which the first line makes and each further one finds locked. */
std::int64_t document_for(store::connection& with, const principal& who, const store::draft_record& header,
                          std::int64_t total, std::int64_t now) {
    if (!header.document) {
        return store::insert_document(with, who.company, header, {.total = total}, fold(header.remark), now);
    }
    if (!store::grow_transfer(with, who.company, *header.document, total)) {
        throw refused("the transfer was deleted meanwhile, or its total is out of range");
    }
    return *header.document;
}

} // namespace

bool add_transfer_line(store::connection& with, const principal& who, std::int64_t draft,
                       const document_line& line, std::int64_t now, const session_limits& limits) {
    const auto header = draft_for_line(with, who, g_module, draft);
    check_amounts(line);
    check_place(line);
    auto made = record_of(line);
    made.warehouse = header.warehouse_out.value_or(0);
    const auto document = document_for(with, who, header, made.total, now);
    post(with, who, enter_line(with, who, header, document, made, now), now, limits);
    store::count_document_line(with, who.company, draft, document);
    note_document(with, who, g_module, header.document ? "line_add" : "add", document, now);
    check_product(with, who, made.product);
    check_warehouse(with, who, made.warehouse);
    check_warehouse(with, who, header.warehouse_in.value_or(0));
    if (!header.document) give_number(with, who, g_module, header.type, document, now);
    return !header.document;
}

} // namespace tavrok::domain
