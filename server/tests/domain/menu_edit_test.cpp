#include "domain/menu_edit.h"

#include <algorithm>

#include "domain/check.h"
#include "domain/interleave.h"

namespace tavrok::domain {
namespace {

using test::g_now;
using test::is_refused;

class menu_edit : public test::on_engine {
protected:
    void SetUp() override {
        test::on_engine::SetUp();
        if (IsSkipped()) return;
        in.emplace(GetParam());
        boss = in->log_in(in->boss);
    }
    /** 0 when refused. */
    std::int64_t add(const menu_wish& wish) {
        std::int64_t id = 0;
        (void)is_refused([&] {
            id = in->write([&](store::connection& with) { return add_menu_row(with, boss, wish, g_now); });
        });
        return id;
    }
    bool edit(std::int64_t id, const menu_wish& wish) {
        return !is_refused(
            [&] { in->write([&](store::connection& with) { edit_menu_row(with, boss, id, wish, g_now); }); });
    }
    bool remove(std::int64_t id) {
        return !is_refused(
            [&] { in->write([&](store::connection& with) { remove_menu_row(with, boss, id, g_now); }); });
    }
    std::int64_t of(std::int64_t id, const std::string& column) {
        return in->number("SELECT coalesce(" + column + ", 0) FROM menu WHERE id = " + std::to_string(id));
    }
    std::int64_t size() { return in->number("SELECT count(*) FROM menu"); }
    std::vector<finding> proof() {
        return in->read([](store::connection& with) { return check(with); });
    }

    std::optional<test::scene> in;
    principal boss;
};
ON_EVERY_ENGINE(menu_edit);

TEST_P(menu_edit, a_new_row_gets_an_id_of_its_own_and_stands_where_it_was_put) {
    const auto group = add({"报表", 0, "report", 9, 1, 0});
    const auto page = add({"日报", group, "report_day", 2, 0, 1});
    EXPECT_EQ(group, 100001);
    EXPECT_EQ(page, 100002);
    EXPECT_EQ(of(page, "parent"), group);
    EXPECT_EQ(of(page, "sort"), 2);
    EXPECT_EQ(of(page, "shown"), 0);
    EXPECT_EQ(of(page, "real_level"), 1);
    EXPECT_TRUE(remove(page));
    EXPECT_EQ(add({"日报", group, "report_day"}), 100003);
    const auto groups = in->read([](store::connection& with) { return whole_menu(with); });
    EXPECT_EQ(groups.back().name, "报表");
    EXPECT_EQ(groups.back().action, "report");
    EXPECT_EQ(in->number("SELECT count(*) FROM audit WHERE what = 'menu_add' AND user_id = 1001"), 3);
    EXPECT_EQ(in->number("SELECT count(*) FROM audit WHERE what = 'menu_delete' AND object_id = 100002"), 1);
}

TEST_P(menu_edit, siblings_stand_by_their_sort_whatever_their_level) {
    const auto page = add({"首页", 0, "front", -5, 1, 1});
    const auto last = add({"末页", 0, "rear", 99, 1, 1});
    const auto rows = in->read([](store::connection& with) { return whole_menu(with); });
    EXPECT_EQ(rows.front().id, page);
    EXPECT_EQ(rows.back().id, last);
    EXPECT_TRUE(edit(page, {"首页", 0, "front", 100, 1, 1}));
    EXPECT_EQ(in->read([](store::connection& with) { return whole_menu(with); }).back().id, page);
}

TEST_P(menu_edit, a_level_that_nobody_named_follows_from_the_place) {
    const auto page = add({"页", 0, "page"});
    EXPECT_EQ(of(page, "real_level"), 1);
    EXPECT_EQ(of(add({"下页", 400, "below_group"}), "real_level"), 1);
    const auto right = add({"查询", page, "search"});
    EXPECT_EQ(of(right, "real_level"), 2);
    EXPECT_TRUE(edit(right, {"查", page, "search"}));
    EXPECT_EQ(of(right, "real_level"), 2);
}

TEST_P(menu_edit, rows_stand_only_where_they_make_sense) {
    const auto page = add({"页", 0, "page"});
    const auto right = add({"查询", page, "search"});
    const auto before = size();
    EXPECT_EQ(add({"n", 4711, "a"}), 0);
    EXPECT_EQ(add({"n", -1, "a"}), 0);
    EXPECT_EQ(add({"n", right, "a", 0, 1, 1}), 0);
    EXPECT_EQ(add({"n", right, "a", 0, 1, 2}), 0);
    EXPECT_EQ(add({"n", 400, "a", 0, 1, 2}), 0) << "a right below a group";
    EXPECT_EQ(add({"n", 0, "a", 0, 1, 2}), 0) << "a right at the top";
    EXPECT_EQ(add({"n", page, "search"}), 0) << "the same right again";
    EXPECT_EQ(add({"n", 400, "page", 0, 1, 1}), 0) << "the same page again";
    EXPECT_EQ(add({"n", 400, "a", 0, 1, 3}), 0);
    EXPECT_EQ(add({"n", 400, "a", 0, 1, -1}), 0);
    EXPECT_EQ(add({"n", 400, "a", 0, 2, 1}), 0);
    EXPECT_FALSE(edit(page, {"页", 0, "page", 0, 1, 0})) << "rights would stand below a group";
    EXPECT_FALSE(edit(page, {"页", 400, "page", 0, 1, 2}));
    EXPECT_FALSE(edit(right, {"查询", 0, "search"}));
    EXPECT_EQ(size(), before);
    EXPECT_TRUE(proof().empty());
}

TEST_P(menu_edit, texts_are_required_and_bounded) {
    const std::string most(100, 'x');
    for (const auto& text :
         {std::string(), std::string(" "), most + "x", std::string("a\x01"), std::string("\xC3\x28")}) {
        EXPECT_EQ(add({text, 0, "a"}), 0);
        EXPECT_EQ(add({"n", 0, text}), 0);
        EXPECT_FALSE(edit(400, {text, 0, "base", 4, 1, 0}));
    }
    EXPECT_NE(add({most, 0, most}), 0);
    EXPECT_NE(add({"甲 & 乙=丙", 0, " as typed "}), 0);
}

TEST_P(menu_edit, moves_whole_branches_and_never_below_themselves) {
    const auto one = add({"一", 0, "one", 0, 1, 0});
    const auto two = add({"二", one, "two", 0, 1, 0});
    const auto three = add({"三", two, "three", 0, 1, 0});
    for (const auto below : {one, two, three})
        EXPECT_FALSE(edit(one, {"一", below, "one", 0, 1, 0})) << below;
    EXPECT_TRUE(edit(two, {"二", 0, "two", 0, 1, 0}));
    EXPECT_TRUE(edit(one, {"一", three, "one", 0, 1, 0}));
    EXPECT_EQ(of(one, "parent"), three);
    EXPECT_EQ(of(two, "parent"), 0);
    EXPECT_FALSE(edit(4711, {"n", 0, "a"}));
    EXPECT_TRUE(proof().empty());
}

TEST_P(menu_edit, ends_at_a_depth_that_everybody_can_read) {
    std::vector<std::int64_t> line{0};
    for (int i = 0; i < g_menu_depth; ++i)
        line.push_back(add({"n", line.back(), "a", 0, 1, 0}));
    EXPECT_NE(line.back(), 0);
    EXPECT_EQ(add({"n", line.back(), "a", 0, 1, 0}), 0);
    const auto pair = add({"n", 0, "a", 0, 1, 0});
    EXPECT_NE(add({"n", pair, "a", 0, 1, 0}), 0);
    EXPECT_FALSE(edit(pair, {"n", line[g_menu_depth - 1], "a", 0, 1, 0}))
        << "its own branch would be too deep";
    EXPECT_TRUE(edit(pair, {"n", line[g_menu_depth - 2], "a", 0, 1, 0}));
    EXPECT_TRUE(proof().empty());
}

TEST_P(menu_edit, what_the_service_needs_may_change_its_looks_and_no_more) {
    EXPECT_TRUE(edit(403, {"供应商", 100, "company_supplier", -3, 0, 1}));
    EXPECT_TRUE(edit(40301, {"查", 403, "search", 77, 0, 2}));
    EXPECT_TRUE(edit(400, {"资料", 0, "data", 1, 1, 0}));
    const std::pair<std::int64_t, menu_wish> forbidden[] = {
        {403, {"n", 400, "supplier", 3, 1, 1}},     {403, {"n", 400, "company_supplier", 3, 1, 0}},
        {40301, {"n", 403, "find", 1, 1, 2}},       {40301, {"n", 404, "search", 1, 1, 2}},
        {50101, {"n", 301, "delete", 1, 1, 2}},     {500, {"n", 0, "system", 1, 1, 1}},
        {301, {"n", 303, "stock_summary", 1, 1, 2}}};
    for (const auto& [id, wish] : forbidden)
        EXPECT_FALSE(edit(id, wish)) << id;
    for (const std::int64_t id : {403, 40301, 400, 501, 50101, 100, 4711})
        EXPECT_FALSE(remove(id)) << id;
    EXPECT_TRUE(proof().empty());
}

TEST_P(menu_edit, a_group_can_go_once_the_pages_are_elsewhere) {
    const auto fresh = add({"新系统", 0, "fresh", 5, 1, 0});
    EXPECT_FALSE(remove(500));
    EXPECT_TRUE(edit(501, {"用户管理", fresh, "user", 1, 1, 1}));
    EXPECT_TRUE(remove(500));
    EXPECT_FALSE(remove(fresh)) << "it holds a page that is needed";
    EXPECT_TRUE(proof().empty());
}

TEST_P(menu_edit, a_branch_goes_whole_with_its_grants) {
    const auto other = in->user(in->company, "other", 2);
    const auto group = add({"组", 0, "group", 0, 1, 0});
    const auto page = add({"页", group, "page"});
    const auto right = add({"查询", page, "search"});
    const auto before = size();
    in->write([&](store::connection& with) {
        for (const auto row : {group, page, right, std::int64_t{403}})
            for (const auto& user : {in->hand, other})
                grant_row(with, user, row, g_now);
    });
    EXPECT_TRUE(in->log_in(in->hand).has("page", "search"));
    EXPECT_TRUE(remove(group));
    EXPECT_EQ(size(), before - 3);
    EXPECT_EQ(in->number("SELECT count(*) FROM user_grant"), 2);
    EXPECT_FALSE(in->log_in(in->hand).has("page", "search"));
    EXPECT_FALSE(remove(group));
    EXPECT_TRUE(proof().empty());
}

TEST_P(menu_edit, belongs_to_the_administrators_of_the_operator) {
    const auto far =
        in->write([](store::connection& with) { return create_company(with, "二号", false, g_now); });
    const auto chief = in->log_in(in->user(far, "chief", 1));
    const auto hand = in->log_in(in->hand);
    for (const auto& who : {chief, hand}) {
        EXPECT_THROW(in->read([&](store::connection& with) { return menu_to_edit(with, who); }), refused);
        EXPECT_THROW(in->write([&](store::connection& with) {
            add_menu_row(with, who, {"n", 0, "a"}, g_now);
        }),
                     refused);
        EXPECT_THROW(in->write([&](store::connection& with) {
            edit_menu_row(with, who, 400, {"n", 0, "a", 0, 1, 0}, g_now);
        }),
                     refused);
        EXPECT_THROW(in->write([&](store::connection& with) { remove_menu_row(with, who, 400, g_now); }),
                     refused);
    }
    EXPECT_EQ(in->read([&](store::connection& with) { return menu_to_edit(with, boss); }).size(), 5u);
}

TEST_P(menu_edit, a_hidden_row_hides_its_branch_and_leaves_the_rights_in_force) {
    in->write([&](store::connection& with) {
        for (const std::int64_t row : {400, 403, 40301})
            grant_row(with, in->hand, row, g_now);
    });
    EXPECT_TRUE(edit(403, {"供应商单位", 400, "company_supplier", 3, 0, 1}));
    const auto who = in->log_in(in->hand);
    const auto groups = in->read([&](store::connection& with) { return visible_menu(with, who); });
    ASSERT_EQ(groups.size(), 1u);
    EXPECT_TRUE(groups.front().child.empty());
    EXPECT_TRUE(who.has("company_supplier", "search"));
    EXPECT_EQ(in->read([](store::connection& with) { return whole_menu(with); }).size(), 5u);
}

TEST_P(menu_edit, check_tells_of_rows_that_stand_where_none_may) {
    const auto group = add({"组", 0, "group", 0, 1, 0});
    const auto page = add({"页", group, "page"});
    const auto right = add({"查询", page, "search"});
    const auto other = add({"添加", page, "add"});
    const auto planted = [&](std::int64_t id, const std::string& set, const std::string& words) {
        const auto sql = "UPDATE menu SET " + set + " WHERE id = " + std::to_string(id);
        in->write([&](store::connection& with) { with.execute({sql, sql}, {}); });
        const auto found = proof();
        EXPECT_TRUE(std::any_of(found.begin(), found.end(), [&](const finding& one) {
            return one.rule == "menu" && one.text == "row " + std::to_string(id) + " " + words;
        })) << sql;
    };
    const auto number = [](std::int64_t id) { return std::to_string(id); };
    EXPECT_TRUE(proof().empty());
    planted(right, "parent = " + number(other), "stands below a right");
    planted(right, "parent = " + number(group), "is a right and stands below no page");
    planted(right, "parent = " + number(right), "stands below a right");
    planted(page, "real_level = 0", "is no page and has rights");
    planted(page, "real_level = 2", "is a right and stands below no page");
    planted(page, "real_level = 1, parent = " + number(page), "stands below itself");
    EXPECT_FALSE(proof().empty());
}

/** What only a database with many writers can show. */
class menu_edit_at_once : public menu_edit {};
INSTANTIATE_TEST_SUITE_P(engines, menu_edit_at_once, testing::Values("postgresql"));

TEST_P(menu_edit_at_once, two_rows_cannot_be_moved_below_each_other) {
    const auto one = add({"一", 0, "one", 0, 1, 0});
    const auto two = add({"二", 0, "two", 0, 1, 0});
    const auto end = test::interleave(
        *in,
        [&](store::connection& with) {
            edit_menu_row(with, boss, one, {"一", two, "one", 0, 1, 0}, g_now);
        },
        [&](store::connection& with) {
            edit_menu_row(with, boss, two, {"二", one, "two", 0, 1, 0}, g_now);
        });
    EXPECT_TRUE(end.waited);
    ASSERT_TRUE(end.failure);
    EXPECT_THROW(std::rethrow_exception(end.failure), refused);
    EXPECT_EQ(of(one, "parent"), two);
    EXPECT_EQ(of(two, "parent"), 0);
}

TEST_P(menu_edit_at_once, nothing_is_put_below_a_row_that_is_being_deleted) {
    const auto group = add({"组", 0, "group", 0, 1, 0});
    const auto end = test::interleave(
        *in, [&](store::connection& with) { remove_menu_row(with, boss, group, g_now); },
        [&](store::connection& with) {
            add_menu_row(with, boss, {"页", group, "page"}, g_now);
        });
    EXPECT_TRUE(end.waited);
    ASSERT_TRUE(end.failure);
    EXPECT_THROW(std::rethrow_exception(end.failure), refused);
    EXPECT_TRUE(proof().empty());
}

TEST_P(menu_edit_at_once, what_is_put_below_a_row_goes_with_it) {
    const auto group = add({"组", 0, "group", 0, 1, 0});
    const auto end = test::interleave(
        *in,
        [&](store::connection& with) {
            add_menu_row(with, boss, {"页", group, "page"}, g_now);
        },
        [&](store::connection& with) { remove_menu_row(with, boss, group, g_now); });
    EXPECT_TRUE(end.waited);
    EXPECT_FALSE(end.failure);
    EXPECT_EQ(in->number("SELECT count(*) FROM menu WHERE id > 100000"), 0);
}

TEST_P(menu_edit_at_once, one_of_two_equal_rows_wins) {
    const auto wish = [&](store::connection& with) { add_menu_row(with, boss, {"页", 0, "page"}, g_now); };
    const auto end = test::interleave(*in, wish, wish);
    EXPECT_TRUE(end.waited);
    ASSERT_TRUE(end.failure);
    EXPECT_THROW(std::rethrow_exception(end.failure), refused);
}

} // namespace
} // namespace tavrok::domain
