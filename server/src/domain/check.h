#pragma once

#include <span>
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

/** check() in parts that need nothing of each other, so that they can run at the same time: what they say
 * together, in their order, is what it says. Each proves its promises of one moment. */
using proof = void (*)(store::connection& with, std::vector<finding>& found);
std::span<const proof> proofs();

} // namespace tavrok::domain
