#include "api/documents_world.h"

#include <atomic>

namespace tavrok::test {

documents_world::documents_world(way to) : m_way(std::move(to)) {
    const auto partner = [&](int type) {
        return added("wms_company/do_add", "type=" + std::to_string(type) + "&name=甲" +
                                               std::to_string(type) + "&phone=1&address=路");
    };
    supplier = partner(1);
    client = partner(2);
    other = partner(3);
    department = added("wms_dept/do_add", "name=车间&parent=0");
    // Job numbers are unique in a company, which may have several of these.
    static std::atomic<int> number{0};
    employee = added("wms_emp/do_add", "name=经手&jobnum=" + std::to_string(++number) +
                                           "&mobile=&address=街&idnum=&remark=&isdefault=2&dimission=2");
    product = added("wms_product/do_add", "name=螺栓&code=B-8&spec=M8&category=0&price=2.50");
    warehouse = added("wms_warehouse/do_add", "name=主仓&keeper=" + employee + "&isdefault=0");
}

documents_world documents_world::by(way way_to) const {
    auto same = *this;
    same.m_way = std::move(way_to);
    return same;
}

std::string documents_world::ask(const std::string& path, const std::string& body) {
    return m_way(path, body);
}

std::string documents_world::added(const std::string& path, const std::string& body) {
    const auto answer = boost::json::parse(ask(path, body));
    if (answer.at("http_state").as_int64() == 1) return std::string(answer.at("insert_id").as_string());
    ADD_FAILURE() << path << " " << body;
    return "";
}

std::string documents_world::inbound_header(int kind) const {
    const auto type = "type=" + std::to_string(kind);
    const auto rest = "&operater=" + employee;
    if (kind == 2 || kind == 4) return type + rest + "&dept=" + department;
    if (kind == 7) return type + rest;
    return type + "&company=" + (kind == 1 ? supplier : kind == 3 ? client : other) + rest;
}

std::string documents_world::outbound_header(int kind) const {
    const std::string partner = kind == 1                ? supplier
                                : kind == 2              ? client
                                : kind == 4 || kind == 5 ? other
                                                         : "";
    return "type=" + std::to_string(kind) + "&company=" + partner + "&operater=" + employee +
           "&writer=&total=0.00&dept=" + (kind == 3 ? department : "") + "&remark=";
}

std::string documents_world::line(const std::string& amount, const std::string& price,
                                  const std::string& total, const std::string& remark) const {
    return "product=" + product + "&price=" + price + "&amount=" + amount + "&total=" + total +
           "&warehouse=" + warehouse + "&remark=" + remark;
}

std::string documents_world::inbound_draft(const std::string& amount, const std::string& price,
                                           const std::string& total, int kind) {
    const auto draft = added("wms_instore/do_add", inbound_header(kind));
    const auto written = line(amount, price, total) + "&place=A-1";
    EXPECT_EQ(ask("wms_instore_detail/do_add", "main_id=" + draft + "&" + written), "1");
    EXPECT_EQ(ask("wms_stock_detail/do_add", written), "1");
    return draft;
}

std::string documents_world::stock(const std::string& amount, const std::string& price,
                                   const std::string& total) {
    const auto draft = inbound_draft(amount, price, total);
    EXPECT_EQ(ask("wms_instore/update_total", "id=" + draft + "&total=" + total), "1");
    const auto rows = page("wms_stock_detail/get_page", "");
    return std::string(rows.at("list").at(0).at("id").as_string());
}

std::string documents_world::outbound_draft(const std::string& stock, const std::string& amount,
                                            const std::string& price, const std::string& total,
                                            const std::string& claim, int kind) {
    const auto draft = added("wms_outstore/do_add", outbound_header(kind));
    EXPECT_EQ(ask("wms_outstore_detail/do_add", "main_id=" + draft + "&" + line(amount, price, total) +
                                                    "&stock_id=" + stock + "&place=A-1&locked_id=" + claim),
              "1");
    return draft;
}

boost::json::value documents_world::page(const std::string& path, const std::string& criteria) {
    return boost::json::parse(ask(path, criteria + "&page_num=1&page_size=20"));
}

} // namespace tavrok::test
