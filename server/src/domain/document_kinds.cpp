#include "domain/document_kinds.h"

#include <array>
#include <span>
#include <string>

#include "domain/refused.h"

namespace tavrok::domain {

namespace {

constexpr std::array<document_kind, 7> g_inbound{{
    {1, "instore_purchase", "CG", counterparty::supplier},
    {2, "instore_production", "SC", counterparty::department},
    {3, "instore_sale_return", "XT", counterparty::client},
    {4, "instore_receive_return", "LT", counterparty::department},
    {5, "instore_borrow_return", "JR", counterparty::any_partner},
    {6, "instore_lend_return", "JH", counterparty::any_partner},
    {7, "instore_other", "QR", counterparty::none},
}};
constexpr std::array<document_kind, 6> g_outbound{{
    {1, "outstore_purchase_return", "CT", counterparty::supplier},
    {2, "outstore_sale_take", "XS", counterparty::client},
    {3, "outstore_receive", "LY", counterparty::department},
    {4, "outstore_lend", "JC", counterparty::any_partner},
    {5, "outstore_borrow_return", "HH", counterparty::any_partner},
    {6, "outstore_other", "QC", counterparty::none},
}};

constexpr std::array<document_kind, 1> g_stocktaking{{{1, "stock_taking", "PD", counterparty::none}}};
constexpr std::array<document_kind, 1> g_transfer{{{1, "stock_allot", "DB", counterparty::none}}};

std::span<const document_kind> kinds_of(store::document_module module) {
    using enum store::document_module;
    switch (module) {
        case inbound:
            return g_inbound;
        case outbound:
            return g_outbound;
        case stocktaking:
            return g_stocktaking;
        case transfer:
            return g_transfer;
    }
    return {};
}

} // namespace

const document_kind& kind_of(store::document_module module, std::int64_t type) {
    for (const auto& one : kinds_of(module))
        if (one.type == type) return one;
    throw refused("unknown kind of document " + std::to_string(type));
}

} // namespace tavrok::domain
