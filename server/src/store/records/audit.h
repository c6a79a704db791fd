#pragma once

#include <cstdint>
#include <string>

#include "store/connection.h"

namespace tavrok::store {

void insert_audit(connection& with, std::int64_t company, std::int64_t user, std::int64_t now,
                  const std::string& what, std::int64_t object, std::int64_t detail);

} // namespace tavrok::store
