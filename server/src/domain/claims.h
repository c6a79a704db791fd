#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "domain/principal.h"
#include "domain/sessions.h"
#include "store/connection.h"
#include "store/records/claims.h"
#include "store/records/stock.h"

namespace tavrok::domain {

/** A user claims stock while he writes a document, so that nobody else takes it meanwhile. A claim is a
 * record; what it takes of its row stands in the row's figures too, in the same transaction. It ends once:
 * used up by a document, given back, or lapsed when its user is gone, that is `limits.claim` after his last
 * request or when all his sessions have ended. */
using store::claim_use;

struct claim_wish {
    claim_use use{claim_use::outbound};
    std::int64_t stock{0};
    std::int64_t amount{0}; /**< ignored by stocktaking, which holds the whole row */
};

/** Gives the claim's token, an opaque text that starts with a letter. Throws `refused`: a quantity when more
 * is asked than is on hand less claims, or another user holds the row; the whole row when another user claims
 * any of it. */
std::string take_claim(store::connection& with, const principal& who, const claim_wish& wish,
                       std::int64_t now, const session_limits& limits = {});
/** Whether a text has the form of such a token. A client names as one what came back instead, too: an error
 * page of something between, for example. */
bool may_be_claim(std::string_view token);
/** Gives a claim of the user back; a token that names none is as good as given back. */
void give_back_claim(store::connection& with, const principal& who, const std::string& token,
                     std::int64_t now);

/** Ends the claims on a row whose users are gone. Locks the row. False for an unknown row. */
bool lapse_dead_claims(store::connection& with, std::int64_t company, std::int64_t stock, std::int64_t now,
                       const session_limits& limits = {});
/** The next rows, at most `most`, that have claims whose users are gone. */
std::vector<store::stock_key> rows_to_lapse(store::connection& with, std::int64_t now,
                                            const session_limits& limits, const store::stock_key& after = {},
                                            std::int64_t most = 500);
/** Ends all claims whose users are gone, at most `most` rows at once; gives how many rows it looked at. */
std::int64_t sweep_claims(store::connection& with, std::int64_t now, const session_limits& limits = {},
                          std::int64_t most = 500);
/** Before a request or a login of a user is noted who was gone: his claims have lapsed, and his return does
 * not revive them. */
void lapse_claims_before_use(store::connection& with, const principal& who, std::int64_t now,
                             const session_limits& limits = {});

} // namespace tavrok::domain
