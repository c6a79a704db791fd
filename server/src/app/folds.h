#pragma once

#include "store/database.h"

namespace tavrok::app {

/** Completes what an older program left in the database that was just opened; a line in the log for what
 * cannot be completed. */
void complete_folds(store::database& where);

} // namespace tavrok::app
