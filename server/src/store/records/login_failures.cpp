#include "store/records/login_failures.h"

namespace tavrok::store {

namespace {

const statement g_insert{"failure_insert",
                         "INSERT INTO login_failure (name_hash, peer, failed_at) VALUES (?, ?, ?)"};
const statement g_of_name{"failure_of_name",
                          "SELECT count(*), coalesce(max(failed_at), 0) FROM login_failure "
                          "WHERE name_hash = ? AND failed_at > ?"};
const statement g_of_peer{"failure_of_peer",
                          "SELECT count(*), coalesce(max(failed_at), 0) FROM login_failure "
                          "WHERE peer = ? AND failed_at > ?"};
const statement g_delete_old{"failure_delete_old", "DELETE FROM login_failure WHERE failed_at <= ?"};

failure_count count(connection& with, const statement& what, const std::string& key, std::int64_t since) {
    failure_count result;
    with.query(what, {key, since}, [&](const row& one) { result = {one.integer(0), one.integer(1)}; });
    return result;
}

} // namespace

void insert_login_failure(connection& with, const std::string& name_hash, const std::string& peer,
                          std::int64_t now) {
    with.execute(g_insert, {name_hash, peer, now});
}

failure_count failures_of_name(connection& with, const std::string& name_hash, std::int64_t since) {
    return count(with, g_of_name, name_hash, since);
}

failure_count failures_of_peer(connection& with, const std::string& peer, std::int64_t since) {
    return count(with, g_of_peer, peer, since);
}

void delete_old_failures(connection& with, std::int64_t until) {
    with.execute(g_delete_old, {until});
}

} // namespace tavrok::store
