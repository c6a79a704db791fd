#include "domain/menu.h"

#include <functional>
#include <map>
#include <set>

#include "domain/scene.h"

namespace tavrok::domain {
namespace {

using test::g_now;

class menu : public test::on_engine {};
ON_EVERY_ENGINE(menu);

using words = std::set<std::string>;

const words g_document{"search", "add",        "view",          "delete",
                       "print",  "detail_add", "detail_delete", "detail_print"};
const words g_list{"search", "add", "edit", "delete"};
const words g_tree{"search", "add_child", "edit", "delete"};

/** What the client looks at on each page. */
words rights_of(const std::string& page) {
    static const std::map<std::string, words> special{
        {"prodcate", g_tree},         {"dept", g_tree},
        {"stock_detail", {"search"}}, {"stock_summary", {"search", "print"}},
        {"stock_taking", g_document}, {"stock_allot", g_document},
        {"user", {"search"}}};
    if (const auto found = special.find(page); found != special.end()) return found->second;
    return page.starts_with("instore_") || page.starts_with("outstore_") ? g_document : g_list;
}

void each_node(const std::vector<menu_node>& nodes, const std::function<void(const menu_node&)>& each) {
    for (const auto& one : nodes) {
        each(one);
        each_node(one.child, each);
    }
}

TEST_P(menu, holds_every_page_with_its_title_and_rights) {
    test::scene in(GetParam());
    const auto groups = in.read([](store::connection& with) { return whole_menu(with); });
    std::map<std::string, std::string> titles;
    for (const auto& group : groups) {
        EXPECT_EQ(group.real_level, "0") << group.name;
        for (const auto& one : group.child) {
            EXPECT_EQ(one.real_level, "1") << one.name;
            titles[one.action] = one.name;
            words rights;
            for (const auto& right : one.child) {
                EXPECT_EQ(right.real_level, "2") << right.name;
                EXPECT_TRUE(right.child.empty());
                EXPECT_FALSE(right.name.empty());
                rights.insert(right.action);
            }
            EXPECT_EQ(rights, rights_of(one.action)) << one.action;
            EXPECT_EQ(rights.size(), one.child.size()) << one.action;
        }
    }
    EXPECT_EQ(titles.size(), g_pages.size());
    for (const auto& one : g_pages)
        EXPECT_EQ(titles[std::string(one.key)], one.title) << one.key;
}

TEST_P(menu, has_no_id_that_reads_like_the_session_code) {
    test::scene in(GetParam());
    std::set<std::int64_t> ids;
    each_node(in.read([](store::connection& with) { return whole_menu(with); }), [&](const menu_node& one) {
        EXPECT_TRUE(ids.insert(one.id).second) << one.id;
        EXPECT_GE(one.id, 100) << one.name;
    });
    EXPECT_FALSE(ids.empty());
}

TEST_P(menu, groups_are_no_pages) {
    test::scene in(GetParam());
    for (const auto& group : in.read([](store::connection& with) { return whole_menu(with); })) {
        for (const auto& one : g_pages)
            EXPECT_NE(group.action, one.key);
    }
}

TEST_P(menu, is_seen_whole_by_an_administrator_and_as_granted_by_others) {
    test::scene in(GetParam());
    const auto count = [&](const principal& who) {
        int rows = 0;
        each_node(in.read([&](store::connection& with) { return visible_menu(with, who); }),
                  [&](const menu_node&) { ++rows; });
        return rows;
    };
    EXPECT_EQ(count(in.log_in(in.boss)), in.number("SELECT count(*) FROM menu"));
    EXPECT_EQ(count(in.log_in(in.hand)), 0);
    in.write([&](store::connection& with) {
        for (const std::int64_t one : {400, 403, 40301, 40401})
            grant_row(with, in.hand, one, g_now);
    });
    // 40401 hangs below a page that is not granted
    EXPECT_EQ(count(in.log_in(in.hand)), 3);
}

TEST_P(menu, hidden_rows_are_for_the_administration_only) {
    test::scene in(GetParam());
    in.write([](store::connection& with) {
        with.execute({"hide", "UPDATE menu SET shown = 0 WHERE id = 400"}, {});
    });
    const auto who = in.log_in(in.boss);
    EXPECT_EQ(in.read([&](store::connection& with) { return visible_menu(with, who); }).size(), 4U);
    EXPECT_EQ(in.read([](store::connection& with) { return whole_menu(with); }).size(), 5U);
}

} // namespace
} // namespace tavrok::domain
