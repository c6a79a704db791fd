#pragma once

#include <string>
#include <vector>

#include "store/connection.h"

namespace tavrok::domain {

/** One row that breaks a promise. */
struct finding {
    std::string rule; /**< a word: "counter", "folded", "reference", "menu", "ledger", ... */
    std::string text; /**< a sentence with the offending row */
};

/** Proves the promises over the whole database; empty when all hold. Reads only. */
std::vector<finding> check(store::connection& with);

} // namespace tavrok::domain
