#include "domain/staff_scene.h"

#include <algorithm>

namespace tavrok::test {

domain::employee some_employee(const std::string& jobnum, const std::string& name) {
    domain::employee made;
    made.name = name;
    made.jobnum = jobnum;
    return made;
}

domain::employee full_employee(const std::string& jobnum) {
    auto made = some_employee(jobnum, "A&B=C+D%20 '引号' \\ _%");
    made.mobile = "15400005001";
    made.address = "澜杉市栖枬路9号";
    made.idnum = "99011719900307101X";
    made.remark = "第一行\n&isdefault=1\t😀";
    return made;
}

domain::warehouse full_warehouse(const std::string& name) {
    auto made = some_warehouse(name);
    made.phone = "0193-5570001 转 A";
    made.address = "物流园 & 东区 1 号";
    made.mobile = "15400007001";
    made.remark = "第一行\n&name=x\t😀";
    return made;
}

domain::warehouse some_warehouse(const std::string& name) {
    domain::warehouse made;
    made.name = name;
    return made;
}

std::string utf8(unsigned letter) {
    if (letter < 0x80) return {static_cast<char>(letter)};
    return {static_cast<char>(0xc0 | letter >> 6), static_cast<char>(0x80 | (letter & 0x3f))};
}

namespace {

/** The one with that id; fails the test when there is none. */
template <typename page>
auto shown(const page& all, std::int64_t id) {
    const auto at =
        std::find_if(all.list.begin(), all.list.end(), [&](const auto& one) { return one.id == id; });
    EXPECT_NE(at, all.list.end()) << "not listed: " << id;
    return at == all.list.end() ? typename decltype(all.list)::value_type{} : *at;
}

} // namespace

staff_scene::staff_scene(const std::string& engine) : scene(engine), chief(log_in(boss)) {}

domain::principal staff_scene::another(const std::string& name) {
    const auto made =
        write([&](store::connection& with) { return domain::create_company(with, name, false, g_now); });
    return log_in(user(made, "chief of " + name, 1));
}

std::int64_t staff_scene::hire(const domain::principal& who, const domain::employee& what, std::int64_t now) {
    return write([&](store::connection& with) { return domain::add_employee(with, who, what, now); }).id;
}

void staff_scene::edit(const domain::principal& who, const domain::employee& what) {
    write([&](store::connection& with) { domain::edit_employee(with, who, what, g_now); });
}

void staff_scene::dismiss(const domain::principal& who, std::int64_t id) {
    write([&](store::connection& with) { domain::remove_employee(with, who, id, g_now); });
}

domain::employee_page staff_scene::employees(const domain::principal& who,
                                             const domain::employee_search& search, std::int64_t num,
                                             std::int64_t size) {
    return read([&](store::connection& with) {
        return domain::list_employees(with, who, search, {num, size}, counts);
    });
}

domain::employee staff_scene::employee(const domain::principal& who, std::int64_t id) {
    return shown(employees(who), id);
}

std::int64_t staff_scene::open(const domain::principal& who, const domain::warehouse& what,
                               const std::string& keeper, std::int64_t now) {
    return write([&](store::connection& with) { return domain::add_warehouse(with, who, what, keeper, now); })
        .id;
}

void staff_scene::edit(const domain::principal& who, const domain::warehouse& what,
                       const std::string& keeper) {
    write([&](store::connection& with) { domain::edit_warehouse(with, who, what, keeper, g_now); });
}

void staff_scene::close(const domain::principal& who, std::int64_t id) {
    write([&](store::connection& with) { domain::remove_warehouse(with, who, id, g_now); });
}

domain::warehouse_page staff_scene::warehouses(const domain::principal& who,
                                               const domain::warehouse_search& search, std::int64_t num,
                                               std::int64_t size) {
    return read([&](store::connection& with) {
        return domain::list_warehouses(with, who, search, {num, size}, counts);
    });
}

domain::warehouse staff_scene::warehouse(const domain::principal& who, std::int64_t id) {
    return shown(warehouses(who), id);
}

void staff_scene::continue_ids_after(std::int64_t last) {
    write([&](store::connection& with) {
        with.execute({"test series", "UPDATE number_series SET last = ? WHERE name = 'employee'"}, {last});
    });
}

std::int64_t staff_scene::audited(const std::string& what) {
    return number("SELECT count(*) FROM audit WHERE what = '" + what + "'");
}

std::int64_t staff_scene::version() {
    return number("SELECT data_version FROM company WHERE id = " + std::to_string(company));
}

} // namespace tavrok::test
