#include "domain/claims.h"

#include <algorithm>

#include "domain/products.h"
#include "domain/refused.h"

namespace tavrok::domain {

namespace {

/** A session's last use is noted to the minute: a claim never lapses before its time, at most that much
 * later. */
constexpr std::int64_t g_noted_within = 60;

constexpr std::string_view g_mark = "L";
constexpr std::size_t g_token_size = 65;

store::claim_bounds gone_at(std::int64_t now, const session_limits& limits) {
    return {now - std::min(limits.idle, limits.claim + g_noted_within), now - limits.total};
}

[[noreturn]] void refuse_unknown(std::int64_t stock) {
    throw refused("unknown stock row " + std::to_string(stock));
}

store::stock_change change_of(const principal& who, const claim_wish& wish) {
    store::stock_change change;
    change.user = who.user;
    if (wish.use == claim_use::stocktaking) {
        change.holds = 1;
    } else {
        change.claimed = wish.amount;
    }
    return change;
}

/** The row is locked: whoever claims it beside the user is known. */
void hold_whole(store::connection& with, const principal& who, const claim_wish& wish, std::int64_t now,
                const session_limits& limits) {
    if (!lapse_dead_claims(with, who.company, wish.stock, now, limits)) refuse_unknown(wish.stock);
    if (store::claimed_beside(with, who.company, wish.stock, who.user)) {
        throw refused("somebody else claims a part of the row");
    }
    if (!store::change_stock(with, who.company, wish.stock, change_of(who, wish))) {
        throw refused("somebody else holds the row");
    }
}

/** The guarded statement decides; only when it says no, dead claims are looked for. */
void claim_amount(store::connection& with, const principal& who, const claim_wish& wish, std::int64_t now,
                  const session_limits& limits) {
    const auto change = change_of(who, wish);
    if (store::change_stock(with, who.company, wish.stock, change)) return;
    if (!lapse_dead_claims(with, who.company, wish.stock, now, limits)) refuse_unknown(wish.stock);
    if (!store::change_stock(with, who.company, wish.stock, change)) {
        throw refused("less than that is free, or somebody else holds the row");
    }
}

} // namespace

std::string take_claim(store::connection& with, const principal& who, const claim_wish& wish,
                       std::int64_t now, const session_limits& limits) {
    const bool whole = wish.use == claim_use::stocktaking;
    if (!whole && (wish.amount < 0 || wish.amount > g_highest_amount)) throw refused("amount out of range");
    whole ? hold_whole(with, who, wish, now, limits) : claim_amount(with, who, wish, now, limits);
    const auto token = std::string(g_mark) + new_token();
    store::claim_record made;
    made.stock = wish.stock;
    made.user = who.user;
    made.use = wish.use;
    made.amount = whole ? 0 : wish.amount;
    store::insert_claim(with, who.company, made, token, now);
    return token;
}

bool may_be_claim(std::string_view token) {
    return token.size() == g_token_size && token.starts_with(g_mark) &&
           token.find_first_not_of("0123456789abcdef", g_mark.size()) == std::string_view::npos;
}

void give_back_claim(store::connection& with, const principal& who, const std::string& token,
                     std::int64_t now) {
    if (!may_be_claim(token)) return;
    const auto claim = store::claim_by_token(with, who.company, token);
    if (!claim || claim->user != who.user || claim->state != store::claim_state::active) return;
    if (!store::hold_stock(with, who.company, claim->stock)) return;
    if (!store::end_claim(with, who.company, claim->id, store::claim_state::given_back, now)) return;
    store::release_stock(with, who.company, claim->stock, claim->amount,
                         claim->use == claim_use::stocktaking ? 1 : 0);
}

bool lapse_dead_claims(store::connection& with, std::int64_t company, std::int64_t stock, std::int64_t now,
                       const session_limits& limits) {
    if (!store::hold_stock(with, company, stock)) return false;
    const auto ended = store::lapse_claims(with, company, stock, gone_at(now, limits), now);
    if (ended.amount != 0 || ended.holds != 0) {
        store::release_stock(with, company, stock, ended.amount, ended.holds);
    }
    return true;
}

std::vector<store::stock_key> rows_to_lapse(store::connection& with, std::int64_t now,
                                            const session_limits& limits, const store::stock_key& after,
                                            std::int64_t most) {
    return store::rows_with_dead_claims(with, gone_at(now, limits), after, most);
}

std::int64_t sweep_claims(store::connection& with, std::int64_t now, const session_limits& limits,
                          std::int64_t most) {
    const auto rows = rows_to_lapse(with, now, limits, {}, most);
    for (const auto& row : rows)
        lapse_dead_claims(with, row.company, row.stock, now, limits);
    return static_cast<std::int64_t>(rows.size());
}

void lapse_claims_before_use(store::connection& with, const principal& who, std::int64_t now,
                             const session_limits& limits) {
    if (store::keeps_claims(with, who.company, who.user, gone_at(now, limits))) return;
    for (const auto stock : store::rows_claimed_by(with, who.company, who.user))
        lapse_dead_claims(with, who.company, stock, now, limits);
}

} // namespace tavrok::domain
