#include <sqlite3.h>

#include <algorithm>

#include "domain/goods_scene.h"

namespace tavrok::domain {
namespace {

using test::g_categories;
using test::g_departments;

struct damage {
    const char* name;
    const char* sql;
    const char* rule;
    const char* words;
};

/** Departments 1001 > 1002, categories 1001 > 1002 > 1003, products 1001 in 1003 and 1002 at the root. */
class goods_check : public test::goods_test {
protected:
    void SetUp() override {
        goods_test::SetUp();
        if (IsSkipped()) return;
        add(g_departments, "乙", add(g_departments, "甲"));
        add(g_categories, "丙", add(g_categories, "乙", add(g_categories, "甲")));
        add(boss, {.name = "Ab 货", .code = "Cd", .spec = "Ef", .category = 1003});
        product_in(0);
        sound();
    }
    std::vector<finding> proof() {
        return in->read([](store::connection& with) { return check(with); });
    }
    static bool named(const std::vector<finding>& found, const damage& by) {
        return std::any_of(found.begin(), found.end(), [&](const finding& one) {
            return one.rule == by.rule && one.text.find(by.words) != std::string::npos;
        });
    }
};
ON_EVERY_ENGINE(goods_check);

/** Damage that no constraint forbids; each leaves the one before it in place. */
TEST_P(goods_check, finds_what_the_constraints_let_through) {
    const damage all[] = {
        {"", "UPDATE list_counter SET live = live + 1 WHERE list = 'department'", "counter", "department"},
        {"", "UPDATE list_counter SET live = 0 WHERE list = 'category'", "counter", "category"},
        {"", "DELETE FROM list_counter WHERE list = 'product'", "counter", "product"},
        {"", "UPDATE product SET name_folded = 'x' WHERE id = 1001", "folded", "product 1001"},
        {"", "UPDATE product SET code = 'x' WHERE id = 1002", "folded", "product 1002"},
        {"", "UPDATE product SET spec_folded = 'Ef' WHERE id = 1001", "folded", "product 1001"},
        {"", "UPDATE product SET category = 4711 WHERE id = 1002", "reference",
         "product 1002 names a row of category"},
        {"", "UPDATE category SET parent = 999 WHERE id = 1002", "reference",
         "category 1002 names a row of category"},
    };
    std::size_t expected = 0;
    for (const auto& one : all) {
        in->write([&](store::connection& with) { with.execute({one.sql, one.sql}, {}); });
        const auto found = proof();
        EXPECT_EQ(found.size(), ++expected) << one.sql;
        EXPECT_TRUE(named(found, one)) << one.sql;
    }
}

TEST_P(goods_check, names_a_product_below_a_retired_category) {
    in->write([&](store::connection& with) {
        store::retire_subtree(with, g_categories, in->company, 1002, test::g_now);
        store::change_list_counter(with, in->company, g_categories.nodes, -2);
    });
    const auto found = proof();
    ASSERT_EQ(found.size(), 1U);
    EXPECT_TRUE(named(found, {"", "", "reference", "product 1001 names a row of category"}));
}

TEST_P(goods_check, names_a_live_node_below_a_retired_one) {
    in->write([&](store::connection& with) {
        const std::string sql = "UPDATE department SET state = 2, retired_at = 1 WHERE id = 1001";
        with.execute({sql, sql}, {});
        store::change_list_counter(with, in->company, g_departments.nodes, -1);
    });
    const auto found = proof();
    ASSERT_EQ(found.size(), 1U);
    EXPECT_TRUE(named(found, {"", "", "reference", "department 1002 names a row of department"}));
}

TEST_P(goods_check, has_nothing_against_retired_rows_below_retired_ones) {
    remove_product(boss, 1001);
    remove(boss, g_categories, 1001);
    remove(boss, g_departments, 1001);
    sound();
}

/** Damage that only a broken or tampered file can have. */
TEST_P(goods_check, finds_what_was_planted_behind_the_constraints) {
    if (GetParam() != "sqlite") GTEST_SKIP() << "plants into a file";
    const damage all[] = {
        {"", "UPDATE department SET depth = 3 WHERE id = 1002", "reference", "department 1002"},
        {"", "UPDATE category SET company = 4711 WHERE id = 1003", "reference", "category 1003"},
        {"", "UPDATE department SET added_by = 4711 WHERE id = 1002", "reference",
         "department 1002 names a row of app_user"},
        {"", "UPDATE category SET added_by = 4711 WHERE id = 1001", "reference",
         "category 1001 names a row of app_user"},
        {"", "UPDATE product SET added_by = 4711 WHERE id = 1002", "reference",
         "product 1002 names a row of app_user"},
        {"", "UPDATE department SET company = 4711 WHERE id = 1001", "reference", "company 4711, department"},
        {"", "UPDATE product SET company = 4711 WHERE id = 1002", "reference", "company 4711, product"},
        {"", "UPDATE department SET id = 7 WHERE id = 1002", "id", "department"},
        {"", "UPDATE category SET id = 7 WHERE id = 1001", "id", "category"},
        {"", "UPDATE product SET id = 7 WHERE id = 1002", "id", "product"},
    };
    for (const auto& one : all) {
        EXPECT_FALSE(named(proof(), one)) << one.sql;
        in->database().close();
        sqlite3* raw = nullptr;
        ASSERT_EQ(sqlite3_open(in->database().options().location.c_str(), &raw), SQLITE_OK);
        const auto sql =
            std::string("PRAGMA foreign_keys = OFF; PRAGMA ignore_check_constraints = ON; ") + one.sql;
        EXPECT_EQ(sqlite3_exec(raw, sql.c_str(), nullptr, nullptr, nullptr), SQLITE_OK) << one.sql;
        EXPECT_EQ(sqlite3_changes(raw), 1) << one.sql;
        sqlite3_close(raw);
        EXPECT_TRUE(named(proof(), one)) << one.sql;
    }
}

} // namespace
} // namespace tavrok::domain
