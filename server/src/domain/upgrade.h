#pragma once

#include <cstdint>
#include <vector>

#include "store/connection.h"

namespace tavrok::domain {

/** Rows that are older than a folded column have it empty: no step of the schema folds as fold() does. */

/** True when there are such rows (reads). */
bool folds_missing(store::connection& with);
/** Fills them (writes). Gives the companies whose name an older company has, case aside: their folded name
 * stays empty. */
std::vector<std::int64_t> complete_folds(store::connection& with);

} // namespace tavrok::domain
