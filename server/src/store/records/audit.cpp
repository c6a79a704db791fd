#include "store/records/audit.h"

namespace tavrok::store {

namespace {

const statement g_insert{
    "audit_insert",
    "INSERT INTO audit (company, user_id, noted_at, what, object_id, detail) VALUES (?, ?, ?, ?, ?, ?)"};

} // namespace

void insert_audit(connection& with, std::int64_t company, std::int64_t user, std::int64_t now,
                  const std::string& what, std::int64_t object, std::int64_t detail) {
    with.execute(g_insert, {company, user, now, what, object, detail});
}

} // namespace tavrok::store
