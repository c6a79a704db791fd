#include "domain/documents_scene.h"

#include "domain/employees.h"
#include "domain/warehouses.h"

namespace tavrok::test {

using namespace tavrok::domain; // NOLINT: the calls below are its

std::string sn_day(const std::string& sn) {
    return sn.substr(2, 8);
}

void documents_test::SetUp() {
    goods_test::SetUp();
    if (IsSkipped()) return;
    us = trade(boss, "我");
    them = trade(other_company(), "他");
}

trading_company documents_test::trade(const principal& who, const std::string& mark) {
    trading_company made;
    made.boss = who;
    made.supplier = partner(who, 1, mark + "供应商");
    made.client = partner(who, 2, mark + "客户");
    made.other = partner(who, 3, mark + "其他单位");
    made.department = add(who, g_departments, mark + "部门", 0);
    made.employee = employee(who, mark + "-1");
    made.product = add(who, {.name = mark + "货甲", .code = "J-1", .spec = "大", .price = 250}).id;
    made.second_product = add(who, {.name = mark + "货乙", .price = 1000}).id;
    made.warehouse = warehouse(who, mark + "一号库", made.employee);
    made.second_warehouse = warehouse(who, mark + "二号库", made.employee);
    return made;
}

std::int64_t documents_test::partner(const principal& who, int type, const std::string& name) {
    return in->write(
        [&](store::connection& with) { return add_partner(with, who, some_partner(type, name), g_now).id; });
}

std::int64_t documents_test::employee(const principal& who, const std::string& jobnum) {
    domain::employee made;
    made.name = "员工" + jobnum;
    made.jobnum = jobnum;
    return in->write([&](store::connection& with) { return add_employee(with, who, made, g_now).id; });
}

std::int64_t documents_test::warehouse(const principal& who, const std::string& name, std::int64_t keeper) {
    domain::warehouse made;
    made.name = name;
    return in->write([&](store::connection& with) {
        return add_warehouse(with, who, made, std::to_string(keeper), g_now).id;
    });
}

void documents_test::close_warehouse(std::int64_t id) {
    in->write([&](store::connection& with) { remove_warehouse(with, boss, id, g_now); });
}

void documents_test::dismiss(std::int64_t employee) {
    in->write([&](store::connection& with) { remove_employee(with, boss, employee, g_now); });
}

void documents_test::drop_partner(std::int64_t id) {
    in->write([&](store::connection& with) { remove_partner(with, boss, id, g_now); });
}

principal documents_test::clerk(std::set<std::pair<std::string, std::string>> rights) {
    auto who = in->log_in(in->hand);
    who.rights = std::move(rights);
    return who;
}

document_header documents_test::header(document_module module, std::int64_t type) const {
    const auto kind = (module == g_in ? "sdcdaan" : "scdaan")[type - 1];
    document_header made;
    made.type = type;
    made.operater = std::to_string(us.employee);
    made.writer = std::to_string(boss.user);
    if (kind == 's') made.partner = us.supplier;
    if (kind == 'c') made.partner = us.client;
    if (kind == 'a') made.partner = us.other;
    if (kind == 'd') made.dept = us.department;
    return made;
}

document_line documents_test::line(std::int64_t amount, std::int64_t price) const {
    document_line made;
    made.product = us.product;
    made.price = price;
    made.amount = amount;
    made.total = amount * price;
    made.warehouse = us.warehouse;
    made.place = "A-03-12";
    made.remark = "一行";
    return made;
}

document_line documents_test::from(std::int64_t stock, std::int64_t amount, const std::string& token) {
    const auto row =
        in->read([&](store::connection& with) { return store::read_stock(with, in->company, stock); });
    auto made = line(amount, row->price);
    made.product = row->product;
    made.warehouse = row->warehouse;
    made.place = row->place;
    made.stock = stock;
    made.token = token;
    return made;
}

std::int64_t documents_test::open(document_module module, const document_header& what, std::int64_t now) {
    return open(boss, module, what, now);
}

std::int64_t documents_test::open(const principal& who, document_module module, const document_header& what,
                                  std::int64_t now) {
    return in->write([&](store::connection& with) { return open_draft(with, who, module, what, now).id; });
}

std::int64_t documents_test::put(document_module module, std::int64_t draft, const document_line& what) {
    return put(boss, module, draft, what);
}

std::int64_t documents_test::put(const principal& who, document_module module, std::int64_t draft,
                                 const document_line& what) {
    return in->write([&](store::connection& with) { return add_line(with, who, module, draft, what); });
}

void documents_test::announce(const principal& who, const document_line& like) {
    in->write([&](store::connection& with) { announce_stock(with, who, like); });
}

void documents_test::drop(const principal& who, std::int64_t line) {
    in->write([&](store::connection& with) { drop_line(with, who, line); });
}

std::string documents_test::close(document_module module, std::int64_t draft, std::int64_t total,
                                  std::int64_t now) {
    return close(boss, module, draft, total, now);
}

std::string documents_test::close(const principal& who, document_module module, std::int64_t draft,
                                  std::int64_t total, std::int64_t now) {
    return in->write(
        [&](store::connection& with) { return close_draft(with, who, module, draft, total, now); });
}

void documents_test::remove(document_module module, std::int64_t id, std::int64_t now) {
    remove(boss, module, id, now);
}

void documents_test::remove(const principal& who, document_module module, std::int64_t id, std::int64_t now) {
    in->write([&](store::connection& with) { remove_document(with, who, module, id, now); });
}

std::int64_t documents_test::receive(const std::vector<document_line>& lines, std::int64_t type,
                                     std::int64_t now) {
    EXPECT_EQ(attempt(g_in, header(g_in, type), lines, now), "");
    return newest_document();
}

std::int64_t documents_test::issue(const std::vector<document_line>& lines, std::int64_t type,
                                   std::int64_t now) {
    EXPECT_EQ(attempt(g_out, header(g_out, type), lines, now), "");
    return newest_document();
}

std::string documents_test::attempt(document_module module, const document_header& what,
                                    const std::vector<document_line>& lines, std::int64_t now) {
    const auto draft = open(module, what, now);
    std::int64_t total = 0;
    for (const auto& one : lines) {
        put(module, draft, one);
        if (module == g_in) announce(one);
        total += one.total;
    }
    return close(module, draft, total, now);
}

std::int64_t documents_test::batch(std::int64_t amount, std::int64_t price) {
    return lines_of(g_in, receive({line(amount, price)})).at(0).stock;
}

std::int64_t documents_test::newest_document() {
    return in->number("SELECT coalesce(max(id), 0) FROM document");
}

std::string documents_test::claim(const principal& who, std::int64_t stock, std::int64_t amount,
                                  claim_use use, std::int64_t now) {
    return in->write([&](store::connection& with) {
        return take_claim(with, who, {use, stock, amount}, now);
    });
}

std::int64_t documents_test::on_hand(std::int64_t stock) {
    return in->number("SELECT on_hand FROM stock WHERE id = " + std::to_string(stock));
}

std::int64_t documents_test::claimed(std::int64_t stock) {
    return in->number("SELECT claimed FROM stock WHERE id = " + std::to_string(stock));
}

std::int64_t documents_test::claims() {
    return in->number("SELECT count(*) FROM claim WHERE state = 1");
}

list_page<document_record> documents_test::documents(document_module module, const document_search& search,
                                                     page_wish wish) {
    return documents(boss, module, search, wish);
}

list_page<document_record> documents_test::documents(const principal& who, document_module module,
                                                     const document_search& search, page_wish wish) {
    return in->read(
        [&](store::connection& with) { return list_documents(with, who, module, search, wish, counts); });
}

std::vector<document_line_record> documents_test::lines_of(document_module module, std::int64_t id) {
    return in->read([&](store::connection& with) { return lines_of_document(with, boss, module, id); });
}

std::string documents_test::sn_of(std::int64_t document) {
    return in->read([&](store::connection& with) {
        std::string sn;
        with.query({"test sn", "SELECT sn FROM document WHERE id = ?"}, {document},
                   [&](const store::row& one) { sn = one.text(0); });
        return sn;
    });
}

void documents_test::ledger_is_right() {
    EXPECT_EQ(in->number("SELECT count(*) FROM stock s WHERE on_hand <> (SELECT coalesce(sum(m.amount), 0) "
                         "FROM movement m WHERE m.stock = s.id)"),
              0);
    EXPECT_EQ(in->number("SELECT count(*) FROM movement m JOIN stock s ON s.id = m.stock WHERE m.value <> "
                         "m.amount * s.price"),
              0);
    EXPECT_EQ(in->number("SELECT count(*) FROM stock s WHERE claimed <> (SELECT coalesce(sum(c.amount), 0) "
                         "FROM claim c WHERE c.stock = s.id AND c.state = 1)"),
              0);
    EXPECT_EQ(in->number("SELECT count(*) FROM document d WHERE d.sn IS NULL OR d.total <> (SELECT "
                         "sum(l.total) FROM document_line l WHERE l.document = d.id)"),
              0);
    sound();
}

} // namespace tavrok::test
