#pragma once

#include <cstdint>
#include <string>

#include "store/connection.h"

namespace tavrok::store {

/** Failures since a moment: how many, and when the last one was (0: none). */
struct failure_count {
    std::int64_t count{0};
    std::int64_t last_at{0};
};

void insert_login_failure(connection& with, const std::string& name_hash, const std::string& peer,
                          std::int64_t now);
/** Both count what happened after `since`. */
failure_count failures_of_name(connection& with, const std::string& name_hash, std::int64_t since);
failure_count failures_of_peer(connection& with, const std::string& peer, std::int64_t since);
void delete_old_failures(connection& with, std::int64_t until);

} // namespace tavrok::store
