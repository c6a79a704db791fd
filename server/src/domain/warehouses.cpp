#include "domain/warehouses.h"

#include "domain/accounts.h"
#include "domain/audit.h"
#include "domain/employees.h"
#include "domain/fold.h"
#include "domain/refused.h"
#include "domain/text_rules.h"
#include "store/records/companies.h"
#include "store/records/live_rows.h"
#include "store/records/stock.h"

namespace tavrok::domain {

namespace {

constexpr std::int64_t g_yes = 1;
constexpr std::int64_t g_no = 0;

constexpr std::array<text_rule<warehouse>, 5> g_texts{{
    {"name", &warehouse::name, check_required, 200},
    {"phone", &warehouse::phone, check_text, 200},
    {"address", &warehouse::address, check_text, 1000},
    {"mobile", &warehouse::mobile, check_dialable, 40},
    {"remark", &warehouse::remark, check_text, 1000},
}};

/** What holds for a record before it is written. The company is locked by now: two that want to be the
 * default one come one after the other. */
void prepare(store::connection& with, std::int64_t company, const warehouse& what) {
    check_texts(what, g_texts);
    if (what.isdefault != g_yes && what.isdefault != g_no) throw refused("isdefault is neither 0 nor 1");
    if (what.isdefault == g_yes) store::clear_default(with, store::g_warehouse_list, company, g_no, what.id);
}

store::warehouse_folds folds_of(const warehouse& what) {
    return {fold(what.name), fold(what.phone)};
}

[[noreturn]] void refuse_unknown(std::int64_t id) {
    throw refused("unknown warehouse " + std::to_string(id));
}

} // namespace

warehouse_page list_warehouses(store::connection& with, const principal& who, const warehouse_search& search,
                               const page_wish& wish, count_cache& counts) {
    store::warehouse_criteria criteria{criterion_pattern(search.name), criterion_pattern(search.phone),
                                       criterion_pattern(search.mobile), 0};
    if (!search.keeper.empty()) {
        const auto keeper = find_employee(with, who.company, search.keeper);
        check_page_size(wish.page_size);
        if (!keeper) return {};
        criteria.keeper = *keeper;
    }
    const auto filter = store::criteria_of(who.company, criteria);
    return read_page<warehouse>(with, store::g_warehouse_list, filter,
                                list_total(with, store::g_warehouse_list, filter, counts), wish,
                                store::warehouse_of);
}

std::vector<warehouse_option> list_warehouse_options(store::connection& with, const principal& who) {
    return store::warehouse_options(with, who.company);
}

std::vector<warehouse_option> list_warehouse_stock(store::connection& with, const principal& who) {
    return store::warehouse_stock(with, who.company);
}

added add_warehouse(store::connection& with, const principal& who, const warehouse& what,
                    std::string_view keeper, std::int64_t now) {
    lock_for_adding(with, who);
    if (store::list_counter(with, who.company, store::g_warehouse_list) >= g_most_warehouses) {
        throw refused("the company has as many warehouses as it may have");
    }
    warehouse made = what;
    made.id = 0;
    made.added_at = now;
    made.keeper = resolve_employee(with, who.company, keeper);
    prepare(with, who.company, made);
    const auto id = store::insert_warehouse(with, who.company, who.user, made, folds_of(made));
    store::change_list_counter(with, who.company, store::g_warehouse_list, 1);
    note(with, who, "warehouse_add", id, now);
    return {id, now};
}

void edit_warehouse(store::connection& with, const principal& who, const warehouse& what,
                    std::string_view keeper, std::int64_t now) {
    store::bump_data_version(with, who.company);
    const auto former = store::keeper_of_warehouse(with, who.company, what.id);
    if (!former) refuse_unknown(what.id);
    warehouse changed = what;
    const bool kept = keeper == std::to_string(*former);
    changed.keeper = kept ? *former : resolve_employee(with, who.company, keeper);
    prepare(with, who.company, changed);
    store::update_warehouse(with, who.company, changed, folds_of(changed));
    note(with, who, "warehouse_edit", what.id, now);
}

// Always retired, never erased: old documents go on naming it.
void remove_warehouse(store::connection& with, const principal& who, std::int64_t id, std::int64_t now) {
    store::bump_data_version(with, who.company);
    if (store::warehouse_in_use(with, who.company, id)) throw refused("there is stock in the warehouse");
    if (store::retire(with, store::g_warehouse_list, who.company, id, now) == 0) refuse_unknown(id);
    store::change_list_counter(with, who.company, store::g_warehouse_list, -1);
    note(with, who, "warehouse_delete", id, now);
}

} // namespace tavrok::domain
