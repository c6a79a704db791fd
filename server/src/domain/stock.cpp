#include "domain/stock.h"

namespace tavrok::domain {

list_page<stock_item> list_stock(store::connection& with, const principal& who, const stock_search& search,
                                 const page_wish& wish, count_cache& counts) {
    store::list_filter filter{who.company, {}};
    if (search.date_start) store::at_least(filter, "added_at", *search.date_start);
    if (search.date_end) store::at_most(filter, "added_at", *search.date_end);
    if (search.warehouse) store::equal(filter, "warehouse", *search.warehouse);
    store::like(filter, "place_folded", criterion_pattern(search.place));
    store::like(filter, "remark_folded", criterion_pattern(search.remark));
    return read_page<stock_item>(with, store::g_stock_list, filter,
                                 filtered_total(with, store::g_stock_list, filter, counts), wish,
                                 [](const store::row& one) {
                                     stock_item made;
                                     made.id = one.integer(0);
                                     made.warehouse = one.integer(1);
                                     made.warehouse_name = one.text(2);
                                     made.place = one.text(3);
                                     made.product = one.integer(4);
                                     made.product_name = one.text(5);
                                     made.category = one.integer(6);
                                     made.category_name = one.text(7);
                                     made.code = one.text(8);
                                     made.spec = one.text(9);
                                     made.price = one.integer(10);
                                     made.amount = one.integer(11);
                                     made.total = made.amount * made.price;
                                     made.remark = one.text(12);
                                     made.datetime = one.integer(13);
                                     return made;
                                 });
}

} // namespace tavrok::domain
