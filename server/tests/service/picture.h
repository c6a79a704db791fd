#pragma once

#include <cstdint>
#include <map>
#include <string>

#include "store/database.h"

namespace tavrok::test {

struct paper_line {
    std::int64_t amount{0}; /**< of a stocktaking, the gain or loss */
    std::int64_t stock{0};  /**< the row that it takes from or counts; inbound ones have none */
    std::int64_t sys{0};    /**< stocktaking only: what the system held */
    /** Inbound: its stock was announced. Transfer: its goods came in at the destination, at the line's place.
     */
    bool stocked{false};
    bool operator==(const paper_line&) const = default;
};

enum class paper_state { draft, live, deleted };

/** A draft or a document, whichever it is by now. */
struct paper {
    int module{0}; /**< as stored: inbound, outbound, stocktaking, transfer */
    paper_state state{paper_state::draft};
    std::map<std::string, paper_line> lines{}; /**< by remark */
    bool operator==(const paper&) const = default;
};

struct claim_state_of {
    std::int64_t stock{0};
    std::int64_t amount{0};
    int use{0};
    int state{1}; /**< as stored */
    bool operator==(const claim_state_of&) const = default;
};

/** All that one user has written: as he remembers it, or as the database has it. His texts are unique. */
struct picture {
    std::map<std::string, paper> papers{};          /**< by remark */
    std::map<std::string, claim_state_of> claims{}; /**< by token */
    bool operator==(const picture&) const = default;
};

/** Out of the database. A paper or line that is there twice gets a second name, so that it equals nothing. */
picture picture_of(store::database& where, std::int64_t user);
/** Where the two differ, for whoever reads a failure. */
std::string difference(const picture& remembered, const picture& found);

} // namespace tavrok::test
