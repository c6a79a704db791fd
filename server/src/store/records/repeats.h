#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "store/connection.h"

namespace tavrok::store {

/** Which request of which session. */
struct repeat_key {
    std::int64_t company{0};
    std::int64_t session{0};
    std::string path;
    std::string body_hash;
};

/** The kept answer, unless it was delivered or is older than `since`. */
std::optional<std::string> undelivered_answer(connection& with, const repeat_key& key, std::int64_t since);
/** Keeps an answer in place of an older one to the same request and drops the session's answers up to `old`.
 */
std::int64_t keep_answer(connection& with, const repeat_key& key, const std::string& answer, std::int64_t now,
                         std::int64_t old);
void mark_delivered(connection& with, std::int64_t company, std::int64_t session, std::int64_t id);

} // namespace tavrok::store
