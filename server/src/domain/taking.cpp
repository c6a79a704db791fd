#include <cstdlib>

#include "domain/document_parts.h"
#include "domain/documents.h"
#include "domain/money.h"
#include "domain/products.h"
#include "domain/refused.h"

namespace tavrok::domain {

namespace {

void check_count(const taking_line& line) {
    for (const auto amount : {line.sys_amount, line.real_amount})
        if (amount < 0 || amount > g_highest_amount) throw refused("amount out of range");
    if (line.what.amount != line.real_amount - line.sys_amount) {
        throw refused("the gain or loss is not what was counted less what the system held");
    }
    check_price(line.what);
    // All are bounded so that the product fits into 64 bits.
    if (!truncates_to(line.what.amount, line.what.price, line.what.total)) {
        throw refused("the money is not the gain or loss times the price");
    }
}

/** The lines' money is whole, so a client's sum of it is exact as far as binary fractions go. */
void check_sums(const lines_of_draft& lines, const std::optional<document_sums>& told) {
    if (lines.empty()) throw refused("the draft has no lines");
    if (!told) throw refused(g_no_total);
    document_sums sums;
    std::int64_t size = 0;
    for (const auto& line : lines) {
        sums.difference += line.amount;
        sums.total = add_money(sums.total, line.total);
        size = add_money(size, std::abs(line.total));
    }
    if (sums.difference != told->difference) throw refused("the lines do not add up to the gain or loss");
    const auto slack = binary_slack(size, static_cast<std::int64_t>(lines.size()));
    if (std::abs(add_money(sums.total, -told->total)) > slack) {
        throw refused("the lines' money does not add up to the total");
    }
}

} // namespace

std::int64_t add_taking_line(store::connection& with, const principal& who, std::int64_t draft,
                             const taking_line& line) {
    draft_for_line(with, who, document_module::stocktaking, draft);
    check_count(line);
    auto made = record_of(line.what);
    made.total = line.what.total;
    made.sys_amount = line.sys_amount;
    check_product(with, who, line.what.product);
    check_warehouse(with, who, line.what.warehouse);
    return store::insert_draft_line(with, who.company, draft, made);
}

std::string close_taking(store::connection& with, const principal& who, std::int64_t draft,
                         std::optional<document_sums> told, std::int64_t now, const session_limits& limits) {
    return close_checked(
        with, who, document_module::stocktaking, draft,
        [&](const lines_of_draft& lines) { check_sums(lines, told); }, now, limits);
}

} // namespace tavrok::domain
