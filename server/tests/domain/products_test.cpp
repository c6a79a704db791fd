#include "domain/products.h"

#include "domain/goods_scene.h"
#include "store/records/products.h"

namespace tavrok::domain {
namespace {

using test::g_categories;
using test::g_now;

class products : public test::goods_test {};
ON_EVERY_ENGINE(products);

TEST_P(products, come_back_as_they_were_typed) {
    const auto category = add(g_categories, "五金");
    const product what{.name = "A&B=C+D%20 'q' \\ _%",
                       .code = "&price=1",
                       .spec = "第一行\n\t😀",
                       .category = category,
                       .price = 1250};
    const auto made = add(boss, what, g_now + 5);
    EXPECT_EQ(made.id, 1001);
    EXPECT_EQ(made.datetime, g_now + 5);
    const auto page = list(boss);
    ASSERT_EQ(page.list.size(), 1U);
    const auto& one = page.list.front();
    EXPECT_EQ(one.id, made.id);
    EXPECT_EQ(one.name, what.name);
    EXPECT_EQ(one.code, what.code);
    EXPECT_EQ(one.spec, what.spec);
    EXPECT_EQ(one.category, category);
    EXPECT_EQ(one.category_name, "五金");
    EXPECT_EQ(one.price, 1250);
    EXPECT_EQ(one.datetime, g_now + 5);
    EXPECT_EQ(audited("product_add"), 1);
    sound();
}

TEST_P(products, are_listed_newest_first) {
    for (const char* name : {"一", "二", "三"})
        product_in(0, name);
    const auto page = list(boss, {}, {1, 2});
    EXPECT_EQ(page.total, 3);
    EXPECT_EQ(page.page_count, 2);
    ASSERT_EQ(page.list.size(), 2U);
    EXPECT_EQ(page.list[0].name, "三");
    EXPECT_EQ(page.list[1].name, "二");
    const auto last = list(boss, {}, {-1, 2});
    EXPECT_EQ(last.page_num, 2);
    EXPECT_EQ(last.list.at(0).name, "一");
    EXPECT_THROW(list(boss, {}, {1, 0}), refused);
    EXPECT_THROW(list(boss, {}, {1, 201}), refused);
}

TEST_P(products, may_stand_at_the_root) {
    product_in(0);
    const auto one = list(boss).list.at(0);
    EXPECT_EQ(one.category, 0);
    EXPECT_EQ(one.category_name, "");
    EXPECT_EQ(one.price, 0);
}

TEST_P(products, need_a_name_and_a_live_category) {
    const auto category = add(g_categories, "类");
    const auto gone = add(g_categories, "旧类");
    remove(boss, g_categories, gone);
    for (const char* nothing : {"", "  "})
        EXPECT_THROW(product_in(category, nothing), refused);
    for (const auto wrong : {gone, category + 10, std::int64_t{-1}, INT64_MAX})
        EXPECT_THROW(product_in(wrong), refused);
    const auto id = product_in(category);
    for (const auto wrong : {gone, category + 10, std::int64_t{-1}, INT64_MAX})
        EXPECT_THROW(edit(boss, {.id = id, .category = wrong}), refused);
    EXPECT_THROW(edit(boss, {.id = id, .name = " "}), refused);
    EXPECT_EQ(list(boss).list.at(0).category, category);
    EXPECT_EQ(list(boss).total, 1);
    sound();
}

TEST_P(products, have_bounded_texts_and_prices) {
    std::string longest;
    for (int i = 0; i < 200; ++i)
        longest += "𠀀"; // four bytes, as long as a letter can be: the index must hold three such texts
    EXPECT_NO_THROW(add(boss, {.name = longest, .code = longest, .spec = longest, .price = g_highest_price}));
    EXPECT_EQ(list(boss).list.at(0).price, 9'999'999'900);
    for (auto text : {&product::name, &product::code, &product::spec}) {
        for (const auto& bad :
             {longest + "x", std::string("a\0b", 3), std::string("\xff"), std::string("\x1b[0m")}) {
            product what{.name = "甲"};
            what.*text = bad;
            EXPECT_THROW(add(boss, what), refused);
        }
    }
    const auto id = product_in(0);
    for (const auto price : {std::int64_t{-1}, g_highest_price + 1}) {
        EXPECT_THROW(add(boss, {.name = "甲", .price = price}), refused);
        EXPECT_THROW(edit(boss, {.id = id, .price = price}), refused);
    }
    EXPECT_THROW(edit(boss, {.id = id, .spec = longest + "x"}), refused);
    EXPECT_EQ(list(boss).total, 2);
}

TEST_P(products, an_edit_changes_what_is_given_and_nothing_else) {
    const auto a = add(g_categories, "甲");
    const auto b = add(g_categories, "乙");
    const auto id = add(boss, {.name = "Alt", .code = "c1", .spec = "s1", .category = a, .price = 1250}).id;
    edit(boss, {.id = id, .name = "Neu"});
    auto one = list(boss).list.at(0);
    EXPECT_EQ(one.name, "Neu");
    EXPECT_EQ(one.code, "c1");
    EXPECT_EQ(one.price, 1250);
    EXPECT_EQ(list(boss, {.name = "nEU"}).total, 1);
    EXPECT_EQ(list(boss, {.name = "alt"}).total, 0);
    edit(boss, {.id = id, .code = "", .category = b});
    one = list(boss).list.at(0);
    EXPECT_EQ(one.code, "");
    EXPECT_EQ(one.spec, "s1");
    EXPECT_EQ(one.category_name, "乙");
    edit(boss, {.id = id, .category = 0, .price = 0});
    one = list(boss).list.at(0);
    EXPECT_EQ(one.category_name, "");
    EXPECT_EQ(one.price, 0);
    EXPECT_NO_THROW(edit(boss, {.id = id}));
    EXPECT_EQ(list(boss).list.at(0).name, "Neu");
    EXPECT_EQ(list(boss).list.at(0).datetime, g_now);
    EXPECT_EQ(audited("product_edit"), 4);
    sound();
}

TEST_P(products, show_the_present_name_of_their_category) {
    const auto category = add(g_categories, "甲");
    product_in(category);
    rename(boss, g_categories, category, "乙");
    EXPECT_EQ(list(boss).list.at(0).category_name, "乙");
}

TEST_P(products, an_edit_may_keep_a_category_that_was_retired) {
    const auto category = add(g_categories, "甲");
    const auto id = product_in(category);
    // the rules forbid it: damage
    in->write([&](store::connection& with) {
        store::retire_subtree(with, g_categories, boss.company, category, g_now);
    });
    EXPECT_EQ(list(boss).list.at(0).category_name, "甲");
    EXPECT_NO_THROW(edit(boss, {.id = id, .name = "新", .category = category}));
    EXPECT_EQ(list(boss).list.at(0).name, "新");
    EXPECT_EQ(list(boss).list.at(0).category, category);
    edit(boss, {.id = id, .category = 0});
    EXPECT_THROW(edit(boss, {.id = id, .category = category}), refused) << "but not return to it";
}

TEST_P(products, a_removed_one_leaves_every_list_and_keeps_its_row) {
    const auto category = add(g_categories, "甲");
    const auto id = product_in(category);
    remove_product(boss, id);
    EXPECT_EQ(list(boss).total, 0);
    EXPECT_EQ(list(boss, {.category = category}).total, 0);
    EXPECT_EQ(list(boss, {.name = "货"}).total, 0);
    EXPECT_THROW(remove_product(boss, id), refused);
    EXPECT_THROW(edit(boss, {.id = id, .name = "乙"}), refused);
    EXPECT_EQ(in->number("SELECT state FROM product"), 2);
    EXPECT_EQ(product_in(category), id + 1);
    EXPECT_EQ(audited("product_delete"), 1);
    sound();
}

TEST_P(products, are_found_by_category_and_by_texts) {
    const auto a = add(g_categories, "甲");
    const auto b = add(g_categories, "乙", a);
    add(boss, {.name = "100% 棉_布", .code = "AB-1", .spec = "C:\\tmp", .category = a});
    add(boss, {.name = "棉布 ÄRGER", .code = "ab-2", .spec = "Завод", .category = b});
    add(boss, {.name = "麻布", .code = "x", .spec = "", .category = 0});
    const auto total = [&](const product_search& search) {
        const auto page = list(boss, search);
        EXPECT_EQ(page.list.size(), static_cast<std::size_t>(page.total));
        return page.total;
    };
    EXPECT_EQ(total({.category = a}), 1) << "without those below";
    EXPECT_EQ(total({.category = b}), 1);
    EXPECT_EQ(total({.category = 0}), 1);
    EXPECT_EQ(total({.category = 4711}), 0);
    EXPECT_EQ(total({.name = "布"}), 3);
    EXPECT_EQ(total({.name = "棉布"}), 1);
    EXPECT_EQ(total({.name = "_"}), 1);
    EXPECT_EQ(total({.name = "%"}), 1);
    EXPECT_EQ(total({.name = "ärger"}), 1);
    EXPECT_EQ(total({.code = "B-"}), 2);
    EXPECT_EQ(total({.spec = "ЗАВОД"}), 1);
    EXPECT_EQ(total({.spec = ":\\T"}), 1);
    EXPECT_EQ(total({.category = b, .name = "布", .code = "AB", .spec = "в"}), 1);
    EXPECT_EQ(total({.category = a, .name = "布", .code = "AB", .spec = "в"}), 0);
    EXPECT_THROW(list(boss, {.name = std::string(1001, 'x')}), refused);
}

TEST_P(products, belong_to_their_company) {
    const auto category = add(g_categories, "甲");
    const auto id = product_in(category);
    const auto other = other_company();
    EXPECT_EQ(list(other).total, 0);
    EXPECT_EQ(list(other, {.category = category}).total, 0);
    EXPECT_THROW(edit(other, {.id = id, .name = "乙"}), refused);
    EXPECT_THROW(remove_product(other, id), refused);
    EXPECT_THROW(add(other, {.name = "x", .category = category}), refused);
    const auto theirs = add(other, {.name = "丙"}).id;
    EXPECT_THROW(edit(other, {.id = theirs, .category = category}), refused);
    EXPECT_EQ(list(boss).total, 1);
    EXPECT_EQ(list(other).list.at(0).name, "丙");
    sound();
}

/** The second line, below the rules. */
TEST_P(products, each_statement_is_bound_to_the_company) {
    const auto id = product_in(0);
    const auto other = other_company().company;
    store::product_values values;
    values.texts.fill(std::string("x"));
    in->write([&](store::connection& with) {
        EXPECT_EQ(store::hold_product(with, other, id), std::nullopt);
        EXPECT_EQ(store::update_product(with, other, id, values), 0);
        EXPECT_EQ(store::retire_product(with, other, id, g_now), 0);
        EXPECT_EQ(test::rows_seen(with, store::g_product_list, other, id), 0);
        EXPECT_EQ(store::list_counter(with, other, store::g_product_list), 0);
    });
    EXPECT_EQ(list(boss).list.at(0).name, "货");
}

TEST_P(products, a_refused_deed_leaves_no_trace) {
    const auto id = product_in(0);
    const auto before = version();
    const auto notes = in->number("SELECT count(*) FROM audit");
    EXPECT_THROW(edit(boss, {.id = id, .name = "乙", .category = 4711}), refused);
    EXPECT_THROW(edit(boss, {.id = id + 1, .name = "乙"}), refused);
    EXPECT_THROW(remove_product(boss, id + 1), refused);
    EXPECT_THROW(product_in(4711), refused);
    EXPECT_EQ(list(boss).list.at(0).name, "货");
    EXPECT_EQ(version(), before);
    EXPECT_EQ(in->number("SELECT count(*) FROM audit"), notes);
    sound();
}

} // namespace
} // namespace tavrok::domain
