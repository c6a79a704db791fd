#pragma once

#include <memory>

#include "store/database.h"

namespace tavrok::store {

/** A SQLite file: one thread writes, gathering what waits into one commit; some read. */
std::unique_ptr<database> open_sqlite(const options& how);

} // namespace tavrok::store
