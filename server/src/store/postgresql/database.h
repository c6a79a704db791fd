#pragma once

#include <memory>

#include "store/database.h"

namespace tavrok::store {

/** A PostgreSQL database: a pool of connections, each with its thread, that share one queue. */
std::unique_ptr<database> open_postgresql(const options& how);

} // namespace tavrok::store
