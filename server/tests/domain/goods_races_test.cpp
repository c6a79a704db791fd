#include "domain/goods_scene.h"
#include "domain/interleaving.h"

namespace tavrok::domain {
namespace {

using test::g_categories;
using test::g_departments;
using test::g_now;
using test::open_write;

/** Two transactions at once, step by step. SQLite runs writes one after the other. */
class goods_races : public test::goods_test {
protected:
    void SetUp() override {
        goods_test::SetUp();
        if (IsSkipped()) return;
        // what the first additions of a company make must stand before two of them meet
        store::write_now(db(), [&](store::connection& with) {
            for (const auto& of : {g_departments.nodes, g_categories.nodes, g_products})
                store::change_list_counter(with, boss.company, of, 0);
        });
    }
    store::database& db() { return *in->database(); }

    /** Runs `second` while `first` is done and not yet committed, and gives whether it was refused. It has to
     *  wait for it. */
    bool refused_beside(const store::job& first, const store::job& second) {
        open_write holding(db(), first);
        auto outcome = test::start_write(db(), second);
        EXPECT_TRUE(test::somebody_waits(db()));
        holding.commit();
        try {
            outcome.get();
        } catch (const refused&) {
            return true;
        }
        return false;
    }
    store::job adding(const store::tree& to, std::int64_t parent) {
        return [&, parent](store::connection& with) { add_node(with, boss, to, "新", parent, g_now); };
    }
    store::job removing(const store::tree& from, std::int64_t id) {
        return [&, id](store::connection& with) { remove_node(with, boss, from, id, g_now); };
    }
    store::job adding_product(std::int64_t category) {
        return [this, category](store::connection& with) {
            domain::add_product(with, boss, {.name = "新货", .category = category}, g_now);
        };
    }
    store::job editing(const product_change& change) {
        return [this, change](store::connection& with) { edit_product(with, boss, change, g_now); };
    }

    const store::listing g_products{"product", "product", "state = 1", "t.id"};
};
INSTANTIATE_TEST_SUITE_P(engines, goods_races, testing::Values("postgresql", "postgresql_serializable"),
                         [](const auto& one) { return one.param; });

TEST_P(goods_races, a_child_that_came_first_goes_with_its_parent) {
    const auto a = add(g_departments, "甲");
    EXPECT_FALSE(refused_beside(adding(g_departments, a), removing(g_departments, a)));
    EXPECT_EQ(in->number("SELECT count(*) FROM department WHERE state = 2"), 2);
    sound();
}

TEST_P(goods_races, a_child_that_comes_later_finds_no_parent) {
    const auto a = add(g_departments, "甲");
    EXPECT_TRUE(refused_beside(removing(g_departments, a), adding(g_departments, a)));
    EXPECT_EQ(in->number("SELECT count(*) FROM department"), 1);
    sound();
}

/** The deletion cannot see the grandchild when it looks for the first time. */
TEST_P(goods_races, a_grandchild_that_came_first_goes_with_the_whole_subtree) {
    const auto a = add(g_categories, "甲");
    const auto b = add(g_categories, "乙", a);
    const auto c = add(g_categories, "丙", b);
    add(g_categories, "丁", a);
    EXPECT_FALSE(refused_beside(adding(g_categories, c), removing(g_categories, a)));
    EXPECT_EQ(in->number("SELECT count(*) FROM category WHERE state = 1"), 0);
    EXPECT_EQ(in->number("SELECT count(*) FROM category"), 5);
    EXPECT_EQ(in->number("SELECT live FROM list_counter WHERE list = 'category'"), 0);
    sound();
}

TEST_P(goods_races, a_grandchild_that_comes_later_finds_no_parent) {
    const auto a = add(g_categories, "甲");
    const auto b = add(g_categories, "乙", a);
    EXPECT_TRUE(refused_beside(removing(g_categories, a), adding(g_categories, b)));
    sound();
}

TEST_P(goods_races, of_two_deletions_of_one_node_one_is_refused) {
    const auto a = add(g_departments, "甲");
    EXPECT_TRUE(refused_beside(removing(g_departments, a), removing(g_departments, a)));
    EXPECT_EQ(audited("department_delete"), 1);
    sound();
}

TEST_P(goods_races, overlapping_deletions_count_each_node_once) {
    const auto a = add(g_departments, "甲");
    const auto b = add(g_departments, "乙", a);
    add(g_departments, "丙", b);
    EXPECT_FALSE(refused_beside(removing(g_departments, b), removing(g_departments, a)));
    EXPECT_EQ(in->number("SELECT live FROM list_counter WHERE list = 'department'"), 0);
    sound();
}

TEST_P(goods_races, a_renaming_beside_a_deletion_is_refused) {
    const auto a = add(g_departments, "甲");
    EXPECT_TRUE(refused_beside(removing(g_departments, a), [&](store::connection& with) {
        rename_node(with, boss, g_departments, a, "乙", g_now);
    }));
    sound();
}

TEST_P(goods_races, a_product_that_came_first_keeps_its_category) {
    const auto a = add(g_categories, "甲");
    const auto b = add(g_categories, "乙", a);
    EXPECT_TRUE(refused_beside(adding_product(b), removing(g_categories, a)));
    EXPECT_EQ(shape(boss, g_categories), "甲(乙)");
    EXPECT_EQ(list(boss).list.at(0).category, b);
    sound();
}

TEST_P(goods_races, a_product_that_comes_later_finds_no_category) {
    const auto a = add(g_categories, "甲");
    const auto b = add(g_categories, "乙", a);
    EXPECT_TRUE(refused_beside(removing(g_categories, a), adding_product(b)));
    EXPECT_EQ(list(boss).total, 0);
    sound();
}

TEST_P(goods_races, a_product_does_not_move_into_a_category_that_goes) {
    const auto a = add(g_categories, "甲");
    const auto id = product_in(0);
    EXPECT_TRUE(refused_beside(removing(g_categories, a), editing({.id = id, .category = a})));
    EXPECT_EQ(list(boss).list.at(0).category, 0);
    EXPECT_EQ(shape(boss, g_categories), "");
    sound();
}

TEST_P(goods_races, a_category_stays_into_which_a_product_moves) {
    const auto a = add(g_categories, "甲");
    const auto id = product_in(0);
    EXPECT_TRUE(refused_beside(editing({.id = id, .category = a}), removing(g_categories, a)));
    EXPECT_EQ(list(boss).list.at(0).category_name, "甲");
    sound();
}

/** The second edit names the category that the product had when it was sent; meanwhile the product was moved
 *  away, and the category could go. */
TEST_P(goods_races, an_edit_judges_the_category_that_the_product_has_then) {
    const auto a = add(g_categories, "甲");
    const auto b = add(g_categories, "乙");
    const auto id = product_in(a);
    const auto both = [&, id](store::connection& with) {
        edit_product(with, boss, {.id = id, .category = b}, g_now);
        remove_node(with, boss, g_categories, a, g_now);
    };
    EXPECT_TRUE(refused_beside(both, editing({.id = id, .name = "新", .category = a})));
    EXPECT_EQ(list(boss).list.at(0).category, b);
    sound();
}

TEST_P(goods_races, a_product_is_removed_once) {
    const auto id = product_in(0);
    const auto removal = [&, id](store::connection& with) { domain::remove_product(with, boss, id, g_now); };
    EXPECT_TRUE(refused_beside(removal, removal));
    EXPECT_EQ(in->number("SELECT live FROM list_counter WHERE list = 'product'"), 0);
    const auto other = product_in(0);
    EXPECT_TRUE(refused_beside(
        [&, other](store::connection& with) { domain::remove_product(with, boss, other, g_now); },
        editing({.id = other, .name = "新"})));
    sound();
}

} // namespace
} // namespace tavrok::domain
