#include "domain/ledger_scene.h"

#include <stdexcept>

#include "domain/document_kinds.h"
#include "domain/employees.h"
#include "domain/products.h"
#include "domain/trees.h"
#include "domain/warehouses.h"
#include "store/records/trees.h"

namespace tavrok::test {

namespace {

domain::user_key account(store::connection& with, std::int64_t company, const std::string& name, int type,
                         std::int64_t now) {
    return {company, domain::create_user(with, {company, name, "某人", "hash", type, "", ""}, now)};
}

domain::principal name_of(const domain::user_key& whom) {
    domain::principal who;
    who.company = whom.company;
    who.user = whom.user;
    who.administrator = true;
    return who;
}

} // namespace

ledger_company make_ledger_company(store::connection& with, const std::string& name, std::int64_t now) {
    ledger_company made;
    made.id = domain::create_company(with, name, false, now);
    made.boss = account(with, made.id, "boss " + name, 1, now);
    made.deputy = account(with, made.id, "deputy " + name, 1, now);
    made.hand = account(with, made.id, "hand " + name, 2, now);
    const auto who = name_of(made.boss);
    domain::employee keeper;
    keeper.name = "顾念慈";
    keeper.jobnum = "A1";
    made.employee = domain::add_employee(with, who, keeper, now).id;
    for (int type = 1; type <= 3; ++type) {
        const auto id = domain::add_partner(with, who, some_partner(type, "往来"), now).id;
        made.partners[static_cast<std::size_t>(type - 1)] = id;
    }
    made.dept = domain::add_node(with, who, store::g_departments, "部门", 0, now).id;
    for (int i = 0; i < 3; ++i)
        made.products.push_back(domain::add_product(with, who, {.name = "货"}, now).id);
    for (int i = 0; i < 2; ++i) {
        domain::warehouse building;
        building.name = "仓";
        made.warehouses.push_back(
            domain::add_warehouse(with, who, building, std::to_string(made.employee), now).id);
    }
    return made;
}

domain::document_header header_for(const ledger_company& of, domain::document_module module,
                                   std::int64_t type) {
    domain::document_header header;
    header.type = type;
    header.operater = std::to_string(of.employee);
    switch (domain::kind_of(module, type).partner) {
        case domain::counterparty::none:
            break;
        case domain::counterparty::supplier:
            header.partner = of.partners[0];
            break;
        case domain::counterparty::client:
            header.partner = of.partners[1];
            break;
        case domain::counterparty::any_partner:
            header.partner = of.partners[2];
            break;
        case domain::counterparty::department:
            header.dept = of.dept;
            break;
    }
    return header;
}

std::int64_t write_document(store::connection& with, const ledger_company& of, const domain::principal& who,
                            domain::document_module module, std::int64_t type,
                            const std::vector<domain::document_line>& lines, std::int64_t now) {
    const auto draft = domain::open_draft(with, who, module, header_for(of, module, type), now).id;
    std::int64_t total = 0;
    for (auto line : lines) {
        line.total = line.amount * line.price;
        total += line.total;
        domain::add_line(with, who, module, draft, line);
        if (module == domain::document_module::inbound) domain::announce_stock(with, who, line);
    }
    const auto dropped = domain::close_draft(with, who, module, draft, total, now);
    if (!dropped.empty()) throw std::runtime_error("the document was dropped: " + dropped);
    std::int64_t id = 0;
    with.query({"test_newest_document", "SELECT max(id) FROM document WHERE company = ?"}, {of.id},
               [&](const store::row& one) { id = one.integer(0); });
    return id;
}

} // namespace tavrok::test
