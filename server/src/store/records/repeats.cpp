#include "store/records/repeats.h"

namespace tavrok::store {

namespace {

const statement g_find{"repeat_find",
                       "SELECT answer FROM repeat_record WHERE company = ? AND session = ? AND path = ? "
                       "AND body_hash = ? AND delivered = 0 AND answered_at > ?"};
const statement g_drop{"repeat_drop",
                       "DELETE FROM repeat_record WHERE company = ? AND session = ? AND path = ? "
                       "AND body_hash = ?"};
const statement g_drop_old{
    "repeat_drop_old", "DELETE FROM repeat_record WHERE company = ? AND session = ? AND answered_at <= ?"};
const statement g_insert{"repeat_insert",
                         "INSERT INTO repeat_record (company, session, path, body_hash, answer, answered_at, "
                         "delivered) VALUES (?, ?, ?, ?, ?, ?, 0) RETURNING id"};
const statement g_delivered{
    "repeat_delivered",
    "UPDATE repeat_record SET delivered = 1 WHERE company = ? AND session = ? AND id = ?"};

} // namespace

std::optional<std::string> undelivered_answer(connection& with, const repeat_key& key, std::int64_t since) {
    std::optional<std::string> answer;
    with.query(g_find, {key.company, key.session, key.path, key.body_hash, since},
               [&](const row& one) { answer = std::string(one.text(0)); });
    return answer;
}

std::int64_t keep_answer(connection& with, const repeat_key& key, const std::string& answer, std::int64_t now,
                         std::int64_t old) {
    with.execute(g_drop_old, {key.company, key.session, old});
    with.execute(g_drop, {key.company, key.session, key.path, key.body_hash});
    std::int64_t id = 0;
    with.query(g_insert, {key.company, key.session, key.path, key.body_hash, answer, now},
               [&](const row& one) { id = one.integer(0); });
    return id;
}

void mark_delivered(connection& with, std::int64_t company, std::int64_t session, std::int64_t id) {
    with.execute(g_delivered, {company, session, id});
}

} // namespace tavrok::store
