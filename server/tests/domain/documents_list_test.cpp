#include "domain/documents_scene.h"
#include "domain/staff_scene.h"

namespace tavrok::domain {
namespace {

using test::g_in;
using test::g_now;
using test::g_out;

class documents_list : public test::documents_test {
protected:
    /** Writes an inbound document and gives its id. */
    std::int64_t write(const document_header& what, std::int64_t now = g_now) {
        EXPECT_EQ(attempt(g_in, what, {line()}, now), "");
        return newest_document();
    }
    std::vector<std::int64_t> found(const document_search& search, document_module module = g_in) {
        std::vector<std::int64_t> ids;
        const auto page = documents(module, search);
        for (const auto& one : page.list)
            ids.push_back(one.id);
        EXPECT_EQ(page.total, static_cast<std::int64_t>(ids.size()));
        return ids;
    }
};
ON_EVERY_ENGINE(documents_list);

using ids = std::vector<std::int64_t>;

TEST_P(documents_list, shows_one_kind_of_one_module_and_company_newest_first) {
    const auto first = receive({line()}, 1, g_now);
    const auto second = receive({line()}, 1, g_now + 1);
    const auto other = receive({line()}, 7, g_now + 2);
    open(g_in, 1);
    EXPECT_EQ(found({.type = 1}), (ids{second, first}));
    EXPECT_EQ(found({.type = 7}), ids{other});
    EXPECT_TRUE(found({.type = 2}).empty());
    EXPECT_TRUE(found({.type = 1}, g_out).empty());
    EXPECT_TRUE(documents(them.boss, g_in, {.type = 1}).list.empty());
    for (const std::int64_t type : {0, 8, -1})
        EXPECT_THROW(found({.type = type}), refused) << type;
    EXPECT_THROW(found({.type = 7}, g_out), refused);
}

TEST_P(documents_list, shows_who_with_whom_and_how_much) {
    receive({line(3), line(1, 99)}, 2, g_now + 7);
    const auto one = documents(g_in, {.type = 2}).list.at(0);
    EXPECT_EQ(one.type, 2);
    EXPECT_EQ(one.sn.substr(0, 2), "SC");
    EXPECT_EQ(one.added_at, g_now + 7);
    EXPECT_EQ(one.operater_name, "员工我-1");
    EXPECT_EQ(one.writer_name, "某人");
    EXPECT_EQ(one.partner, std::nullopt);
    EXPECT_EQ(one.partner_name, "");
    EXPECT_EQ(one.dept, us.department);
    EXPECT_EQ(one.dept_name, "我部门");
    EXPECT_EQ(one.total, 849);
    auto top = header(g_in, 4);
    top.dept = 0;
    write(top);
    const auto of_the_top = documents(g_in, {.type = 4}).list.at(0);
    EXPECT_EQ(of_the_top.dept, 0);
    EXPECT_EQ(of_the_top.dept_name, "");
    receive({line()}, 7);
    EXPECT_EQ(documents(g_in, {.type = 7}).list.at(0).dept, std::nullopt);
}

TEST_P(documents_list, has_bounds_of_time_that_are_included) {
    const auto id = receive({line()}, 7, g_now);
    const auto shown = [&](std::optional<std::int64_t> from, std::optional<std::int64_t> to) {
        return found({.type = 7, .date_start = from, .date_end = to}) == ids{id};
    };
    EXPECT_TRUE(shown({}, {}));
    EXPECT_TRUE(shown(g_now, g_now));
    EXPECT_TRUE(shown(g_now, {}));
    EXPECT_TRUE(shown({}, g_now));
    EXPECT_FALSE(shown(g_now + 1, {}));
    EXPECT_FALSE(shown({}, g_now - 1));
    EXPECT_FALSE(shown(g_now + 1, g_now - 1)) << "the wrong way round";
    EXPECT_TRUE(shown(0, INT64_MAX));
}

TEST_P(documents_list, finds_a_part_of_a_number_whatever_its_case) {
    const auto first = receive({line()}, 1);
    const auto second = receive({line()}, 1);
    const auto sn = sn_of(first);
    for (const auto& word :
         {sn, sn.substr(3), std::string("cg"), std::string("Cg2"), std::string("G202"), sn.substr(4, 9)})
        EXPECT_FALSE(found({.type = 1, .sn = word}).empty()) << word;
    std::string small = sn;
    small[0] = 'c';
    small[1] = 'g';
    EXPECT_EQ(found({.type = 1, .sn = small}), ids{first});
    EXPECT_EQ(found({.type = 1, .sn = "-0002"}), ids{second});
    for (const std::string word : {"%", "_", "\\", "xs", "--", "ＣＧ", "CG%", "' OR 1=1", "-00010"})
        EXPECT_TRUE(found({.type = 1, .sn = word}).empty()) << word;
    EXPECT_THROW(found({.type = 1, .sn = "\xff"}), refused);
}

TEST_P(documents_list, finds_a_partner_and_a_department) {
    auto what = header(g_in, 5);
    what.partner = us.supplier;
    const auto first = write(what);
    what.partner = us.client;
    const auto second = write(what);
    EXPECT_EQ(found({.type = 5, .partner = us.supplier}), ids{first});
    EXPECT_EQ(found({.type = 5, .partner = us.client}), ids{second});
    EXPECT_TRUE(found({.type = 5, .partner = us.other}).empty());
    EXPECT_TRUE(found({.type = 5, .partner = them.supplier}).empty());
    EXPECT_TRUE(found({.type = 5, .dept = 0}).empty()) << "no department is not the top of the tree";
    what = header(g_in, 2);
    const auto below = write(what);
    what.dept = 0;
    const auto top = write(what);
    EXPECT_EQ(found({.type = 2, .dept = us.department}), ids{below});
    EXPECT_EQ(found({.type = 2, .dept = 0}), ids{top});
    EXPECT_EQ(found({.type = 2}), (ids{top, below}));
}

TEST_P(documents_list, finds_who_handled_the_goods_and_who_wrote) {
    const auto other = employee(boss, "我-2");
    auto what = header(g_in, 7);
    const auto first = write(what);
    what.operater = std::to_string(other);
    const auto second = write(what);
    EXPECT_EQ(found({.type = 7, .operater = std::to_string(us.employee)}), ids{first});
    const auto letter = test::utf8(static_cast<unsigned>(other & 0xff));
    EXPECT_EQ(found({.type = 7, .operater = letter}), ids{second});
    for (const std::string nobody : {"4711", "xy", "-1"})
        EXPECT_TRUE(found({.type = 7, .operater = nobody}).empty()) << nobody;
    EXPECT_TRUE(found({.type = 7, .operater = std::to_string(them.employee)}).empty());

    auto who = clerk({{"instore_other", "add"}});
    what.writer.clear();
    const auto draft = open(who, g_in, what);
    put(who, g_in, draft, line());
    announce(who, line());
    ASSERT_EQ(close(who, g_in, draft, 2500), "");
    EXPECT_EQ(found({.type = 7, .writer = who.user}), ids{newest_document()});
    EXPECT_EQ(found({.type = 7, .writer = boss.user}), (ids{second, first}));
    EXPECT_TRUE(found({.type = 7, .writer = them.boss.user}).empty());
}

TEST_P(documents_list, finds_a_part_of_a_remark_whatever_its_case) {
    auto what = header(g_in, 7);
    what.remark = "合同 TK-2026 Äpfel 100%";
    const auto id = write(what);
    what.remark = "";
    write(what);
    for (const std::string word : {"合同", "tk-2026", "TK", "äpfel", "ÄPFEL", "100%", " "})
        EXPECT_EQ(found({.type = 7, .remark = word}), ids{id}) << word;
    for (const std::string word : {"合 同", "1__%", "%%", "_"})
        EXPECT_TRUE(found({.type = 7, .remark = word}).empty()) << word;
}

TEST_P(documents_list, meets_all_criteria_at_once) {
    auto what = header(g_in, 1);
    what.remark = "春季备货";
    const auto id = write(what, g_now);
    const document_search all{.type = 1,
                              .date_start = g_now,
                              .date_end = g_now,
                              .sn = "cg",
                              .partner = us.supplier,
                              .operater = std::to_string(us.employee),
                              .writer = boss.user,
                              .remark = "备货"};
    EXPECT_EQ(found(all), ids{id});
    const auto misses = [&](auto change) {
        auto search = all;
        change(search);
        EXPECT_TRUE(found(search).empty());
    };
    misses([](document_search& one) { one.type = 3; });
    misses([](document_search& one) { one.date_start = g_now + 1; });
    misses([](document_search& one) { one.date_end = g_now - 1; });
    misses([](document_search& one) { one.sn = "xs"; });
    misses([&](document_search& one) { one.partner = us.client; });
    misses([](document_search& one) { one.operater = "4711"; });
    misses([&](document_search& one) { one.writer = in->hand.user; });
    misses([](document_search& one) { one.remark = "秋季"; });
    misses([](document_search& one) { one.dept = 0; });
}

TEST_P(documents_list, comes_in_pages) {
    std::vector<std::int64_t> all;
    for (int i = 0; i < 7; ++i)
        all.insert(all.begin(), receive({line()}, 7));
    std::vector<std::int64_t> seen;
    for (std::int64_t num = 1; num <= 3; ++num) {
        const auto page = documents(g_in, {.type = 7}, {num, 3});
        EXPECT_EQ(page.total, 7);
        EXPECT_EQ(page.page_count, 3);
        EXPECT_EQ(page.page_num, num);
        for (const auto& one : page.list)
            seen.push_back(one.id);
    }
    EXPECT_EQ(seen, all);
    EXPECT_EQ(documents(g_in, {.type = 7}, {-1, 3}).page_num, 3);
    EXPECT_EQ(documents(g_in, {.type = 7}, {99, 3}).page_num, 3);
    EXPECT_EQ(documents(g_in, {.type = 7}, {0, 3}).page_num, 1);
    EXPECT_EQ(documents(g_in, {.type = 1}, {5, 3}).page_count, 0);
    for (const std::int64_t size : {0, -1, 201})
        EXPECT_THROW(documents(g_in, {.type = 7}, {1, size}), refused) << size;
}

TEST_P(documents_list, counts_anew_after_each_document) {
    EXPECT_EQ(documents(g_in, {.type = 7}).total, 0);
    const auto id = receive({line()});
    EXPECT_EQ(documents(g_in, {.type = 7}).total, 1);
    remove(g_in, id);
    EXPECT_EQ(documents(g_in, {.type = 7}).total, 0);
}

TEST_P(documents_list, goes_on_showing_the_names_of_what_is_retired) {
    const auto purchase = receive({line(0)}, 1);
    receive({line(0)}, 2);
    drop_partner(us.supplier);
    remove(boss, test::g_departments, us.department);
    remove_product(boss, us.product);
    close_warehouse(us.warehouse);
    close_warehouse(us.second_warehouse);
    dismiss(us.employee);
    const auto one = documents(g_in, {.type = 1}).list.at(0);
    EXPECT_EQ(one.partner_name, "我供应商");
    EXPECT_EQ(one.operater_name, "员工我-1");
    EXPECT_EQ(documents(g_in, {.type = 2}).list.at(0).dept_name, "我部门");
    const auto shown = lines_of(g_in, purchase).at(0);
    EXPECT_EQ(shown.product_name, "我货甲");
    EXPECT_EQ(shown.warehouse_name, "我一号库");
    EXPECT_EQ(found({.type = 1, .partner = us.supplier}), ids{purchase});
    EXPECT_TRUE(found({.type = 1, .operater = std::to_string(us.employee)}).empty())
        << "who is retired is in no picker any more";
}

TEST_P(documents_list, shows_a_document_beside_one_that_lost_its_number) {
    receive({line()}, 7);
    const auto hurt = receive({line()}, 7);
    in->write([](store::connection& with) {
        with.execute({"", "UPDATE document SET sn = NULL WHERE id = (SELECT max(id) FROM document)"}, {});
    });
    const auto page = documents(g_in, {.type = 7});
    ASSERT_EQ(page.list.size(), 2U);
    EXPECT_EQ(page.list[0].id, hurt);
    EXPECT_EQ(page.list[0].sn, "");
    EXPECT_NE(page.list[1].sn, "");
    EXPECT_FALSE(in->read([](store::connection& with) { return check(with); }).empty());
}

TEST_P(documents_list, shows_lines_in_their_order_to_who_may_view_the_kind) {
    const auto category = add(test::g_categories, "类");
    auto second = line(2);
    second.product = product_in(category, "分类货");
    const auto id = receive({line(1), second, line(3)}, 1);
    const auto lines = lines_of(g_in, id);
    ASSERT_EQ(lines.size(), 3U);
    for (std::size_t i = 0; i < 3; ++i)
        EXPECT_EQ(lines[i].amount, static_cast<std::int64_t>(i + 1));
    EXPECT_EQ(lines[0].category, 0);
    EXPECT_EQ(lines[0].category_name, "");
    EXPECT_EQ(lines[1].category, category);
    EXPECT_EQ(lines[1].category_name, "类");
    const auto read = [&](const principal& who, document_module module, std::int64_t document) {
        return in->read(
            [&](store::connection& with) { return lines_of_document(with, who, module, document).size(); });
    };
    EXPECT_EQ(read(clerk({{"instore_purchase", "view"}}), g_in, id), 3U);
    EXPECT_THROW(read(clerk({{"instore_purchase", "search"}, {"instore_other", "view"}}), g_in, id), refused);
    EXPECT_THROW(read(them.boss, g_in, id), refused);
    EXPECT_THROW(read(boss, g_out, id), refused);
    EXPECT_THROW(read(boss, g_in, 0), refused);
    EXPECT_THROW(read(boss, g_in, open(g_in, 1)), refused) << "a draft is no document";
}

} // namespace
} // namespace tavrok::domain
