#include "domain/demo_staff.h"

#include <array>
#include <string>
#include <vector>

#include "domain/demo_words.h"
#include "domain/warehouses.h"

namespace tavrok::domain {

namespace {

constexpr std::int64_t g_day = 24 * 3600;

const words g_surnames{"顾", "裴", "祝", "池", "乔", "温", "简", "骆", "卓", "向", "邵", "辛", "舒"};
const words g_given{"念慈", "云舟", "晓岚", "承泽", "静禾", "子衿", "牧野", "采薇", "远山", "若水", "星河"};
const words g_groups{"CK", "CG", "XS", "SC"}; // stores, purchase, sales, production
const words g_homes{"澜杉市栖枬路宿舍1栋", "澜杉市望榆大街66号", "澜杉市柘园南路12弄", "霁柘县鹭汀街8号"};
const words g_remarks{"", "叉车持证", "", "夜班", "兼任安全员", "", "盘点组", "试用期至年底", ""};
const words g_warehouses{"澜杉中心仓", "苍榆港口仓", "霁柘周转仓", "青柠坞退货仓"};
const words g_parks{"澜杉市物流园东区", "苍榆港码头路", "霁柘县鹭汀街", "青柠坞镇杉影巷"};
const words g_warehouse_remarks{"常温，三层货架", "临港，月台 6 个", "", "退货、待检品 & 报废品"};

/** The last character of an identity number, from the seventeen digits before it. */
char check_character(const std::string& before) {
    constexpr std::array<int, 17> weights{7, 9, 10, 5, 8, 4, 2, 1, 6, 3, 7, 9, 10, 5, 8, 4, 2};
    int sum = 0;
    for (std::size_t i = 0; i < weights.size(); ++i)
        sum += weights[i] * (before[i] - '0');
    return "10X98765432"[sum % 11];
}

std::string identity_number(std::size_t number) {
    auto text = digits("990117", 1968 + number * 7 % 36, 4);
    text += digits("", 1 + number * 5 % 12, 2) + digits("", 1 + number * 11 % 28, 2);
    text += digits("", 101 + number, 3);
    return text + check_character(text);
}

warehouse demo_warehouse(std::size_t number) {
    warehouse made;
    made.name = pick(g_warehouses, number);
    made.phone = digits("0193-557", (100 + number * 37) % 10000, 4);
    if (number % 2 == 0) made.mobile = digits("1540000", 7000 + number, 4);
    made.address = std::string(pick(g_parks, number)) + std::to_string(3 + number * 4 % 89) + "号";
    made.remark = pick(g_warehouse_remarks, number);
    return made;
}

} // namespace

employee demo_employee(std::size_t number) {
    employee made;
    made.name = std::string(pick(g_surnames, number)) + pick(g_given, number);
    made.jobnum = std::string(pick(g_groups, number)) + digits("-", 1001 + number, 4);
    if (number % 6 != 5) made.mobile = digits("1540000", 5000 + number, 4);
    if (number % 4 != 3) made.idnum = identity_number(number);
    if (number % 3 != 1) made.address = pick(g_homes, number) + digits("-", 101 + number * 3, 3);
    made.remark = pick(g_remarks, number);
    made.isdefault = number % 500 == 2 ? 1 : 2;
    made.dimission = number % 11 == 9 ? 1 : 2;
    return made;
}

void fill_staff(store::connection& with, const principal& who, const demo_staff& wanted, std::int64_t now) {
    std::vector<std::int64_t> keepers;
    for (std::size_t i = 0; i < wanted.employees; ++i) {
        const auto one = demo_employee(wanted.first + i);
        const auto days = static_cast<std::int64_t>((wanted.employees - i) * 13);
        const auto id = add_employee(with, who, one, now - days * g_day - 7200).id;
        if (one.dimission == 2) keepers.push_back(id);
    }
    for (std::size_t i = 0; i < wanted.warehouses; ++i) {
        const auto days = static_cast<std::int64_t>((wanted.warehouses - i) * 120);
        auto one = demo_warehouse(wanted.first + i);
        one.isdefault = i == 0 ? 1 : 0;
        add_warehouse(with, who, one, std::to_string(keepers[i * 3 % keepers.size()]), now - days * g_day);
    }
}

} // namespace tavrok::domain
