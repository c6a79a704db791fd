#pragma once

#include "store/connection.h"

namespace tavrok::store {

/** The class of an extended result code of SQLite. */
error_kind classify_sqlite(int extended_code);

/** True for a code after which what is on disk cannot be trusted: a failed sync, a corrupt file. */
bool casts_doubt(int extended_code);

} // namespace tavrok::store
