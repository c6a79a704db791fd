#pragma once

#include <array>
#include <string_view>

namespace tavrok::api {

/** Pages whose screens open the picker of trading partners. */
inline constexpr std::array<std::string_view, 8> partner_picker_pages{
    "instore_purchase",         "instore_sale_return", "instore_borrow_return", "instore_lend_return",
    "outstore_purchase_return", "outstore_sale_take",  "outstore_lend",         "outstore_borrow_return"};

} // namespace tavrok::api
