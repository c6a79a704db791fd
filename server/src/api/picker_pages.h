#pragma once

#include <array>
#include <span>
#include <string_view>

namespace tavrok::api {

/** The pages whose screens write documents: any right on one of them opens the lists that its pickers show.
 */
inline constexpr std::array<std::string_view, 13> g_document_pages{
    "instore_purchase",      "instore_production",  "instore_sale_return", "instore_receive_return",
    "instore_borrow_return", "instore_lend_return", "instore_other",       "outstore_purchase_return",
    "outstore_sale_take",    "outstore_receive",    "outstore_lend",       "outstore_borrow_return",
    "outstore_other"};
inline constexpr std::span<const std::string_view> g_inbound_pages{g_document_pages.data(), 7};

} // namespace tavrok::api
