#include "domain/trees.h"

#include "domain/goods_scene.h"

namespace tavrok::domain {
namespace {

using test::g_categories;
using test::g_departments;
using test::g_now;

class trees : public test::goods_test {};
ON_EVERY_ENGINE(trees);

TEST_P(trees, come_back_nested_in_the_order_of_addition) {
    for (const auto* of : {&g_departments, &g_categories}) {
        EXPECT_EQ(shape(boss, *of), "");
        const auto a = add(*of, "甲");
        const auto b = add(*of, "乙");
        const auto a1 = add(*of, "甲一", a);
        add(*of, "丙");
        add(*of, "乙一", b);
        add(*of, "甲二", a);
        add(*of, "甲一", a1);
        EXPECT_EQ(shape(boss, *of), "甲(甲一(甲一) 甲二) 乙(乙一) 丙");
        EXPECT_EQ(a, 1001);
    }
    EXPECT_EQ(audited("department_add"), 7);
    EXPECT_EQ(audited("category_add"), 7);
    sound();
}

TEST_P(trees, tell_id_and_time_of_what_was_added) {
    const auto made = in->write(
        [&](store::connection& with) { return add_node(with, boss, g_departments, "甲", 0, g_now + 9); });
    EXPECT_EQ(made.id, 1001);
    EXPECT_EQ(made.datetime, g_now + 9);
    EXPECT_EQ(in->number("SELECT added_at FROM department"), g_now + 9);
    EXPECT_EQ(in->number("SELECT added_by FROM department"), in->boss.user);
}

TEST_P(trees, keep_names_as_they_were_typed_and_refuse_what_is_no_name) {
    const std::string name = "A&B=C+D%20 'q' \\ \"\t\n😀";
    const auto id = add(g_categories, name);
    EXPECT_EQ(shape(boss, g_categories), name);
    std::string longest;
    for (int i = 0; i < 200; ++i)
        longest += "仓";
    EXPECT_NO_THROW(rename(boss, g_categories, id, longest));
    EXPECT_EQ(shape(boss, g_categories), longest);
    for (const std::string& bad : {std::string(), std::string("  "), longest + "仓", std::string("a\0b", 3),
                                   std::string("\xff"), std::string("a\x1b")}) {
        EXPECT_THROW(add(g_categories, bad), refused);
        EXPECT_THROW(rename(boss, g_categories, id, bad), refused);
    }
    EXPECT_EQ(shape(boss, g_categories), longest);
}

TEST_P(trees, a_renamed_node_keeps_its_place) {
    const auto a = add(g_departments, "甲");
    add(g_departments, "乙");
    add(g_departments, "甲一", a);
    rename(boss, g_departments, a, "丁");
    EXPECT_EQ(shape(boss, g_departments), "丁(甲一) 乙");
    EXPECT_EQ(audited("department_edit"), 1);
}

TEST_P(trees, a_parent_must_be_live_and_there) {
    const auto a = add(g_departments, "甲");
    const auto other = add(g_categories, "类");
    add(g_categories, "类二");
    EXPECT_THROW(add(g_departments, "x", a + 1), refused);
    EXPECT_THROW(add(g_departments, "x", -1), refused);
    EXPECT_THROW(add(g_departments, "x", INT64_MAX), refused);
    remove(boss, g_departments, a);
    EXPECT_THROW(add(g_departments, "x", a), refused);
    EXPECT_NO_THROW(add(g_categories, "x", other)) << "the trees do not touch each other";
    EXPECT_EQ(in->number("SELECT count(*) FROM department"), 1);
    EXPECT_EQ(shape(boss, g_categories), "类(x) 类二");
}

TEST_P(trees, a_removed_node_takes_its_subtree_and_keeps_the_rows) {
    const auto a = add(g_departments, "甲");
    const auto b = add(g_departments, "乙", a);
    const auto c = add(g_departments, "丙", b);
    add(g_departments, "丁", a);
    add(g_departments, "戊");
    remove(boss, g_departments, c);
    EXPECT_EQ(shape(boss, g_departments), "甲(乙 丁) 戊");
    add(g_departments, "己", b);
    remove(boss, g_departments, a);
    EXPECT_EQ(shape(boss, g_departments), "戊");
    EXPECT_EQ(in->number("SELECT count(*) FROM department WHERE state = 2 AND retired_at = " +
                         std::to_string(g_now)),
              5);
    EXPECT_EQ(in->number("SELECT live FROM list_counter WHERE list = 'department'"), 1);
    for (const auto gone : {a, b, c}) {
        EXPECT_THROW(remove(boss, g_departments, gone), refused);
        EXPECT_THROW(rename(boss, g_departments, gone, "x"), refused);
    }
    EXPECT_EQ(audited("department_delete"), 2);
    sound();
}

TEST_P(trees, belong_to_their_company) {
    const auto id = add(g_categories, "甲");
    const auto other = other_company();
    EXPECT_EQ(shape(other, g_categories), "");
    EXPECT_THROW(add(other, g_categories, "x", id), refused);
    EXPECT_THROW(rename(other, g_categories, id, "x"), refused);
    EXPECT_THROW(remove(other, g_categories, id), refused);
    add(other, g_categories, "乙", 0);
    EXPECT_EQ(shape(boss, g_categories), "甲");
    EXPECT_EQ(shape(other, g_categories), "乙");
    sound();
}

/** The second line, below the rules. */
TEST_P(trees, each_statement_is_bound_to_the_company) {
    const auto id = add(g_categories, "甲");
    product_in(id);
    const auto other = other_company().company;
    in->write([&](store::connection& with) {
        EXPECT_EQ(store::hold_node(with, g_categories, other, id), std::nullopt);
        EXPECT_EQ(store::rename_node(with, g_categories, other, id, "x"), 0);
        EXPECT_TRUE(store::retire_subtree(with, g_categories, other, id, g_now).empty());
        EXPECT_EQ(store::content_of(with, g_categories, other, {id}), std::nullopt);
        EXPECT_EQ(store::content_of(with, g_categories, in->company, {id}), 1001);
    });
    EXPECT_EQ(shape(boss, g_categories), "甲");
}

TEST_P(trees, a_category_with_live_products_below_it_stays) {
    const auto a = add(g_categories, "甲");
    const auto b = add(g_categories, "乙", a);
    const auto c = add(g_categories, "丙", b);
    const auto d = add(g_categories, "丁", a);
    const auto id = product_in(c);
    product_in(0);
    const auto before = version();
    for (const auto one : {a, b, c})
        EXPECT_THROW(remove(boss, g_categories, one), refused);
    EXPECT_EQ(shape(boss, g_categories), "甲(乙(丙) 丁)") << "a refused deletion leaves everything";
    EXPECT_EQ(version(), before);
    EXPECT_NO_THROW(remove(boss, g_categories, d));
    edit(boss, {.id = id, .category = a});
    EXPECT_NO_THROW(remove(boss, g_categories, b));
    EXPECT_THROW(remove(boss, g_categories, a), refused);
    remove_product(boss, id);
    EXPECT_NO_THROW(remove(boss, g_categories, a));
    EXPECT_EQ(shape(boss, g_categories), "");
    sound();
}

/** More nodes than go into one statement, the product in any of them. */
TEST_P(trees, a_product_is_found_in_a_wide_subtree_too) {
    const auto top = add(g_categories, "甲");
    std::vector<std::int64_t> all;
    for (int i = 0; i < 130; ++i)
        all.push_back(add(g_categories, "n", top));
    all.push_back(add(g_categories, "低", all.back()));
    for (const std::size_t at : {std::size_t{0}, std::size_t{63}, std::size_t{64}, all.size() - 1}) {
        const auto id = product_in(all[at]);
        EXPECT_THROW(remove(boss, g_categories, top), refused) << at;
        remove_product(boss, id);
    }
    remove(boss, g_categories, top);
    EXPECT_EQ(in->number("SELECT count(*) FROM category WHERE state = 1"), 0);
    sound();
}

TEST_P(trees, are_at_most_fifty_levels_deep) {
    std::int64_t parent = 0;
    const auto top = add(g_departments, "1");
    parent = top;
    for (std::int64_t level = 2; level <= g_tree_depth; ++level)
        parent = add(g_departments, std::to_string(level), parent);
    EXPECT_THROW(add(g_departments, "51", parent), refused);
    auto nodes = in->read([&](store::connection& with) { return list_tree(with, boss, g_departments); });
    std::int64_t levels = 0;
    for (; !nodes.empty(); ++levels) {
        auto lower = std::move(nodes.front().child);
        nodes = std::move(lower);
    }
    EXPECT_EQ(levels, g_tree_depth);
    remove(boss, g_departments, top);
    EXPECT_EQ(in->number("SELECT count(*) FROM department WHERE state = 1"), 0);
    sound();
}

TEST_P(trees, are_at_most_ten_thousand_nodes_large) {
    in->write([&](store::connection& with) {
        std::int64_t parent = 0;
        for (std::int64_t i = 0; i < g_tree_nodes; ++i) {
            const auto id = store::insert_node(with, g_departments, in->company, in->boss.user,
                                               {0, parent, parent == 0 ? 1 : 2, g_now, "n"});
            if (parent == 0) parent = id;
        }
        store::change_list_counter(with, in->company, g_departments.nodes, g_tree_nodes);
    });
    EXPECT_THROW(add(g_departments, "x"), refused);
    EXPECT_NO_THROW(add(g_categories, "x"));
    const auto tree = in->read([&](store::connection& with) { return list_tree(with, boss, g_departments); });
    ASSERT_EQ(tree.size(), 1U);
    EXPECT_EQ(tree.front().child.size(), static_cast<std::size_t>(g_tree_nodes - 1));
    remove(boss, g_departments, 1002);
    EXPECT_NO_THROW(add(g_departments, "x"));
    remove(boss, g_departments, 1001);
    EXPECT_EQ(shape(boss, g_departments), "x");
    sound();
}

TEST_P(trees, a_refused_deed_leaves_no_trace) {
    const auto id = add(g_departments, "甲");
    const auto before = version();
    const auto notes = in->number("SELECT count(*) FROM audit");
    EXPECT_THROW(add(g_departments, ""), refused);
    EXPECT_THROW(add(g_departments, "x", id + 5), refused);
    EXPECT_THROW(rename(boss, g_departments, id, ""), refused);
    EXPECT_THROW(remove(boss, g_departments, id + 5), refused);
    EXPECT_THROW(remove(boss, g_departments, 0), refused);
    EXPECT_EQ(version(), before);
    EXPECT_EQ(in->number("SELECT count(*) FROM audit"), notes);
    EXPECT_EQ(shape(boss, g_departments), "甲");
    sound();
}

} // namespace
} // namespace tavrok::domain
