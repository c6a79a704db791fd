#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "domain/claims.h"
#include "domain/principal.h"
#include "domain/sessions.h"
#include "store/connection.h"
#include "store/records/drafts.h"

namespace tavrok::domain {

/** What a line of a document does to a stock row. */
struct posting {
    std::int64_t document{0};
    std::int64_t line{0};
    std::int64_t stock{0};
    std::int64_t amount{0};             /**< comes onto the row; below zero: is taken off it */
    std::string token{};                /**< the claim that the line names; may be nobody's */
    claim_use use{claim_use::outbound}; /**< what that claim must be for */
    bool undisturbed{false};            /**< only while nobody holds the row as a whole, the user included */
};

/** Makes a stock row for the goods of a line, with nothing on hand yet; gives its id. */
std::int64_t make_stock(store::connection& with, const principal& who, const store::draft_line_record& line,
                        std::int64_t now);
/** Changes the rows and writes the ledger. Rows are taken by ascending id, whatever the order of the lines;
 * on one row what comes goes before what is taken. A live claim of the user that a line names is used up;
 * beyond it, only what is free of claims is taken. Refused where another user holds a row as a whole. `by` is
 * the user who writes or deletes a document. */
void post(store::connection& with, const principal& by, std::vector<posting> lines, std::int64_t now,
          const session_limits& limits);

} // namespace tavrok::domain
