#include "domain/ledger.h"

#include <algorithm>
#include <utility>

#include "domain/fold.h"
#include "domain/refused.h"
#include "store/records/stock.h"

namespace tavrok::domain {

namespace {

/** Locks the row, without the claims of users who are gone. */
store::stock_record lock_row(store::connection& with, const principal& by, std::int64_t stock,
                             std::int64_t now, const session_limits& limits) {
    if (!lapse_dead_claims(with, by.company, stock, now, limits)) {
        throw refused("unknown stock row " + std::to_string(stock));
    }
    return *store::read_stock(with, by.company, stock); // which nobody else changes any more
}

/** Uses a live claim of the user on the row up; gives what it took of it. */
store::ended_claims use_up(store::connection& with, const principal& by, const posting& line,
                           std::int64_t now) {
    if (line.token.empty()) return {};
    const auto claim = store::claim_by_token(with, by.company, line.token);
    if (!claim || claim->user != by.user || claim->stock != line.stock || claim->use != line.use ||
        !store::end_claim(with, by.company, claim->id, store::claim_state::used, now)) {
        return {};
    }
    return {claim->amount, claim->use == claim_use::stocktaking ? 1 : 0};
}

/** Changes a row's figures together with the ledger. */
void post_one(store::connection& with, const principal& by, const posting& line, std::int64_t now,
              const session_limits& limits) {
    const auto row = lock_row(with, by, line.stock, now, limits);
    if (line.undisturbed && row.holder != 0) {
        throw refused("stock row " + std::to_string(line.stock) + " is held");
    }
    const auto used = use_up(with, by, line, now);
    if (!store::change_stock(with, by.company, line.stock,
                             {line.amount, -used.amount, -used.holds, by.user})) {
        throw refused("less than that is free in stock row " + std::to_string(line.stock) +
                      ", or it would be too much, or somebody else holds it");
    }
    store::insert_movement(
        with, by.company,
        {line.stock, line.amount, line.amount * row.price, line.document, line.line, by.user, now});
}

/** Rows ascending; on one of them, what comes before what is taken. A line of nothing comes with nothing: it
 * keeps its turn, for it may use up a claim. */
bool goes_before(const posting& left, const posting& right) {
    return std::pair(left.stock, left.amount <= 0) < std::pair(right.stock, right.amount <= 0);
}

} // namespace

std::int64_t make_stock(store::connection& with, const principal& who, const store::draft_line_record& line,
                        std::int64_t now) {
    store::stock_record made;
    made.product = line.product;
    made.warehouse = line.warehouse;
    made.place = line.place;
    made.price = line.price;
    made.remark = line.remark;
    made.added_at = now;
    return store::insert_stock(with, who.company, made, fold(line.place), fold(line.remark));
}

void post(store::connection& with, const principal& by, std::vector<posting> lines, std::int64_t now,
          const session_limits& limits) {
    std::stable_sort(lines.begin(), lines.end(), goes_before);
    for (const auto& line : lines)
        post_one(with, by, line, now, limits);
}

} // namespace tavrok::domain
