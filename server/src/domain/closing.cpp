#include "domain/audit.h"
#include "domain/document_kinds.h"
#include "domain/document_numbers.h"
#include "domain/documents.h"
#include "domain/fold.h"
#include "domain/ledger.h"
#include "domain/money.h"
#include "domain/refused.h"
#include "store/nested.h"
#include "store/records/companies.h"
#include "store/records/stock.h"

namespace tavrok::domain {

namespace {

using lines_of_draft = std::vector<store::draft_line_record>;

std::int64_t total_of(const lines_of_draft& lines) {
    std::int64_t sum = 0;
    for (const auto& line : lines)
        sum = add_money(sum, line.amount * line.price);
    return sum;
}

void check_lines(document_module module, const lines_of_draft& lines, std::int64_t told) {
    if (lines.empty()) throw refused("the draft has no lines");
    if (!agrees(total_of(lines), told, static_cast<std::int64_t>(lines.size()))) {
        throw refused("the lines do not add up to the total");
    }
    if (module != document_module::inbound) return;
    for (const auto& line : lines)
        if (!line.stocked) throw refused("the stock of a line was not announced");
}

void post_inbound(store::connection& with, const principal& who, std::int64_t document, lines_of_draft lines,
                  std::int64_t now, const session_limits& limits) {
    std::vector<posting> postings;
    for (auto& line : lines) {
        line.stock = make_stock(with, who, line, now);
        const auto id =
            store::insert_document_line(with, who.company, document, line, line.amount * line.price);
        postings.push_back({document, id, line.stock, line.amount});
    }
    put_on(with, who, std::move(postings), now, limits);
}

/** A line takes from the row that it names: it must say the same of product and warehouse, and where the
 * goods lie is the row's affair. */
void fit_to_row(store::connection& with, const principal& who, store::draft_line_record& line) {
    auto row = store::read_stock(with, who.company, line.stock);
    if (!row) throw refused("unknown stock row " + std::to_string(line.stock));
    if (row->product != line.product || row->warehouse != line.warehouse) {
        throw refused("the line names other goods than stock row " + std::to_string(line.stock));
    }
    line.place = std::move(row->place);
}

void post_outbound(store::connection& with, const principal& who, std::int64_t document, lines_of_draft lines,
                   std::int64_t now, const session_limits& limits) {
    std::vector<withdrawal> withdrawals;
    for (auto& line : lines) {
        fit_to_row(with, who, line);
        const auto id =
            store::insert_document_line(with, who.company, document, line, line.amount * line.price);
        withdrawals.push_back({{document, id, line.stock, line.amount}, line.token});
    }
    take_off(with, who, std::move(withdrawals), now, limits);
}

void make_document(store::connection& with, const principal& who, const store::draft_record& draft,
                   std::int64_t told, std::int64_t now, const session_limits& limits) {
    auto lines = store::draft_lines(with, who.company, draft.id);
    check_lines(draft.module, lines, told);
    const auto id =
        store::insert_document(with, who.company, draft, total_of(lines), fold(draft.remark), now);
    const bool inbound = draft.module == document_module::inbound;
    const auto post = inbound ? post_inbound : post_outbound;
    post(with, who, id, std::move(lines), now, limits);
    note(with, who, inbound ? "inbound_add" : "outbound_add", id, now);
    // From here on the company's row is locked: a product that is being retired meanwhile is retired now, or
    // waits and finds this stock.
    store::bump_data_version(with, who.company);
    if (store::names_retired_goods(with, who.company, id)) throw refused("a product or warehouse is gone");
    const auto& kind = kind_of(draft.module, draft.type);
    const auto day = day_of(now);
    const auto number = store::next_document_number(with, who.company, std::string(kind.prefix), day);
    store::number_document(with, who.company, id, document_number(kind.prefix, day, number));
}

std::vector<posting> postings_of(store::connection& with, const principal& who, std::int64_t document) {
    std::vector<posting> postings;
    for (const auto& line : store::document_lines(with, who.company, document))
        postings.push_back({document, line.id, line.stock, line.amount});
    return postings;
}

} // namespace

std::string close_draft(store::connection& with, const principal& who, document_module module,
                        std::int64_t draft, std::int64_t total, std::int64_t now,
                        const session_limits& limits) {
    const auto header = store::hold_draft(with, who.company, who.session, module, draft);
    if (!header) throw refused("unknown draft " + std::to_string(draft));
    std::string reason;
    try {
        store::nested(with, [&] {
            demand_right(who, module, header->type, "add");
            make_document(with, who, *header, total, now, limits);
        });
    } catch (const refused& refusal) {
        reason = refusal.what();
    }
    store::delete_draft(with, who.company, draft);
    return reason;
}

void remove_document(store::connection& with, const principal& who, document_module module, std::int64_t id,
                     std::int64_t now, const session_limits& limits) {
    const auto type = store::document_type(with, who.company, module, id);
    if (!type) throw refused("unknown document " + std::to_string(id));
    demand_right(who, module, *type, "delete");
    if (!store::delete_document(with, who.company, module, id, who.user, now)) {
        throw refused("the document was deleted meanwhile");
    }
    const bool inbound = module == document_module::inbound;
    inbound ? take_back(with, who, postings_of(with, who, id), now, limits)
            : put_on(with, who, postings_of(with, who, id), now, limits);
    note(with, who, inbound ? "inbound_delete" : "outbound_delete", id, now);
    store::bump_data_version(with, who.company);
    if (!inbound && store::names_retired_goods(with, who.company, id)) {
        throw refused("a product or warehouse of the document is gone");
    }
}

} // namespace tavrok::domain
