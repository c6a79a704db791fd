#pragma once

#include <cstdint>
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

struct kept_answer {
    std::int64_t id{0}; /**< 0: none is kept */
    bool delivered{false};
    std::string answer;
};

/** The kept answer, unless it is older than `since`. */
kept_answer answer_kept(connection& with, const repeat_key& key, std::int64_t since);
/** Keeps an answer in place of the one with the id `former` and drops the session's answers up to `old`. Ends
 * in error_kind::unique where another answer to the same request is kept. */
std::int64_t keep_answer(connection& with, const repeat_key& key, const std::string& answer, std::int64_t now,
                         std::int64_t old, std::int64_t former);
/** Drops the session's answers to all requests of that path. */
void drop_answers(connection& with, std::int64_t company, std::int64_t session, const std::string& path);
void mark_delivered(connection& with, std::int64_t company, std::int64_t session, std::int64_t id);

} // namespace tavrok::store
