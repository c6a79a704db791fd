#include "domain/menu_edit.h"

#include <algorithm>
#include <map>

#include "domain/audit.h"
#include "domain/refused.h"
#include "domain/text_rules.h"
#include "store/records/menu.h"

namespace tavrok::domain {

namespace {

using store::menu_record;

constexpr std::int64_t g_group = 0;
constexpr std::int64_t g_page = 1;
constexpr std::int64_t g_right = 2;
constexpr std::size_t g_text_limit = 100;

bool same_right(const menu_record& one, const menu_record& other) {
    if (one.real_level != other.real_level || one.action != other.action) return false;
    return one.real_level == g_page || (one.real_level == g_right && one.parent == other.parent);
}

/** The menu as it stands, to judge a row by. */
class menu_table {
public:
    explicit menu_table(store::connection& with) {
        store::each_menu_row(with, [&](const menu_record& one) { m_rows.emplace(one.id, one); });
    }

    const std::map<std::int64_t, menu_record>& rows() const { return m_rows; }
    const menu_record* find(std::int64_t id) const {
        const auto at = m_rows.find(id);
        return at == m_rows.end() ? nullptr : &at->second;
    }
    const menu_record& known(std::int64_t id) const {
        const auto* found = find(id);
        if (!found) throw refused("unknown menu row " + std::to_string(id));
        return *found;
    }

    /** What is wrong with the row as it stands or would stand among the others; empty: nothing. */
    std::string fault(const menu_record& row) const {
        const auto* parent = find(row.parent);
        if (row.parent != 0 && !parent) return "stands below a row that is not there";
        if (parent && parent->real_level == g_right) return "stands below a right";
        if (row.real_level == g_right && (!parent || parent->real_level != g_page)) {
            return "is a right and stands below no page";
        }
        for (const auto& [id, other] : m_rows) {
            if (id == row.id) continue;
            if (same_right(row, other)) return "means the same as row " + std::to_string(id);
            if (other.parent != row.id) continue;
            if (row.real_level == g_right) return "is a right and has rows below it";
            if (other.real_level == g_right && row.real_level != g_page) return "is no page and has rights";
        }
        return fault_of_depth(row);
    }

    /** True when the row or one below it is a page or a right that the service was made with. */
    bool needed(const menu_record& row) const {
        if (row.id <= g_last_own_menu_row && row.real_level != g_group) return true;
        return std::any_of(m_rows.begin(), m_rows.end(), [&](const auto& one) {
            return one.second.parent == row.id && needed(one.second);
        });
    }

private:
    std::string fault_of_depth(const menu_record& row) const {
        int depth = 1 + height(row.id, g_menu_depth);
        for (const auto* at = find(row.parent); at; at = find(at->parent)) {
            if (at->id == row.id) return "stands below itself";
            if (++depth > g_menu_depth) return "stands too deep"; // ends a circle further up, too
        }
        return {};
    }
    /** Rows one below the other beneath `id`; looks no deeper than `limit`. */
    int height(std::int64_t id, int limit) const {
        int most = 0;
        if (limit == 0) return most;
        for (const auto& [child, row] : m_rows) {
            if (row.parent == id) most = std::max(most, 1 + height(child, limit - 1));
        }
        return most;
    }

    std::map<std::int64_t, menu_record> m_rows;
};

void demand_operator(const principal& who) {
    if (!who.administrator || !who.operator_company) throw refused("the menu belongs to the operator");
}

menu_record row_of(const menu_wish& wish, std::int64_t id, std::int64_t level) {
    check_required("menu name", wish.name, g_text_limit);
    check_required("menu action", wish.action, g_text_limit);
    if (level < g_group || level > g_right) throw refused("no menu level: " + std::to_string(level));
    if (wish.shown != 0 && wish.shown != 1) throw refused("a menu row is shown or hidden");
    return {id, wish.parent, wish.name, wish.action, level, wish.sort, wish.shown};
}

void demand_place(const menu_table& table, const menu_record& row) {
    const auto fault = table.fault(row);
    if (!fault.empty()) throw refused("menu row " + std::to_string(row.id) + " " + fault);
}

/** What the service asks for by name must go on meaning the same: users hold grants of these rows. */
void demand_meaning(const menu_record& old, const menu_record& row) {
    if (old.id > g_last_own_menu_row) return;
    const bool renamed = old.real_level != g_group && old.action != row.action;
    const bool moved = old.real_level == g_right && old.parent != row.parent;
    if (renamed || moved || old.real_level != row.real_level) {
        throw refused("menu row " + std::to_string(old.id) + " must go on meaning what it means");
    }
}

} // namespace

std::vector<menu_node> menu_to_edit(store::connection& with, const principal& who) {
    demand_operator(who);
    return whole_menu(with);
}

// All three take the lock first and read the table under it: whoever changes the menu sees the last change.
std::int64_t add_menu_row(store::connection& with, const principal& who, const menu_wish& wish,
                          std::int64_t now) {
    demand_operator(who);
    const auto id = store::next_menu_row(with);
    const menu_table table(with);
    const auto* parent = table.find(wish.parent);
    const auto level = parent && parent->real_level == g_page ? g_right : g_page;
    const auto row = row_of(wish, id, wish.real_level.value_or(level));
    demand_place(table, row);
    store::insert_menu_row(with, row);
    note(with, who, "menu_add", id, now);
    return id;
}

void edit_menu_row(store::connection& with, const principal& who, std::int64_t id, const menu_wish& wish,
                   std::int64_t now) {
    demand_operator(who);
    store::lock_menu(with);
    const menu_table table(with);
    const auto& old = table.known(id);
    const auto row = row_of(wish, id, wish.real_level.value_or(old.real_level));
    demand_meaning(old, row);
    demand_place(table, row);
    store::update_menu_row(with, row);
    note(with, who, "menu_edit", id, now);
}

void remove_menu_row(store::connection& with, const principal& who, std::int64_t id, std::int64_t now) {
    demand_operator(who);
    store::lock_menu(with);
    const menu_table table(with);
    if (table.needed(table.known(id))) {
        throw refused("menu row " + std::to_string(id) + " holds what the service needs");
    }
    store::delete_menu_rows(with, id);
    note(with, who, "menu_delete", id, now);
}

std::vector<std::string> menu_faults(store::connection& with) {
    const menu_table table(with);
    std::vector<std::string> faults;
    for (const auto& [id, row] : table.rows()) {
        const auto fault = table.fault(row);
        if (!fault.empty()) faults.push_back("row " + std::to_string(id) + " " + fault);
    }
    return faults;
}

} // namespace tavrok::domain
