#include "domain/demo_goods.h"

#include <algorithm>
#include <regex>

#include "domain/goods_scene.h"

namespace tavrok::domain {
namespace {

using test::g_categories;
using test::g_departments;
using test::g_now;

class demo_goods : public test::goods_test {
protected:
    void fill(const goods_wish& how) {
        in->write([&](store::connection& with) { fill_goods(with, boss, how, g_now); });
    }
    std::vector<tree_node> tree(const store::tree& of) {
        return in->read([&](store::connection& with) { return list_tree(with, boss, of); });
    }
    static std::size_t levels(const std::vector<tree_node>& nodes) {
        std::size_t deepest = 0;
        for (const auto& one : nodes)
            deepest = std::max(deepest, levels(one.child));
        return nodes.empty() ? 0 : deepest + 1;
    }
};
ON_EVERY_ENGINE(demo_goods);

TEST_P(demo_goods, are_departments_of_two_levels_and_categories_of_three) {
    fill({5, 5, 200});
    EXPECT_EQ(tree(g_departments).size(), 5U);
    EXPECT_EQ(levels(tree(g_departments)), 2U);
    EXPECT_EQ(tree(g_categories).size(), 5U);
    EXPECT_EQ(levels(tree(g_categories)), 3U);
    EXPECT_EQ(in->number("SELECT count(*) FROM category"), 5 + 10 + 20);
    sound();
}

TEST_P(demo_goods, are_two_hundred_different_products_with_codes_and_prices) {
    fill({5, 5, 200});
    const auto all = list(boss, {}, {1, 200});
    ASSERT_EQ(all.list.size(), 200U);
    EXPECT_EQ(all.total, 200);
    const std::regex code("(WJ|BZ|DZ|LB|BG)[1-4]-[0-9]{3}");
    std::set<std::string> codes;
    std::set<std::string> names;
    std::set<std::string> categories;
    auto newer = g_now;
    for (const auto& one : all.list) {
        EXPECT_TRUE(std::regex_match(one.code, code)) << one.code;
        EXPECT_TRUE(codes.insert(one.code).second) << one.code;
        EXPECT_TRUE(names.insert(one.name + one.spec).second) << one.name << one.spec;
        EXPECT_FALSE(one.spec.empty());
        EXPECT_GT(one.price, 0) << one.name;
        EXPECT_LT(one.datetime, newer) << "newest first, all in the past";
        newer = one.datetime;
        categories.insert(one.category_name);
    }
    EXPECT_EQ(categories.size(), 20U) << "all in the lowest categories";
    EXPECT_GT(newer, g_now - 366 * 24 * 3600);
}

TEST_P(demo_goods, can_be_fewer) {
    fill({2, 1, 12});
    EXPECT_EQ(tree(g_departments).size(), 2U);
    EXPECT_EQ(tree(g_categories).size(), 1U);
    EXPECT_EQ(list(boss).total, 12);
    sound();
}

} // namespace
} // namespace tavrok::domain
