#include "store/records/captchas.h"

namespace tavrok::store {

namespace {

const statement g_keep{
    "captcha_keep",
    "INSERT INTO captcha (visitor_hash, code_hash, made_at) VALUES (?, ?, ?) "
    "ON CONFLICT (visitor_hash) DO UPDATE SET code_hash = excluded.code_hash, made_at = excluded.made_at, "
    "attempts = 0, used_for = '', used_at = 0, fitted_for = ''"};
const statement g_count{
    "captcha_count",
    "UPDATE captcha SET attempts = attempts + CASE WHEN fitted_for <> '' AND fitted_for = ? "
    "THEN 0 ELSE ? END WHERE visitor_hash = ? "
    "RETURNING code_hash, made_at, attempts, used_for, used_at, fitted_for"};
const statement g_fit{"captcha_fit", "UPDATE captcha SET fitted_for = ? WHERE visitor_hash = ?"};
const statement g_use{"captcha_use", "UPDATE captcha SET used_for = ?, used_at = ? WHERE visitor_hash = ?"};
const statement g_delete_old{"captcha_delete_old", "DELETE FROM captcha WHERE made_at <= ?"};

} // namespace

void keep_captcha(connection& with, const std::string& visitor_hash, const std::string& code_hash,
                  std::int64_t now) {
    with.execute(g_keep, {visitor_hash, code_hash, now});
}

std::optional<captcha_record> count_captcha(connection& with, const std::string& visitor_hash,
                                            const std::string& request_hash, std::int64_t attempts) {
    std::optional<captcha_record> found;
    with.query(g_count, {request_hash, attempts, visitor_hash}, [&](const row& one) {
        found = captcha_record{std::string(one.text(0)), one.integer(1), one.integer(2),
                               std::string(one.text(3)), one.integer(4), std::string(one.text(5))};
    });
    return found;
}

void fit_captcha(connection& with, const std::string& visitor_hash, const std::string& request_hash) {
    with.execute(g_fit, {request_hash, visitor_hash});
}

void use_captcha(connection& with, const std::string& visitor_hash, const std::string& request_hash,
                 std::int64_t now) {
    with.execute(g_use, {request_hash, now, visitor_hash});
}

void delete_old_captchas(connection& with, std::int64_t made) {
    with.execute(g_delete_old, {made});
}

} // namespace tavrok::store
