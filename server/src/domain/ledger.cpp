#include "domain/ledger.h"

#include <algorithm>

#include "domain/claims.h"
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

/** Changes a row's figures together with the ledger. `claimed` is what ended claims took of the row. */
void move(store::connection& with, const principal& by, const posting& line, std::int64_t price,
          std::int64_t amount, std::int64_t claimed, std::int64_t now) {
    store::stock_change change;
    change.on_hand = amount;
    change.claimed = -claimed;
    change.user = by.user;
    if (!store::change_stock(with, by.company, line.stock, change)) {
        throw refused("less than that is free in stock row " + std::to_string(line.stock) +
                      ", or somebody else holds it");
    }
    store::insert_movement(with, by.company,
                           {line.stock, amount, amount * price, line.document, line.line, by.user, now});
}

/** Uses a live claim of the user on the row up; gives the quantity that it took of it. */
std::int64_t use_up(store::connection& with, const principal& by, const withdrawal& line, std::int64_t now) {
    const auto claim = store::claim_by_token(with, by.company, line.token);
    if (!claim || claim->user != by.user || claim->stock != line.what.stock ||
        claim->use != claim_use::outbound) {
        return 0;
    }
    return store::end_claim(with, by.company, claim->id, store::claim_state::used, now) ? claim->amount : 0;
}

bool by_row(const posting& left, const posting& right) {
    return left.stock < right.stock;
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

void put_on(store::connection& with, const principal& by, std::vector<posting> lines, std::int64_t now,
            const session_limits& limits) {
    std::stable_sort(lines.begin(), lines.end(), by_row);
    for (const auto& line : lines) {
        const auto row = lock_row(with, by, line.stock, now, limits);
        move(with, by, line, row.price, line.amount, 0, now);
    }
}

void take_back(store::connection& with, const principal& by, std::vector<posting> lines, std::int64_t now,
               const session_limits& limits) {
    std::stable_sort(lines.begin(), lines.end(), by_row);
    for (const auto& line : lines) {
        const auto row = lock_row(with, by, line.stock, now, limits);
        if (row.holder != 0) throw refused("stock row " + std::to_string(line.stock) + " is held");
        move(with, by, line, row.price, -line.amount, 0, now);
    }
}

void take_off(store::connection& with, const principal& by, std::vector<withdrawal> lines, std::int64_t now,
              const session_limits& limits) {
    std::stable_sort(lines.begin(), lines.end(), [](const withdrawal& left, const withdrawal& right) {
        return by_row(left.what, right.what);
    });
    for (const auto& line : lines) {
        const auto row = lock_row(with, by, line.what.stock, now, limits);
        move(with, by, line.what, row.price, -line.what.amount, use_up(with, by, line, now), now);
    }
}

} // namespace tavrok::domain
