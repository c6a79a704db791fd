#include "store/records/repeats.h"

namespace tavrok::store {

namespace {

const statement g_find{
    "repeat_find",
    "SELECT id, delivered, answer FROM repeat_record WHERE company = ? AND session = ? AND "
    "path = ? AND body_hash = ? AND answered_at > ?"};
const statement g_drop{"repeat_drop",
                       "DELETE FROM repeat_record WHERE company = ? AND session = ? AND id = ?"};
const statement g_drop_path{"repeat_drop_path",
                            "DELETE FROM repeat_record WHERE company = ? AND session = ? AND path = ?"};
const statement g_drop_old{
    "repeat_drop_old", "DELETE FROM repeat_record WHERE company = ? AND session = ? AND answered_at <= ?"};
const statement g_insert{"repeat_insert",
                         "INSERT INTO repeat_record (company, session, path, body_hash, answer, answered_at, "
                         "delivered) VALUES (?, ?, ?, ?, ?, ?, 0) RETURNING id"};
const statement g_delivered{
    "repeat_delivered",
    "UPDATE repeat_record SET delivered = 1 WHERE company = ? AND session = ? AND id = ?"};

} // namespace

kept_answer answer_kept(connection& with, const repeat_key& key, std::int64_t since) {
    kept_answer found;
    with.query(g_find, {key.company, key.session, key.path, key.body_hash, since}, [&](const row& one) {
        found = {one.integer(0), one.integer(1) != 0, std::string(one.text(2))};
    });
    return found;
}

std::int64_t keep_answer(connection& with, const repeat_key& key, const std::string& answer, std::int64_t now,
                         std::int64_t old, std::int64_t former) {
    with.execute(g_drop_old, {key.company, key.session, old});
    if (former != 0) with.execute(g_drop, {key.company, key.session, former});
    std::int64_t id = 0;
    with.query(g_insert, {key.company, key.session, key.path, key.body_hash, answer, now},
               [&](const row& one) { id = one.integer(0); });
    return id;
}

void drop_answers(connection& with, std::int64_t company, std::int64_t session, const std::string& path) {
    with.execute(g_drop_path, {company, session, path});
}

void mark_delivered(connection& with, std::int64_t company, std::int64_t session, std::int64_t id) {
    with.execute(g_delivered, {company, session, id});
}

} // namespace tavrok::store
