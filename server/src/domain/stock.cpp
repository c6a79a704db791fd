#include "domain/stock.h"

namespace tavrok::domain {

namespace {

store::list_filter filter_of(const principal& who, const stock_search& search) {
    store::list_filter filter{who.company, {}};
    const auto of_product = [&](const char* text, const std::string& word) {
        store::named_like(filter, "product", "product", text, criterion_pattern(word));
    };
    if (search.date_start) store::at_least(filter, "added_at", *search.date_start);
    if (search.date_end) store::at_most(filter, "added_at", *search.date_end);
    if (search.warehouse) store::equal(filter, "warehouse", *search.warehouse);
    of_product("name_folded", search.product_name);
    of_product("spec_folded", search.spec);
    of_product("code_folded", search.code);
    store::like(filter, "place_folded", criterion_pattern(search.place));
    store::like(filter, "remark_folded", criterion_pattern(search.remark));
    return filter;
}

} // namespace

list_page<stock_item> list_stock(store::connection& with, const principal& who, const stock_search& search,
                                 const page_wish& wish, count_cache& counts) {
    check_page_size(wish.page_size);
    const auto filter = filter_of(who, search);
    return read_page<stock_item>(with, store::g_stock_list, filter,
                                 filtered_total(with, store::g_stock_list, filter, counts), wish,
                                 store::stock_item_of);
}

} // namespace tavrok::domain
