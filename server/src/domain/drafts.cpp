#include <algorithm>

#include "domain/claims.h"
#include "domain/document_kinds.h"
#include "domain/document_parts.h"
#include "domain/documents.h"
#include "domain/employees.h"
#include "domain/money.h"
#include "domain/products.h"
#include "domain/refused.h"
#include "domain/text_rules.h"
#include "store/records/live_rows.h"
#include "store/records/partners.h"
#include "store/records/products.h"
#include "store/records/trees.h"
#include "store/records/warehouses.h"

namespace tavrok::domain {

namespace {

constexpr std::int64_t g_most_drafts = 50;
constexpr std::int64_t g_most_lines = 2'000;
constexpr std::size_t g_place_limit = 200;
constexpr std::size_t g_remark_limit = 1000;

void check_partner(store::connection& with, const principal& who, counterparty wanted,
                   const document_header& header) {
    const bool department = wanted == counterparty::department;
    const bool partner = wanted != counterparty::none && !department;
    if (header.partner.has_value() != partner) throw refused("the partner does not fit the kind");
    if (header.dept.has_value() != department) throw refused("the department does not fit the kind");
    if (department && *header.dept != 0 &&
        !store::is_live(with, store::g_departments.nodes, who.company, *header.dept)) {
        throw refused("unknown department " + std::to_string(*header.dept));
    }
    if (!partner) return;
    const auto type = store::live_partner_type(with, who.company, *header.partner);
    if (!type) throw refused("unknown partner " + std::to_string(*header.partner));
    if ((wanted == counterparty::supplier && *type != 1) || (wanted == counterparty::client && *type != 2)) {
        throw refused("the partner is of another kind");
    }
}

void check_warehouses(store::connection& with, const principal& who, document_module module,
                      const document_header& header) {
    const bool transfer = module == document_module::transfer;
    if (header.warehouse_out.has_value() != transfer || header.warehouse_in.has_value() != transfer) {
        throw refused("a transfer, and nothing else, has two warehouses");
    }
    if (!transfer) return;
    if (*header.warehouse_out == *header.warehouse_in) throw refused("the two warehouses are one");
    check_warehouse(with, who, *header.warehouse_out);
    check_warehouse(with, who, *header.warehouse_in);
}

} // namespace

store::draft_record draft_for_line(store::connection& with, const principal& who, document_module module,
                                   std::int64_t draft) {
    auto header = store::hold_draft(with, who.company, who.session, module, draft);
    if (!header) throw refused("unknown draft " + std::to_string(draft));
    demand_right(who, module, header->type, "add");
    if (header->lines >= g_most_lines) throw refused("the draft has as many lines as it may have");
    return *std::move(header);
}

void check_place(const document_line& line) {
    check_required("place", line.place, g_place_limit);
}

void check_price(const document_line& line) {
    if (line.price < 0 || line.price > g_highest_price) throw refused("price out of range");
}

void check_amounts(const document_line& line) {
    check_price(line);
    if (line.amount < 0 || line.amount > g_highest_amount) throw refused("amount out of range");
    // Both are bounded so that the product fits into 64 bits.
    if (!agrees(line.amount * line.price, line.total, 1))
        throw refused("the total is not amount times price");
}

store::draft_line_record record_of(const document_line& line) {
    check_text("place", line.place, g_place_limit);
    check_text("remark", line.remark, g_remark_limit);
    store::draft_line_record made;
    made.product = line.product;
    made.price = line.price;
    made.amount = line.amount;
    made.warehouse = line.warehouse;
    made.place = line.place;
    made.remark = line.remark;
    made.stock = line.stock;
    if (may_be_claim(line.token)) made.token = line.token;
    made.total = line.amount * line.price;
    return made;
}

void check_product(store::connection& with, const principal& who, std::int64_t product) {
    if (!store::is_live(with, store::g_product_list, who.company, product)) {
        throw refused("unknown product " + std::to_string(product));
    }
}

void check_warehouse(store::connection& with, const principal& who, std::int64_t warehouse) {
    if (!store::is_live(with, store::g_warehouse_list, who.company, warehouse)) {
        throw refused("unknown warehouse " + std::to_string(warehouse));
    }
}

std::string_view page_of(document_module module, std::int64_t type) {
    return kind_of(module, type).page;
}

void demand_right(const principal& who, document_module module, std::int64_t type, std::string_view right) {
    if (!who.has(page_of(module, type), right)) throw refused("no right on documents of that kind");
}

added open_draft(store::connection& with, const principal& who, document_module module,
                 const document_header& header, std::int64_t now) {
    const auto& kind = kind_of(module, header.type);
    check_text("remark", header.remark, g_remark_limit);
    if (!header.writer.empty() && header.writer != std::to_string(who.user)) {
        throw refused("the writer is somebody else");
    }
    check_partner(with, who, kind.partner, header);
    check_warehouses(with, who, module, header);
    if (store::drafts_of_session(with, who.company, who.session) >= g_most_drafts) {
        throw refused("the session has as many drafts as it may have");
    }
    store::draft_record made;
    made.module = module;
    made.type = header.type;
    made.user = who.user;
    made.session = who.session;
    made.opened_at = now;
    made.operater = resolve_employee(with, who.company, header.operater);
    made.partner = header.partner;
    made.dept = header.dept;
    made.remark = header.remark;
    made.warehouse_out = header.warehouse_out;
    made.warehouse_in = header.warehouse_in;
    return {store::insert_draft(with, who.company, made), now};
}

std::int64_t add_line(store::connection& with, const principal& who, document_module module,
                      std::int64_t draft, const document_line& line) {
    draft_for_line(with, who, module, draft);
    check_amounts(line);
    if (module == document_module::inbound) check_place(line);
    const auto made = record_of(line);
    check_product(with, who, line.product);
    check_warehouse(with, who, line.warehouse);
    return store::insert_draft_line(with, who.company, draft, made);
}

void announce_stock(store::connection& with, const principal& who, const document_line& like) {
    check_amounts(like);
    if (!store::announce_stock(with, who.company, who.session, record_of(like))) {
        throw refused("no line of the session waits for this stock");
    }
}

std::int64_t line_announced(store::connection& with, const principal& who, const document_line& like) {
    return store::latest_line_like(with, who.company, who.session, record_of(like));
}

std::int64_t newest_draft(store::connection& with, const principal& who, document_module module) {
    return store::newest_draft(with, who.company, who.session, module);
}

std::string add_or_spoil(store::connection& with, const principal& who, document_module module,
                         const std::function<std::int64_t()>& draft, const std::function<void()>& add) {
    try {
        add();
        return {};
    } catch (const refused& refusal) {
        store::spoil_draft(with, who.company, who.session, module, draft());
        return refusal.what();
    }
}

void drop_line(store::connection& with, const principal& who, std::int64_t line) {
    if (!store::delete_draft_line(with, who.company, who.session, line)) {
        throw refused("no draft of the session has the line " + std::to_string(line));
    }
}

} // namespace tavrok::domain
