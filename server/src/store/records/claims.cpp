#include "store/records/claims.h"

namespace tavrok::store {

namespace {

const std::string g_alive =
    "EXISTS (SELECT 1 FROM session s WHERE s.company = claim.company AND s.user_id = claim.user_id AND "
    "s.last_used_at > ? AND s.created_at > ?)";

const statement g_insert{"claim_insert",
                         "INSERT INTO claim (company, token, stock, user_id, use, amount, taken_at) "
                         "VALUES (?, ?, ?, ?, ?, ?, ?)"};
const statement g_by_token{
    "claim_by_token",
    "SELECT id, stock, user_id, use, amount, state FROM claim WHERE company = ? AND token = ?"};
const statement g_end{"claim_end",
                      "UPDATE claim SET state = ?, ended_at = ? WHERE company = ? AND id = ? AND state = 1"};
const statement g_beside{"claimed_beside",
                         "SELECT 1 FROM claim WHERE company = ? AND stock = ? AND state = 1 AND "
                         "user_id <> ? LIMIT 1"};
const statement g_lapse{
    "claims_lapse",
    "UPDATE claim SET state = 4, ended_at = ? WHERE company = ? AND stock = ? AND state = 1 "
    "AND NOT " +
        g_alive + " RETURNING use, amount"};
const statement g_dead{
    "claims_dead",
    "SELECT DISTINCT company, stock FROM claim WHERE state = 1 AND (company, stock) > (?, ?) AND NOT " +
        g_alive + " ORDER BY company, stock LIMIT ?"};
const statement g_rows{"claims_rows",
                       "SELECT DISTINCT stock FROM claim WHERE company = ? AND user_id = ? AND state = 1 "
                       "ORDER BY stock"};
const statement g_keeps{"claims_kept",
                        "SELECT 1 FROM session WHERE company = ? AND user_id = ? AND last_used_at > ? AND "
                        "created_at > ? LIMIT 1"};

} // namespace

void insert_claim(connection& with, std::int64_t company, const claim_record& what, const std::string& token,
                  std::int64_t now) {
    with.execute(g_insert, {company, token, what.stock, what.user, static_cast<std::int64_t>(what.use),
                            what.amount, now});
}

std::optional<claim_record> claim_by_token(connection& with, std::int64_t company, const std::string& token) {
    std::optional<claim_record> found;
    with.query(g_by_token, {company, token}, [&](const row& one) {
        found = claim_record{one.integer(0), one.integer(1),
                             one.integer(2), static_cast<claim_use>(one.integer(3)),
                             one.integer(4), static_cast<claim_state>(one.integer(5))};
    });
    return found;
}

bool end_claim(connection& with, std::int64_t company, std::int64_t claim, claim_state how,
               std::int64_t now) {
    return with.execute(g_end, {static_cast<std::int64_t>(how), now, company, claim}) != 0;
}

bool claimed_beside(connection& with, std::int64_t company, std::int64_t stock, std::int64_t user) {
    bool found = false;
    with.query(g_beside, {company, stock, user}, [&](const row&) { found = true; });
    return found;
}

ended_claims lapse_claims(connection& with, std::int64_t company, std::int64_t stock,
                          const claim_bounds& gone, std::int64_t now) {
    ended_claims ended;
    with.query(g_lapse, {now, company, stock, gone.used, gone.created}, [&](const row& one) {
        ended.amount += one.integer(1);
        if (static_cast<claim_use>(one.integer(0)) == claim_use::stocktaking) ++ended.holds;
    });
    return ended;
}

std::vector<stock_key> rows_with_dead_claims(connection& with, const claim_bounds& gone,
                                             const stock_key& after, std::int64_t limit) {
    std::vector<stock_key> rows;
    with.query(g_dead, {after.company, after.stock, gone.used, gone.created, limit}, [&](const row& one) {
        rows.push_back({one.integer(0), one.integer(1)});
    });
    return rows;
}

std::vector<std::int64_t> rows_claimed_by(connection& with, std::int64_t company, std::int64_t user) {
    std::vector<std::int64_t> rows;
    with.query(g_rows, {company, user}, [&](const row& one) { rows.push_back(one.integer(0)); });
    return rows;
}

bool keeps_claims(connection& with, std::int64_t company, std::int64_t user, const claim_bounds& gone) {
    bool found = false;
    with.query(g_keeps, {company, user, gone.used, gone.created}, [&](const row&) { found = true; });
    return found;
}

} // namespace tavrok::store
