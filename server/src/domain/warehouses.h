#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "domain/listing.h"
#include "domain/pages.h"
#include "domain/principal.h"
#include "store/connection.h"
#include "store/records/warehouses.h"

namespace tavrok::domain {

using warehouse = store::warehouse_record;
using warehouse_page = list_page<warehouse>;
using store::warehouse_option;

/** Substrings, without regard to case, and a keeper as resolve_employee() takes him; an empty one does not
 * restrict. A keeper who names nobody keeps nothing: no warehouse fits. */
struct warehouse_search {
    std::string name{};
    std::string phone{};
    std::string keeper{};
    std::string mobile{};
};

/** Pages whose screens show a box of warehouses. */
inline constexpr auto g_warehouse_box_pages =
    joined(g_document_pages, page_list<3>{"stock_detail", "stock_taking", "stock_allot"});
/** Pages whose screens show it with the stock on hand. */
inline constexpr page_list<1> g_warehouse_stock_pages{"stock_allot"};
/** A company has so many live warehouses at most: their box goes out in one answer. */
inline constexpr std::int64_t g_most_warehouses = 2'000;

warehouse_page list_warehouses(store::connection& with, const principal& who, const warehouse_search& search,
                               const page_wish& wish, count_cache& counts);
/** Every warehouse, in the order in which they were added; the second with what is on hand in it less what is
 * claimed by quantity, which takes a look at all the stock. */
std::vector<warehouse_option> list_warehouse_options(store::connection& with, const principal& who);
std::vector<warehouse_option> list_warehouse_stock(store::connection& with, const principal& who);

/** `keeper` is what resolve_employee() takes; `what.id`, `what.keeper`, `what.keeper_name` and
 * `what.added_at` are ignored. A new default warehouse takes the flag from the former one. Throws `refused`,
 * as all of these do. */
added add_warehouse(store::connection& with, const principal& who, const warehouse& what,
                    std::string_view keeper, std::int64_t now);
/** Writes every text and flag of `what` over the warehouse `what.id`: an empty text clears. The keeper may
 * be the one whom the warehouse has, retired or not. */
void edit_warehouse(store::connection& with, const principal& who, const warehouse& what,
                    std::string_view keeper, std::int64_t now);
/** Refused while anything in it is on hand. */
void remove_warehouse(store::connection& with, const principal& who, std::int64_t id, std::int64_t now);

} // namespace tavrok::domain
