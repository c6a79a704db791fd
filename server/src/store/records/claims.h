#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "store/connection.h"

namespace tavrok::store {

/** What a claim is for, as the protocol numbers it. The second kind holds its row as a whole. */
enum class claim_use : std::int64_t { transfer = 1, stocktaking = 2, outbound = 3 };
enum class claim_state : std::int64_t { active = 1, used = 2, given_back = 3, lapsed = 4 };

struct claim_record {
    std::int64_t id{0};
    std::int64_t stock{0};
    std::int64_t user{0};
    claim_use use{claim_use::outbound};
    std::int64_t amount{0};
    claim_state state{claim_state::active};
};

/** A user's sessions used at or before `used`, or made at or before `created`, keep no claim alive. */
struct claim_bounds {
    std::int64_t used{0};
    std::int64_t created{0};
};

void insert_claim(connection& with, std::int64_t company, const claim_record& what, const std::string& token,
                  std::int64_t now);
std::optional<claim_record> claim_by_token(connection& with, std::int64_t company, const std::string& token);
/** Ends an active claim; false when it is not active any more. The row that it is on is locked before. */
bool end_claim(connection& with, std::int64_t company, std::int64_t claim, claim_state how, std::int64_t now);
/** Whether anybody but the user has an active claim on a row. */
bool claimed_beside(connection& with, std::int64_t company, std::int64_t stock, std::int64_t user);

/** What the ended claims of a row took of it. */
struct ended_claims {
    std::int64_t amount{0};
    std::int64_t holds{0};
};
/** Ends the active claims of a row whose users are gone. The row is locked before. */
ended_claims lapse_claims(connection& with, std::int64_t company, std::int64_t stock,
                          const claim_bounds& gone, std::int64_t now);

struct stock_key {
    std::int64_t company{0};
    std::int64_t stock{0};
};
/** Rows with claims of users who are gone, each once, by company and id, from behind `after` on. */
std::vector<stock_key> rows_with_dead_claims(connection& with, const claim_bounds& gone,
                                             const stock_key& after, std::int64_t limit);
/** Rows on which the user has active claims, by id. */
std::vector<std::int64_t> rows_claimed_by(connection& with, std::int64_t company, std::int64_t user);
/** Whether the user has a session that keeps his claims alive. */
bool keeps_claims(connection& with, std::int64_t company, std::int64_t user, const claim_bounds& gone);

} // namespace tavrok::store
