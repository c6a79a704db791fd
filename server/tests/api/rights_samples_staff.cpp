#include "api/rights_samples.h"
#include "domain/employees.h"
#include "domain/warehouses.h"

namespace tavrok::test {

namespace {

const std::vector<std::string> inbound_and_outbound{
    "instore_purchase",         "instore_production",  "instore_sale_return", "instore_receive_return",
    "instore_borrow_return",    "instore_lend_return", "instore_other",       "outstore_sale_take",
    "outstore_purchase_return", "outstore_receive",    "outstore_lend",       "outstore_other",
    "outstore_borrow_return"};

bool on_documents(const grant& granted) {
    static const auto pages = on_pages(inbound_and_outbound);
    return pages(granted);
}

bool with_employee_picker(const grant& granted) {
    static const auto pages = on_pages({"warehouse", "stock_taking", "stock_allot"});
    return granted == grant("emp", "search") || on_documents(granted) || pages(granted);
}

bool with_warehouse_box(const grant& granted) {
    static const auto pages = on_pages({"stock_detail", "stock_taking", "stock_allot"});
    return granted == grant("warehouse", "search") || on_documents(granted) || pages(granted);
}

bool hires_or_edits(const grant& granted) {
    return granted == grant("emp", "add") || granted == grant("emp", "edit");
}

std::string fresh_number() {
    static int number = 0;
    return "S" + std::to_string(++number);
}

std::string hire(harness& world, const std::string& owner) {
    const auto who = world.principal_of(owner);
    std::int64_t id = 0;
    store::write_now(*world.database, [&](store::connection& db) {
        domain::employee one;
        one.name = "n";
        one.jobnum = fresh_number();
        id = domain::add_employee(db, who, one, world.now).id;
    });
    return std::to_string(id);
}

std::string open(harness& world, const std::string& owner) {
    const auto keeper = hire(world, owner);
    const auto who = world.principal_of(owner);
    std::int64_t id = 0;
    store::write_now(*world.database, [&](store::connection& db) {
        domain::warehouse one;
        one.name = "n";
        id = domain::add_warehouse(db, who, one, keeper, world.now).id;
    });
    return std::to_string(id);
}

std::string employee_form() {
    return "name=n&jobnum=" + fresh_number() + "&mobile=&address=&idnum=&remark=&isdefault=2&dimission=2";
}

} // namespace

std::vector<sample> emp_samples(harness& world, const std::string& owner, const std::string& path) {
    const auto delete_form = [&world, owner] { return "id=" + hire(world, owner); };
    if (path == "wms_emp/get_page") return {{"picker", "&page_num=1&page_size=10", with_employee_picker}};
    if (path == "wms_emp/get_option") return {{"options", "", with_employee_picker}};
    if (path == "wms_emp/do_add") return {{"add", employee_form(), only("emp", "add"), employee_form}};
    if (path == "wms_emp/do_edit")
        return {{"edit", "id=" + hire(world, owner) + "&" + employee_form(), only("emp", "edit")}};
    if (path == "wms_emp/do_delete") return {{"delete", delete_form(), only("emp", "delete"), delete_form}};
    for (const std::string mark : {"mobile", "jobnum_exist", "idnum_exist"}) {
        if (path != "wms_emp/check_" + mark) continue;
        const auto key = mark.substr(0, mark.find('_'));
        return {{"check", key + "=1&id=" + hire(world, owner), hires_or_edits}};
    }
    return {};
}

std::vector<sample> warehouse_samples(harness& world, const std::string& owner, const std::string& path) {
    const auto delete_form = [&world, owner] { return "id=" + open(world, owner); };
    if (path == "wms_warehouse/get_page")
        return {{"page", "&page_num=1&page_size=20", only("warehouse", "search")}};
    if (path == "wms_warehouse/get_option") return {{"options", "", with_warehouse_box}};
    if (path == "wms_warehouse/get_option_with_stat") return {{"options", "", on_pages({"stock_allot"})}};
    if (path == "wms_warehouse/do_add")
        return {{"add", "name=n&keeper=" + hire(world, owner) + "&isdefault=0", only("warehouse", "add")}};
    if (path == "wms_warehouse/do_edit")
        return {{"edit",
                 "id=" + open(world, owner) + "&name=m&phone=&keeper=" + hire(world, owner) +
                     "&address=&mobile=&isdefault=1&remark=",
                 only("warehouse", "edit")}};
    if (path == "wms_warehouse/do_delete")
        return {{"delete", delete_form(), only("warehouse", "delete"), delete_form}};
    return {};
}

} // namespace tavrok::test
