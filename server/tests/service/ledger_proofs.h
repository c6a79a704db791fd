#pragma once

#include <string>

#include "store/database.h"

namespace tavrok::test {

/** What does not add up in the books of the database, told by plain sums over its tables that share nothing
 * with the service's own proofs: stock with its movements, claims and documents; documents with their lines;
 * numbers without gap or double. "" where everything does. */
std::string ledger_faults(store::connection& with);
std::string ledger_faults(store::database& where);

} // namespace tavrok::test
