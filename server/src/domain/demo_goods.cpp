#include "domain/demo_goods.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <string>
#include <vector>

#include "domain/products.h"
#include "domain/trees.h"

namespace tavrok::domain {

namespace {

constexpr std::int64_t g_day = 24 * 3600;
constexpr std::int64_t g_year = 365 * g_day;

struct department {
    const char* name;
    std::vector<const char*> parts;
};

/** The lowest category, with two goods of five kinds each; `price` of the smallest, in hundredths. */
struct shelf {
    const char* name;
    std::int64_t price;
    std::array<const char*, 2> goods;
    std::array<const char*, 5> specs;
};

struct range {
    const char* name;
    std::array<shelf, 2> shelves;
};

struct line {
    const char* name;
    const char* code;
    std::array<range, 2> ranges;
};

const std::array<department, 5> g_departments{{
    {"仓储部", {"收货组", "拣货组", "盘点组"}},
    {"采购部", {"五金采购组", "耗材采购组"}},
    {"销售部", {"城东门市", "城西门市", "大客户组"}},
    {"生产部", {"装配车间", "包装车间"}},
    {"行政部", {"财务组", "人事组"}},
}};

const std::array<line, 5> g_lines{{
    {"五金工具",
     "WJ",
     {{{"手动工具",
        {{{"扳手", 1280, {"活动扳手", "两用扳手"}, {"6寸", "8寸", "10寸", "12寸", "15寸"}},
          {"螺丝刀",
           450,
           {"十字螺丝刀", "一字螺丝刀"},
           {"3×75mm", "5×75mm", "6×100mm", "6×150mm", "8×200mm"}}}}},
       {"紧固件",
        {{{"螺栓", 35, {"外六角螺栓", "内六角螺栓"}, {"M6×30", "M8×40", "M10×50", "M12×60", "M16×80"}},
          {"螺母垫片", 8, {"六角螺母", "平垫圈"}, {"M6", "M8", "M10", "M12", "M16"}}}}}}}},
    {"包装耗材",
     "BZ",
     {{{"纸制包装",
        {{{"纸箱", 165, {"三层瓦楞纸箱", "五层瓦楞纸箱"}, {"12号", "10号", "8号", "6号", "4号"}},
          {"纸袋", 60, {"牛皮纸手提袋", "白卡纸手提袋"}, {"小号", "中号", "大号", "加大", "特大"}}}}},
       {"胶带薄膜",
        {{{"胶带",
           320,
           {"透明封箱胶带", "米黄封箱胶带"},
           {"45mm×50m", "45mm×100m", "48mm×100m", "60mm×100m", "60mm×150m"}},
          {"薄膜", 1850, {"拉伸缠绕膜", "气泡膜"}, {"30cm宽", "40cm宽", "50cm宽", "60cm宽", "100cm宽"}}}}}}}},
    {"电子元件",
     "DZ",
     {{{"被动元件",
        {{{"电阻",
           3,
           {"碳膜电阻", "金属膜电阻"},
           {"100Ω 1/4W", "1kΩ 1/4W", "4.7kΩ 1/4W", "10kΩ 1/4W", "1MΩ 1/2W"}},
          {"电容",
           12,
           {"电解电容", "瓷片电容"},
           {"1μF 50V", "10μF 50V", "47μF 25V", "100μF 25V", "470μF 16V"}}}}},
       {"接插件",
        {{{"端子", 25, {"接线端子", "冷压端子"}, {"2位", "3位", "4位", "6位", "8位"}},
          {"线束", 180, {"杜邦线", "排线"}, {"10cm", "20cm", "30cm", "40cm", "50cm"}}}}}}}},
    {"劳保用品",
     "LB",
     {{{"手部防护",
        {{{"手套", 260, {"棉纱手套", "丁腈涂层手套"}, {"S码", "M码", "L码", "XL码", "XXL码"}},
          {"护臂", 680, {"防割护臂", "耐热护臂"}, {"25cm", "30cm", "36cm", "45cm", "56cm"}}}}},
       {"身体防护",
        {{{"工作服", 5900, {"夏季短袖工作服", "秋冬长袖工作服"}, {"165", "170", "175", "180", "185"}},
          {"安全鞋", 8800, {"防砸安全鞋", "绝缘安全鞋"}, {"39码", "40码", "41码", "42码", "43码"}}}}}}}},
    {"办公用品",
     "BG",
     {{{"纸品",
        {{{"打印纸", 1990, {"静电复印纸", "彩色复印纸"}, {"A5 70g", "A4 70g", "A4 80g", "A3 70g", "A3 80g"}},
          {"标签",
           750,
           {"热敏标签纸", "铜版标签纸"},
           {"40×30mm", "50×30mm", "60×40mm", "80×60mm", "100×100mm"}}}}},
       {"文具",
        {{{"笔",
           150,
           {"中性笔", "记号笔"},
           {"黑色 0.5mm", "蓝色 0.5mm", "红色 0.5mm", "黑色 0.7mm", "黑色 1.0mm"}},
          {"文件夹", 420, {"双夹文件夹", "插页文件册"}, {"10页", "20页", "40页", "60页", "80页"}}}}}}}},
}};

void fill_departments(store::connection& with, const principal& who, std::size_t count, std::int64_t when) {
    for (std::size_t i = 0; i < std::min(count, g_departments.size()); ++i) {
        const auto& one = g_departments[i];
        const auto id = add_node(with, who, store::g_departments, one.name, 0, when).id;
        for (const auto* part : one.parts)
            add_node(with, who, store::g_departments, part, id, when);
    }
}

/** A shelf with its category and the beginning of the codes of what stands on it. */
struct place {
    const shelf* what;
    std::int64_t category;
    std::string code;
};

std::vector<place> fill_categories(store::connection& with, const principal& who, std::size_t count,
                                   std::int64_t when) {
    std::vector<place> places;
    const auto add = [&](const char* name, std::int64_t parent) {
        return add_node(with, who, store::g_categories, name, parent, when).id;
    };
    for (std::size_t i = 0; i < std::min(count, g_lines.size()); ++i) {
        const auto top = add(g_lines[i].name, 0);
        for (const auto& one : g_lines[i].ranges) {
            const auto middle = add(one.name, top);
            for (const auto& what : one.shelves) {
                const auto code = std::string(g_lines[i].code) + std::to_string(1 + places.size() % 4);
                places.push_back({&what, add(what.name, middle), code});
            }
        }
    }
    return places;
}

/** The product of that number on a shelf, 0 to 9. */
product product_on(const place& where, std::size_t number) {
    const auto& what = *where.what;
    const auto kind = number / what.goods.size();
    const auto size = static_cast<std::int64_t>(kind);
    product made;
    made.name = what.goods[number % what.goods.size()];
    made.spec = what.specs[kind];
    std::array<char, 16> digits{};
    std::snprintf(digits.data(), digits.size(), "-%03zu", number % 2 * 100 + kind * 5 + 1);
    made.code = where.code + digits.data();
    made.category = where.category;
    // Larger ones cost more, and the second of the two goods is the better one.
    made.price = what.price * (10 + 4 * size) / 10 + (number % 2 == 0 ? 0 : what.price / 4 + 1);
    return made;
}

} // namespace

void fill_goods(store::connection& with, const principal& who, const goods_wish& how, std::int64_t now) {
    const auto start = now - g_year;
    fill_departments(with, who, how.departments, start);
    const auto places = fill_categories(with, who, how.lines, start);
    const auto step = (g_year - g_day) / static_cast<std::int64_t>(how.products + 1);
    for (std::size_t i = 0; i < how.products; ++i) {
        add_product(with, who, product_on(places.at(i % places.size()), i / places.size()),
                    start + static_cast<std::int64_t>(i + 1) * step);
    }
}

} // namespace tavrok::domain
