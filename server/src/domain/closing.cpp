#include <array>

#include "domain/audit.h"
#include "domain/document_kinds.h"
#include "domain/document_numbers.h"
#include "domain/document_parts.h"
#include "domain/documents.h"
#include "domain/fold.h"
#include "domain/money.h"
#include "domain/postings.h"
#include "domain/refused.h"
#include "store/nested.h"
#include "store/records/companies.h"

namespace tavrok::domain {

namespace {

store::document_sums sums_of(document_module module, const lines_of_draft& lines) {
    store::document_sums sums;
    for (const auto& line : lines) {
        sums.total = add_money(sums.total, line.total);
        if (module == document_module::stocktaking) sums.difference += line.amount;
    }
    return sums;
}

void check_lines(document_module module, const lines_of_draft& lines, std::optional<std::int64_t> told) {
    if (lines.empty()) throw refused("the draft has no lines");
    if (!told) throw refused(g_no_total);
    if (!agrees(sums_of(module, lines).total, *told, static_cast<std::int64_t>(lines.size()))) {
        throw refused("the lines do not add up to the total");
    }
    if (module != document_module::inbound) return;
    for (const auto& line : lines)
        if (!line.stocked) throw refused("the stock of a line was not announced");
}

void make_document(store::connection& with, const principal& who, const store::draft_record& draft,
                   const lines_of_draft& lines, std::int64_t now, const session_limits& limits) {
    const auto id = store::insert_document(with, who.company, draft, sums_of(draft.module, lines),
                                           fold(draft.remark), now);
    std::vector<posting> postings;
    for (const auto& line : lines)
        for (auto& one : enter_line(with, who, draft, id, line, now))
            postings.push_back(std::move(one));
    post(with, who, std::move(postings), now, limits);
    note_document(with, who, draft.module, "add", id, now);
    if (store::names_retired_goods(with, who.company, id)) throw refused("a product or warehouse is gone");
    give_number(with, who, draft.module, draft.type, id, now);
}

/** The module as the audit trail calls it. */
std::string_view word_of(document_module module) {
    constexpr std::array<std::string_view, 4> words{"inbound", "outbound", "taking", "transfer"};
    return words.at(static_cast<std::size_t>(module) - 1);
}

} // namespace

void note_document(store::connection& with, const principal& who, document_module module,
                   std::string_view deed, std::int64_t document, std::int64_t now) {
    note(with, who, std::string(word_of(module)) + '_' + std::string(deed), document, now);
    store::bump_data_version(with, who.company);
}

void give_number(store::connection& with, const principal& who, document_module module, std::int64_t type,
                 std::int64_t document, std::int64_t now) {
    const std::string prefix(kind_of(module, type).prefix);
    const auto day = day_of(now);
    const auto number = store::next_document_number(with, who.company, prefix, day);
    store::number_document(with, who.company, document, document_number(prefix, day, number));
}

std::string close_checked(store::connection& with, const principal& who, document_module module,
                          std::int64_t draft, const std::function<void(const lines_of_draft&)>& check,
                          std::int64_t now, const session_limits& limits) {
    const auto header = store::hold_draft(with, who.company, who.session, module, draft);
    if (!header) throw refused("unknown draft " + std::to_string(draft));
    std::string reason;
    try {
        store::nested(with, [&] {
            demand_right(who, module, header->type, "add");
            if (header->spoilt) throw refused("a part of the draft was refused");
            const auto lines = store::draft_lines(with, who.company, draft);
            check(lines);
            make_document(with, who, *header, lines, now, limits);
        });
    } catch (const refused& refusal) {
        reason = refusal.what();
    }
    store::delete_draft(with, who.company, draft);
    return reason;
}

std::string close_draft(store::connection& with, const principal& who, document_module module,
                        std::int64_t draft, std::optional<std::int64_t> total, std::int64_t now,
                        const session_limits& limits) {
    return close_checked(
        with, who, module, draft, [&](const lines_of_draft& lines) { check_lines(module, lines, total); },
        now, limits);
}

void remove_document(store::connection& with, const principal& who, document_module module, std::int64_t id,
                     std::int64_t now, const session_limits& limits) {
    const auto type = store::document_type(with, who.company, module, id);
    if (!type) throw refused("unknown document " + std::to_string(id));
    demand_right(who, module, *type, "delete");
    if (!store::delete_document(with, who.company, module, id, who.user, now)) {
        throw refused("the document was deleted meanwhile");
    }
    post(with, who, contrary_postings(with, who, module, id), now, limits);
    note_document(with, who, module, "delete", id, now);
    if (module != document_module::inbound && store::names_retired_goods(with, who.company, id)) {
        throw refused("a product or warehouse of the document is gone");
    }
}

} // namespace tavrok::domain
