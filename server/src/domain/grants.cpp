#include "domain/grants.h"

#include <algorithm>
#include <string>

#include "domain/audit.h"
#include "domain/refused.h"
#include "store/records/grants.h"
#include "store/records/menu.h"
#include "store/records/users.h"

namespace tavrok::domain {

namespace {

// No count of a list depends on grants, so these leave the company's data version as it is: a click on a
// group sends a hundred of them.

/** From here to the commit nobody removes the user or makes him an administrator. */
void demand(store::connection& with, const user_key& whom, std::int64_t menu_row) {
    if (!store::hold_ordinary_user(with, whom.company, whom.user)) {
        throw refused("no ordinary user " + std::to_string(whom.user));
    }
    if (!store::menu_row_exists(with, menu_row)) {
        throw refused("unknown menu row " + std::to_string(menu_row));
    }
}

void grant(store::connection& with, const user_key& whom, std::int64_t menu_row, std::int64_t by,
           std::int64_t now) {
    demand(with, whom, menu_row);
    if (!store::insert_grant(with, whom.company, whom.user, menu_row)) return;
    note(with, whom.company, by, "grant", whom.user, now, menu_row);
}

} // namespace

std::vector<granted_row> granted_rows(store::connection& with, const user_key& whom, bool administrator) {
    std::vector<granted_row> rows;
    if (administrator) {
        store::each_menu_row(with, [&](const store::menu_record& one) {
            rows.push_back({one.id, one.action});
        });
    } else {
        store::each_grant(with, whom.company, whom.user, [&](const store::grant_record& one) {
            rows.push_back({one.menu, one.action});
        });
    }
    std::sort(rows.begin(), rows.end(), [](const auto& one, const auto& other) { return one.id < other.id; });
    return rows;
}

std::vector<granted_row> granted_rows(store::connection& with, const principal& who, std::int64_t user) {
    const auto whom = store::user_by_id(with, who.company, user);
    if (!whom) throw refused("unknown user " + std::to_string(user));
    return granted_rows(with, {who.company, user}, whom->type == 1);
}

void grant_row(store::connection& with, const principal& who, std::int64_t user, std::int64_t menu_row,
               std::int64_t now) {
    grant(with, {who.company, user}, menu_row, who.user, now);
}

void revoke_row(store::connection& with, const principal& who, std::int64_t user, std::int64_t menu_row,
                std::int64_t now) {
    demand(with, {who.company, user}, menu_row);
    if (!store::delete_grant(with, who.company, user, menu_row)) return;
    note(with, who, "revoke", user, now, menu_row);
}

void grant_row(store::connection& with, const user_key& whom, std::int64_t menu_row, std::int64_t now) {
    grant(with, whom, menu_row, 0, now);
}

} // namespace tavrok::domain
