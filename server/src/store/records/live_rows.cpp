#include "store/records/live_rows.h"

#include <string>

namespace tavrok::store {

bool is_live(connection& with, const listing& what, std::int64_t company, std::int64_t id) {
    const statement search{
        std::string(what.name) + "_is_live",
        std::string("SELECT id FROM ") + what.table + " WHERE company = ? AND id = ? AND state = 1"};
    bool found = false;
    with.query(search, {company, id}, [&](const row&) { found = true; });
    return found;
}

std::int64_t retire(connection& with, const listing& what, std::int64_t company, std::int64_t id,
                    std::int64_t now) {
    const statement change{std::string(what.name) + "_retire",
                           std::string("UPDATE ") + what.table +
                               " SET state = 2, retired_at = ? WHERE company = ? AND id = ? AND state = 1"};
    return with.execute(change, {now, company, id});
}

void clear_default(connection& with, const listing& what, std::int64_t company, std::int64_t no,
                   std::int64_t except) {
    const statement change{
        std::string(what.name) + "_clear_default",
        std::string("UPDATE ") + what.table +
            " SET isdefault = ? WHERE company = ? AND state = 1 AND isdefault = 1 AND id <> ?"};
    with.execute(change, {no, company, except});
}

} // namespace tavrok::store
