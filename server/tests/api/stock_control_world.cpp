#include "api/stock_control_world.h"

namespace tavrok::test {

stock_control_world::stock_control_world(way to) : documents_world(std::move(to)) {
    second_warehouse = added("wms_warehouse/do_add", "name=分仓&keeper=" + employee + "&isdefault=0");
}

stock_control_world stock_control_world::by(way way_to) const {
    auto same = *this;
    same.m_way = std::move(way_to);
    return same;
}

std::string stock_control_world::counted(const std::string& stock, int sys, int real,
                                         const std::string& price, const std::string& money,
                                         const std::string& claim, const std::string& remark) const {
    return "&product=" + product + "&price=" + price + "&sys_amount=" + std::to_string(sys) +
           "&real_amount=" + std::to_string(real) + "&profitloss_amount=" + std::to_string(real - sys) +
           "&profitloss_total=" + money + "&remark=" + remark + "&warehouse=" + warehouse +
           "&stock_id=" + stock + "&place=A-1&locked_id=" + claim;
}

std::string stock_control_world::taking_draft(const std::string& line) {
    const auto draft = added("wms_stock_taking/do_add", "&operater=" + employee + "&writer=");
    EXPECT_EQ(ask("wms_stock_taking_detail/do_add", "main_id=" + draft + line), "1") << line;
    return draft;
}

std::string stock_control_world::taking(const std::string& stock) {
    const auto draft = taking_draft(counted(stock, 2, 1, "1.00", "-1.00"));
    EXPECT_EQ(ask("wms_stock_taking/update_profitloss",
                  "id=" + draft + "&profitloss_amount=-1&profitloss_total=-1.00"),
              "1");
    return std::string(newest("wms_stock_taking").at("id").as_string());
}

std::string stock_control_world::transfer_header() const {
    return "&warehouse_out=" + warehouse + "&warehouse_in=" + second_warehouse + "&operater=" + employee;
}

std::string stock_control_world::moved(const std::string& stock, const std::string& amount,
                                       const std::string& price, const std::string& total,
                                       const std::string& claim, const std::string& remark) const {
    return "&product=" + product + "&price=" + price + "&amount=" + amount + "&total=" + total +
           "&remark=" + remark + "&stock_id=" + stock + "&place=Z-9&warehouse=&locked_id=" + claim;
}

std::string stock_control_world::transfer(const std::string& stock) {
    const auto draft = added("wms_stock_allot/do_add", transfer_header());
    EXPECT_EQ(ask("wms_stock_allot_detail/do_add", "main_id=" + draft + moved(stock, "1", "1.00", "1.00")),
              "1");
    return std::string(newest("wms_stock_allot").at("id").as_string());
}

boost::json::value stock_control_world::newest(const std::string& module) {
    return page(module + "/get_page", "").at("list").at(0);
}

} // namespace tavrok::test
