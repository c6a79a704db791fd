#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <string_view>

namespace tavrok::domain {

/** Keys of pages. */
template <std::size_t count>
using page_list = std::array<std::string_view, count>;

/** The lists one after the other. */
template <std::size_t... counts>
constexpr auto joined(const page_list<counts>&... lists) {
    page_list<(counts + ...)> all{};
    auto* end = all.data();
    ((end = std::copy(lists.begin(), lists.end(), end)), ...);
    return all;
}

/** The pages whose screens write documents. */
inline constexpr page_list<7> g_inbound_pages{
    "instore_purchase",      "instore_production",  "instore_sale_return", "instore_receive_return",
    "instore_borrow_return", "instore_lend_return", "instore_other"};
inline constexpr page_list<6> g_outbound_pages{"outstore_purchase_return", "outstore_sale_take",
                                               "outstore_receive",         "outstore_lend",
                                               "outstore_borrow_return",   "outstore_other"};
inline constexpr auto g_document_pages = joined(g_inbound_pages, g_outbound_pages);
/** The pages whose screens open the picker of stock rows. */
inline constexpr auto g_stock_picker_pages =
    joined(g_outbound_pages, page_list<2>{"stock_taking", "stock_allot"});

} // namespace tavrok::domain
