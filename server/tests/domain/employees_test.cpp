#include "domain/employees.h"

#include "domain/check.h"
#include "domain/staff_scene.h"
#include "store/records/live_rows.h"

namespace tavrok::domain {
namespace {

using test::full_employee;
using test::g_now;
using test::some_employee;

class employees : public test::on_staff {
protected:
    bool taken(const principal& who, employee_mark mark, const std::string& text, std::int64_t except = 0) {
        return in->read(
            [&](store::connection& with) { return is_mark_taken(with, who, mark, text, except); });
    }
    std::vector<std::string> options(const principal& who) {
        std::vector<std::string> names;
        for (const auto& one :
             in->read([&](store::connection& with) { return list_employee_options(with, who); }))
            names.push_back(one.name + "/" + one.jobnum);
        return names;
    }
    std::int64_t defaults() {
        return in->number("SELECT count(*) FROM employee WHERE isdefault = 1 AND state = 1");
    }
};
ON_EVERY_ENGINE(employees);

constexpr std::array<std::string employee::*, 6> g_every_text{&employee::name,   &employee::jobnum,
                                                              &employee::mobile, &employee::address,
                                                              &employee::idnum,  &employee::remark};

TEST_P(employees, come_back_as_they_were_typed) {
    auto what = full_employee("A&jobnum=7");
    what.isdefault = 1;
    what.dimission = 1;
    const auto id = in->hire(in->chief, what, g_now + 5);
    EXPECT_EQ(id, 1001);
    const auto page = in->employees(in->chief);
    ASSERT_EQ(page.list.size(), 1U);
    const auto& one = page.list.front();
    EXPECT_EQ(one.id, id);
    EXPECT_EQ(one.added_at, g_now + 5);
    EXPECT_EQ(one.isdefault, 1);
    EXPECT_EQ(one.dimission, 1);
    for (const auto text : g_every_text)
        EXPECT_EQ(one.*text, what.*text);
    EXPECT_EQ(in->audited("employee_add"), 1);
}

TEST_P(employees, need_name_and_job_number) {
    for (const auto text : {&employee::name, &employee::jobnum}) {
        for (const char* nothing : {"", "  ", "\n"}) {
            auto what = full_employee("1");
            what.*text = nothing;
            EXPECT_THROW(in->hire(in->chief, what), refused);
        }
    }
    EXPECT_NO_THROW(in->hire(in->chief, some_employee("1")));
}

TEST_P(employees, have_bounded_texts_and_flags) {
    const std::vector<std::pair<std::string employee::*, std::size_t>> limits{
        {&employee::name, 200},     {&employee::jobnum, 200}, {&employee::mobile, 40},
        {&employee::address, 1000}, {&employee::idnum, 40},   {&employee::remark, 1000}};
    for (const auto& [text, limit] : limits) {
        auto what = some_employee("1");
        what.*text = std::string(limit, '5');
        const auto id = in->hire(in->chief, what);
        in->dismiss(in->chief, id);
        what.*text += '5';
        EXPECT_THROW(in->hire(in->chief, what), refused) << limit;
        for (const auto& bad : {std::string("5\0", 2), std::string("5\xff"), std::string("5\x1b")}) {
            what.*text = bad;
            EXPECT_THROW(in->hire(in->chief, what), refused);
        }
    }
    auto what = some_employee("1");
    what.mobile = "不详";
    EXPECT_THROW(in->hire(in->chief, what), refused);
    for (const std::int64_t flag : {-1, 0, 3}) {
        what = some_employee("1");
        what.isdefault = flag;
        EXPECT_THROW(in->hire(in->chief, what), refused) << flag;
        what.isdefault = 2;
        what.dimission = flag;
        EXPECT_THROW(in->hire(in->chief, what), refused) << flag;
    }
    EXPECT_EQ(in->employees(in->chief).total, 0);
}

TEST_P(employees, share_no_job_number_identity_number_or_mobile) {
    auto first = full_employee("Ab-7");
    first.id = in->hire(in->chief, first);
    const auto clash = [&](std::string employee::*text, const std::string& value) {
        auto what = some_employee("other");
        what.*text = value;
        return what;
    };
    for (const auto& what : {clash(&employee::jobnum, "aB-7"), clash(&employee::idnum, "99011719900307101x"),
                             clash(&employee::mobile, "15400005001")}) {
        EXPECT_THROW(in->hire(in->chief, what), refused);
        EXPECT_NO_THROW(in->hire(in->another("公司 " + what.jobnum + what.idnum + what.mobile), what));
    }
    const auto second = in->hire(in->chief, some_employee("second"));
    EXPECT_NO_THROW(in->hire(in->chief, some_employee("third"))) << "nobody clashes by what he has not";
    for (auto what : {clash(&employee::jobnum, "AB-7"), clash(&employee::idnum, first.idnum),
                      clash(&employee::mobile, first.mobile)}) {
        what.id = second;
        EXPECT_THROW(in->edit(in->chief, what), refused);
    }
    EXPECT_EQ(in->employee(in->chief, second).jobnum, "second");
    EXPECT_NO_THROW(in->edit(in->chief, first)) << "an employee does not clash with himself";
    in->dismiss(in->chief, first.id);
    first.id = second;
    EXPECT_NO_THROW(in->edit(in->chief, first)) << "who has gone has freed his marks";
}

TEST_P(employees, marks_are_asked_for_before_they_are_given) {
    auto one = full_employee("Ab-7");
    one.id = in->hire(in->chief, one);
    const auto two = in->hire(in->chief, some_employee("b"));
    EXPECT_TRUE(taken(in->chief, employee_mark::jobnum, "aB-7"));
    EXPECT_TRUE(taken(in->chief, employee_mark::jobnum, "aB-7", two));
    EXPECT_FALSE(taken(in->chief, employee_mark::jobnum, "aB-7", one.id));
    EXPECT_FALSE(taken(in->chief, employee_mark::jobnum, "aB"));
    EXPECT_TRUE(taken(in->chief, employee_mark::idnum, "99011719900307101x"));
    EXPECT_FALSE(taken(in->chief, employee_mark::idnum, one.idnum, one.id));
    EXPECT_TRUE(taken(in->chief, employee_mark::mobile, one.mobile));
    EXPECT_FALSE(taken(in->chief, employee_mark::mobile, one.mobile, one.id));
    EXPECT_FALSE(taken(in->chief, employee_mark::mobile, one.jobnum)) << "each mark for itself";
    for (const auto mark : {employee_mark::jobnum, employee_mark::idnum, employee_mark::mobile}) {
        EXPECT_FALSE(taken(in->chief, mark, "")) << "nothing is taken by nobody";
        EXPECT_FALSE(taken(in->another("公司 " + std::to_string(static_cast<int>(mark))), mark, "Ab-7"));
        EXPECT_THROW(taken(in->chief, mark, "x", 4711), refused);
        EXPECT_THROW(taken(in->chief, mark, "\xff"), refused);
        EXPECT_THROW(taken(in->chief, mark, std::string(201, 'x')), refused);
    }
    EXPECT_THROW(taken(in->another("外"), employee_mark::jobnum, "Ab-7", one.id), refused);
    in->dismiss(in->chief, one.id);
    EXPECT_FALSE(taken(in->chief, employee_mark::jobnum, "Ab-7"));
    EXPECT_FALSE(taken(in->chief, employee_mark::idnum, one.idnum));
    EXPECT_FALSE(taken(in->chief, employee_mark::mobile, one.mobile));
    EXPECT_THROW(taken(in->chief, employee_mark::jobnum, "Ab-7", one.id), refused);
}

TEST_P(employees, an_edit_writes_every_text_and_clears_what_is_empty) {
    auto what = full_employee("1");
    what.dimission = 1;
    const auto id = in->hire(in->chief, what);
    auto bare = some_employee("2", "新名");
    bare.id = id;
    in->edit(in->chief, bare);
    const auto one = in->employee(in->chief, id);
    for (const auto text : g_every_text)
        EXPECT_EQ(one.*text, bare.*text);
    EXPECT_EQ(one.dimission, 2);
    EXPECT_EQ(one.added_at, g_now);
    EXPECT_EQ(in->employees(in->chief, {.name = "新"}).total, 1);
    EXPECT_EQ(in->employees(in->chief, {.name = "A&B"}).total, 0);
    EXPECT_EQ(in->audited("employee_edit"), 1);
}

TEST_P(employees, a_refused_change_changes_nothing) {
    auto kept = full_employee("1");
    kept.isdefault = 1;
    kept.id = in->hire(in->chief, kept);
    auto second = some_employee("2");
    second.id = in->hire(in->chief, second);
    const auto version = in->version();
    second.isdefault = 1;
    second.mobile = "abc";
    EXPECT_THROW(in->edit(in->chief, second), refused);
    second.mobile = kept.mobile;
    EXPECT_THROW(in->edit(in->chief, second), refused);
    auto unknown = some_employee("3");
    unknown.isdefault = 1;
    unknown.id = 4711;
    EXPECT_THROW(in->edit(in->chief, unknown), refused);
    EXPECT_THROW(in->dismiss(in->chief, 4711), refused);
    EXPECT_EQ(in->employee(in->chief, kept.id).isdefault, 1) << "still the default one";
    EXPECT_EQ(in->version(), version);
    EXPECT_EQ(in->employees(in->chief).total, 2);
}

TEST_P(employees, one_is_the_default) {
    auto first = some_employee("1");
    first.isdefault = 1;
    first.id = in->hire(in->chief, first);
    auto second = some_employee("2");
    second.id = in->hire(in->chief, second);
    EXPECT_EQ(in->employee(in->chief, first.id).isdefault, 1);
    second.isdefault = 1;
    in->edit(in->chief, second);
    EXPECT_EQ(in->employee(in->chief, first.id).isdefault, 2);
    EXPECT_EQ(in->employee(in->chief, second.id).isdefault, 1);
    in->edit(in->chief, second);
    EXPECT_EQ(in->employee(in->chief, second.id).isdefault, 1) << "stays the default one";
    auto third = some_employee("3");
    third.isdefault = 1;
    third.id = in->hire(in->chief, third);
    EXPECT_EQ(in->employee(in->chief, third.id).isdefault, 1);
    EXPECT_EQ(defaults(), 1);
    const auto other = in->another("二号");
    in->hire(other, first);
    EXPECT_EQ(defaults(), 2) << "one for each company";
    in->dismiss(in->chief, third.id);
    EXPECT_EQ(defaults(), 1) << "nobody inherits the flag";
    EXPECT_NO_THROW(in->edit(in->chief, second));
    second.isdefault = 2;
    in->edit(in->chief, second);
    EXPECT_EQ(defaults(), 1) << "a company may have none";
}

TEST_P(employees, who_has_gone_leaves_every_list_and_keeps_his_row) {
    auto what = full_employee("1");
    const auto id = in->hire(in->chief, what);
    in->dismiss(in->chief, id);
    EXPECT_EQ(in->employees(in->chief).total, 0);
    EXPECT_EQ(in->employees(in->chief, {.jobnum = "1"}).total, 0);
    EXPECT_TRUE(options(in->chief).empty());
    EXPECT_THROW(in->dismiss(in->chief, id), refused);
    what.id = id;
    EXPECT_THROW(in->edit(in->chief, what), refused);
    EXPECT_EQ(in->number("SELECT state FROM employee"), 2);
    EXPECT_EQ(in->audited("employee_delete"), 1);
    EXPECT_EQ(in->hire(in->chief, what), id + 1) << "an id is never given twice";
}

TEST_P(employees, belong_to_their_company) {
    auto what = full_employee("1");
    what.id = in->hire(in->chief, what);
    const auto other = in->another("二号");
    EXPECT_EQ(in->employees(other).total, 0);
    EXPECT_EQ(in->employees(other, {.jobnum = "1"}).total, 0);
    EXPECT_THROW(in->edit(other, what), refused);
    EXPECT_THROW(in->dismiss(other, what.id), refused);
    EXPECT_TRUE(options(other).empty());
    in->hire(other, what);
    EXPECT_EQ(in->employees(in->chief).total, 1);
    EXPECT_EQ(options(in->chief).size(), 1U);
}

/** The second line: were the check before a write ever lost, the write itself would still not leave the
 * company. */
TEST_P(employees, each_statement_is_bound_to_the_company) {
    auto what = full_employee("1");
    what.isdefault = 1;
    what.id = in->hire(in->chief, what);
    const auto other = in->another("二号").company;
    in->write([&](store::connection& with) {
        const auto& list = store::g_employee_list;
        EXPECT_FALSE(store::is_live(with, list, other, what.id));
        EXPECT_EQ(store::retire(with, list, other, what.id, g_now), 0);
        EXPECT_EQ(store::update_employee(with, other, what, {"x", "x", "x"}), 0);
        EXPECT_EQ(test::rows_seen(with, list, other, what.id), 0);
        EXPECT_FALSE(store::employee_bears(with, other, employee_mark::jobnum, "1", 0));
        EXPECT_TRUE(store::employees_of_low_byte(with, other, what.id % 256).empty());
        store::clear_default(with, list, other, 2);
    });
    EXPECT_EQ(in->employee(in->chief, what.id).isdefault, 1);
    EXPECT_EQ(in->employees(in->chief, {.name = "A&b"}).total, 1);
}

TEST_P(employees, are_searched_by_the_text_as_it_stands) {
    auto what = full_employee("100%_A");
    in->hire(in->chief, what);
    in->hire(in->chief, some_employee("1000 b", "ÄRGER Завод"));
    const auto total = [&](const employee_search& search) { return in->employees(in->chief, search).total; };
    EXPECT_EQ(total({.jobnum = "100"}), 2);
    EXPECT_EQ(total({.jobnum = "%"}), 1);
    EXPECT_EQ(total({.jobnum = "_a"}), 1);
    EXPECT_EQ(total({.name = "ärger зАВОД"}), 1);
    EXPECT_EQ(total({.idnum = "101x"}), 1);
    EXPECT_EQ(total({.mobile = "05001"}), 1);
    EXPECT_EQ(total({.mobile = "%"}), 0);
    EXPECT_EQ(total({.mobile = "_"}), 0);
    EXPECT_EQ(total({.name = "ärger", .jobnum = "%"}), 0);
    EXPECT_THROW(total({.name = std::string(1001, 'x')}), refused);
    EXPECT_THROW(total({.mobile = "\xff"}), refused);
}

TEST_P(employees, are_counted_anew_after_every_change) {
    const employee_search search{.name = "甲"};
    EXPECT_EQ(in->employees(in->chief, search).total, 0);
    auto what = some_employee("1", "甲一");
    what.id = in->hire(in->chief, what);
    EXPECT_EQ(in->employees(in->chief, search).total, 1);
    what.name = "乙";
    in->edit(in->chief, what);
    EXPECT_EQ(in->employees(in->chief, search).total, 0);
    what.name = "甲";
    in->edit(in->chief, what);
    in->dismiss(in->chief, what.id);
    EXPECT_EQ(in->employees(in->chief, search).total, 0);
}

TEST_P(employees, options_are_who_has_not_left_in_the_order_of_coming) {
    in->hire(in->chief, some_employee("Z", "甲"));
    auto left = some_employee("Y", "乙");
    left.dimission = 1;
    left.id = in->hire(in->chief, left);
    in->hire(in->chief, some_employee("X", "丙"));
    EXPECT_EQ(options(in->chief), (std::vector<std::string>{"甲/Z", "丙/X"}));
    left.dimission = 2;
    in->edit(in->chief, left);
    EXPECT_EQ(options(in->chief), (std::vector<std::string>{"甲/Z", "乙/Y", "丙/X"}));
}

TEST_P(employees, pages_are_newest_first_and_brought_into_the_range) {
    for (int i = 0; i < 5; ++i)
        in->hire(in->chief, some_employee(std::to_string(i)));
    const auto page = in->employees(in->chief, {}, 1, 2);
    EXPECT_EQ(page.total, 5);
    EXPECT_EQ(page.page_count, 3);
    EXPECT_EQ(page.list.at(0).jobnum, "4");
    EXPECT_EQ(page.list.at(1).jobnum, "3");
    EXPECT_EQ(in->employees(in->chief, {}, -1, 2).list.at(0).jobnum, "0");
    EXPECT_EQ(in->employees(in->chief, {}, 99, 2).page_num, 3);
    EXPECT_EQ(in->employees(in->chief, {}, 0, 2).page_num, 1);
    EXPECT_THROW(in->employees(in->chief, {}, 1, 201), refused);
    EXPECT_THROW(in->employees(in->chief, {}, 1, 0), refused);
}

TEST_P(employees, are_bounded_in_number) {
    int number = 0;
    in->hire(in->chief, test::some_employee("L" + std::to_string(number++)));
    in->write([&](store::connection& with) {
        with.execute({"", "UPDATE list_counter SET live = ? WHERE list = 'employee'"},
                     {g_most_employees - 1});
    });
    EXPECT_NO_THROW(in->hire(in->chief, test::some_employee("L" + std::to_string(number++))));
    EXPECT_THROW(in->hire(in->chief, test::some_employee("L" + std::to_string(number++))), refused);
    EXPECT_EQ(in->number("SELECT count(*) FROM employee"), 2);
    EXPECT_EQ(in->number("SELECT live FROM list_counter WHERE list = 'employee'"), g_most_employees);
}

} // namespace
} // namespace tavrok::domain
