#pragma once

#include <cstdint>
#include <vector>

#include "domain/principal.h"
#include "domain/sessions.h"
#include "store/connection.h"
#include "store/records/drafts.h"

namespace tavrok::domain {

/** What a document does to stock. Rows are taken by ascending id, whatever the order of the lines. */

/** A line of a document with what the ledger needs of it. */
struct posting {
    std::int64_t document{0};
    std::int64_t line{0};
    std::int64_t stock{0};
    std::int64_t amount{0};
};

/** Makes the stock row of an inbound line, with nothing on hand yet; gives its id. */
std::int64_t make_stock(store::connection& with, const principal& who, const store::draft_line_record& line,
                        std::int64_t now);
/** Puts the lines' amounts on their rows. `by` is the user who writes or deletes a document: where another
 * holds the row as a whole, it is refused. */
void put_on(store::connection& with, const principal& by, std::vector<posting> lines, std::int64_t now,
            const session_limits& limits);
/** Takes the lines' amounts off their rows, from what is free of claims and of holders, the user himself
 * included. */
void take_back(store::connection& with, const principal& by, std::vector<posting> lines, std::int64_t now,
               const session_limits& limits);

/** An outbound line and the claim that it names. */
struct withdrawal {
    posting what;
    std::string token;
};
/** Takes the lines' amounts off their rows. A live claim of the user is used up; a line without one takes
 * from what is free. */
void take_off(store::connection& with, const principal& by, std::vector<withdrawal> lines, std::int64_t now,
              const session_limits& limits);

} // namespace tavrok::domain
