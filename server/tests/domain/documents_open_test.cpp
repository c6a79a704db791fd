#include "domain/document_kinds.h"
#include "domain/documents_scene.h"
#include "domain/staff_scene.h"

namespace tavrok::domain {
namespace {

using test::g_in;
using test::g_now;
using test::g_out;

/** s supplier, c client, a any partner, d department, n none. */
struct kind {
    document_module module;
    std::int64_t type;
    char counterpart;
    const char* page;
};
constexpr kind g_kinds[] = {
    {g_in, 1, 's', "instore_purchase"},      {g_in, 2, 'd', "instore_production"},
    {g_in, 3, 'c', "instore_sale_return"},   {g_in, 4, 'd', "instore_receive_return"},
    {g_in, 5, 'a', "instore_borrow_return"}, {g_in, 6, 'a', "instore_lend_return"},
    {g_in, 7, 'n', "instore_other"},         {g_out, 1, 's', "outstore_purchase_return"},
    {g_out, 2, 'c', "outstore_sale_take"},   {g_out, 3, 'd', "outstore_receive"},
    {g_out, 4, 'a', "outstore_lend"},        {g_out, 5, 'a', "outstore_borrow_return"},
    {g_out, 6, 'n', "outstore_other"}};

class documents_open : public test::documents_test {
protected:
    bool opens(document_module module, const document_header& what) {
        const auto before = in->number("SELECT count(*) FROM draft");
        try {
            EXPECT_GT(open(module, what), 1000);
        } catch (const refused&) {
            EXPECT_EQ(in->number("SELECT count(*) FROM draft"), before) << "nothing is written";
            return false;
        }
        return true;
    }
    document_header bare(std::int64_t type) {
        auto made = header(g_in, 7);
        made.type = type;
        return made;
    }
};
ON_EVERY_ENGINE(documents_open);

TEST_P(documents_open, asks_for_the_counterpart_of_the_kind_and_for_no_other) {
    for (const auto& one : g_kinds) {
        EXPECT_EQ(page_of(one.module, one.type), one.page);
        const auto with_partner = [&](std::int64_t id) {
            auto made = bare(one.type);
            made.partner = id;
            return opens(one.module, made);
        };
        const auto with_dept = [&](std::int64_t id) {
            auto made = bare(one.type);
            made.dept = id;
            return opens(one.module, made);
        };
        const char wanted = one.counterpart;
        EXPECT_EQ(with_partner(us.supplier), wanted == 's' || wanted == 'a') << one.page;
        EXPECT_EQ(with_partner(us.client), wanted == 'c' || wanted == 'a') << one.page;
        EXPECT_EQ(with_partner(us.other), wanted == 'a') << one.page;
        EXPECT_EQ(with_dept(us.department), wanted == 'd') << one.page;
        EXPECT_EQ(with_dept(0), wanted == 'd') << one.page << ": 0 is the top of the tree";
        EXPECT_EQ(opens(one.module, bare(one.type)), wanted == 'n') << one.page;
        auto both = bare(one.type);
        both.partner = us.supplier;
        both.dept = us.department;
        EXPECT_FALSE(opens(one.module, both)) << one.page;
        for (const auto strange : {them.supplier, them.client, them.other, std::int64_t{0}, std::int64_t{-1}})
            EXPECT_FALSE(with_partner(strange)) << one.page << ' ' << strange;
        for (const auto strange : {them.department, std::int64_t{-1}, std::int64_t{4711}})
            EXPECT_FALSE(with_dept(strange)) << one.page << ' ' << strange;
    }
}

TEST_P(documents_open, refuses_kinds_that_the_module_does_not_have) {
    for (const std::int64_t type : {-1, 0, 8, 99}) {
        EXPECT_FALSE(opens(g_in, bare(type))) << type;
        EXPECT_THROW(page_of(g_in, type), refused);
    }
    for (const std::int64_t type : {-1, 0, 7, 99})
        EXPECT_FALSE(opens(g_out, bare(type))) << type;
}

TEST_P(documents_open, refuses_what_is_retired) {
    const auto refuses = [&](document_module module, std::int64_t type) {
        return !opens(module, header(module, type));
    };
    drop_partner(us.supplier);
    EXPECT_TRUE(refuses(g_in, 1));
    drop_partner(us.other);
    EXPECT_TRUE(refuses(g_out, 4));
    remove(boss, test::g_departments, us.department);
    EXPECT_TRUE(refuses(g_in, 2));
    EXPECT_FALSE(refuses(g_in, 7));
    dismiss(us.employee);
    EXPECT_TRUE(refuses(g_in, 7));
}

TEST_P(documents_open, takes_the_employee_by_id_and_by_his_letter) {
    auto what = header(g_in, 7);
    const auto stored = [&] { return in->number("SELECT operater FROM draft ORDER BY id DESC LIMIT 1"); };
    EXPECT_TRUE(opens(g_in, what));
    EXPECT_EQ(stored(), us.employee);
    what.operater = test::utf8(static_cast<unsigned>(us.employee & 0xff));
    EXPECT_TRUE(opens(g_in, what));
    EXPECT_EQ(stored(), us.employee);
    for (const std::string nobody : {"", "4711", "ab", "7", " ", "-1", "1.5"}) {
        what.operater = nobody;
        EXPECT_FALSE(opens(g_in, what)) << '"' << nobody << '"';
    }
    what.operater = std::to_string(them.employee);
    EXPECT_FALSE(opens(g_in, what)) << "another company's";
}

TEST_P(documents_open, is_written_by_whom_the_session_says) {
    auto what = header(g_in, 7);
    what.writer.clear();
    EXPECT_TRUE(opens(g_in, what));
    EXPECT_EQ(in->number("SELECT user_id FROM draft"), boss.user);
    for (const auto& writer : {std::to_string(in->hand.user), std::to_string(them.boss.user),
                               std::string("x"), '0' + std::to_string(boss.user)}) {
        what.writer = writer;
        EXPECT_FALSE(opens(g_in, what)) << writer;
    }
}

TEST_P(documents_open, keeps_what_a_header_says_as_it_was_typed) {
    auto what = header(g_in, 1);
    what.remark = "第一行\n&total=1\t'%_\\😀";
    open(g_in, what);
    EXPECT_EQ(close(g_in, open(g_in, what), 0), "the draft has no lines");
    EXPECT_EQ(attempt(g_in, what, {line()}), "");
    const auto found = documents(g_in, {.type = 1}).list;
    ASSERT_EQ(found.size(), 1U) << "drafts are in no list";
    EXPECT_EQ(found[0].remark, what.remark);
    EXPECT_EQ(found[0].partner, us.supplier);
    EXPECT_EQ(found[0].dept, std::nullopt);
    EXPECT_EQ(found[0].writer, boss.user);
    EXPECT_EQ(found[0].operater, us.employee);
    EXPECT_EQ(found[0].total, 2500);
    EXPECT_EQ(found[0].added_at, g_now);
    what.remark = std::string(1000, 'x');
    EXPECT_TRUE(opens(g_in, what));
    what.remark += 'x';
    EXPECT_FALSE(opens(g_in, what));
    what.remark = "a\x01";
    EXPECT_FALSE(opens(g_in, what));
    what.remark = "\xff";
    EXPECT_FALSE(opens(g_in, what));
}

TEST_P(documents_open, ends_at_fifty_drafts_of_a_session) {
    std::vector<std::int64_t> drafts;
    for (int i = 0; i < 50; ++i)
        drafts.push_back(open(g_in, 7));
    EXPECT_FALSE(opens(g_in, header(g_in, 7)));
    EXPECT_FALSE(opens(g_out, header(g_out, 6)));
    auto again = header(g_in, 7);
    again.writer.clear();
    EXPECT_NO_THROW(open(in->log_in(in->boss), g_in, again)) << "another session of the same user";
    EXPECT_NE(close(g_in, drafts[0], 0), "");
    EXPECT_TRUE(opens(g_in, header(g_in, 7))) << "one is gone";
}

TEST_P(documents_open, names_may_retire_before_the_closing_call) {
    for (const auto& [module, type] : {std::pair(g_in, 1), {g_in, 2}}) {
        const auto draft = open(module, type);
        put(module, draft, line());
        announce(line());
        if (type == 1) drop_partner(us.supplier);
        if (type == 2) remove(boss, test::g_departments, us.department);
        EXPECT_EQ(close(module, draft, 2500), "") << type;
    }
    const auto draft = open(g_in, 7);
    put(g_in, draft, line());
    announce(line());
    dismiss(us.employee);
    EXPECT_EQ(close(g_in, draft, 2500), "");
    EXPECT_EQ(documents(g_in, {.type = 1}).list.at(0).partner_name, "我供应商");
    EXPECT_EQ(documents(g_in, {.type = 2}).list.at(0).dept_name, "我部门");
    EXPECT_EQ(documents(g_in, {.type = 7}).list.at(0).operater_name, "员工我-1");
    ledger_is_right();
}

} // namespace
} // namespace tavrok::domain
