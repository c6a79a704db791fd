#include "domain/partners.h"

#include <array>
#include <functional>

#include "domain/refused.h"
#include "domain/scene.h"
#include "store/records/partners.h"

namespace tavrok::domain {
namespace {

using test::g_now;
using test::some_partner;

class partners : public test::on_engine {
protected:
    void SetUp() override {
        on_engine::SetUp();
        if (IsSkipped()) return;
        in = std::make_unique<test::scene>(GetParam());
        boss = in->log_in(in->boss);
    }
    added add(const principal& who, const partner& what, std::int64_t now = g_now) {
        return in->write([&](store::connection& with) { return add_partner(with, who, what, now); });
    }
    void edit(const principal& who, const partner_change& change) {
        in->write([&](store::connection& with) { edit_partner(with, who, change, g_now); });
    }
    void remove(const principal& who, std::int64_t id) {
        in->write([&](store::connection& with) { remove_partner(with, who, id, g_now); });
    }
    partner_page list(const principal& who, const partner_search& search, std::int64_t num = 1,
                      std::int64_t size = 20) {
        return in->read(
            [&](store::connection& with) { return list_partners(with, who, search, num, size, counts); });
    }
    principal with_rows(std::initializer_list<std::int64_t> rows) {
        in->write([&](store::connection& with) {
            for (const auto one : rows)
                grant_row(with, in->hand, one, g_now);
        });
        return in->log_in(in->hand);
    }
    principal other_company() {
        const auto other =
            in->write([](store::connection& with) { return create_company(with, "二号", false, g_now); });
        return in->log_in(in->user(other, "chief", 1));
    }
    std::int64_t audited(const std::string& what) {
        return in->number("SELECT count(*) FROM audit WHERE what = '" + what + "'");
    }

    std::unique_ptr<test::scene> in;
    principal boss;
    count_cache counts;
};
ON_EVERY_ENGINE(partners);

TEST_P(partners, come_back_as_they_were_typed) {
    auto what = some_partner(2, "A&B=C+D%20 '引号' \\ _%");
    what.remark = "第一行\n&price=1\t😀";
    const auto made = add(boss, what, g_now + 5);
    EXPECT_EQ(made.id, 1001);
    EXPECT_EQ(made.datetime, g_now + 5);
    const auto page = list(boss, {.type = partner_type::client});
    ASSERT_EQ(page.list.size(), 1U);
    const auto& one = page.list.front();
    EXPECT_EQ(one.id, made.id);
    EXPECT_EQ(one.type, 2);
    EXPECT_EQ(one.datetime, g_now + 5);
    for (auto text : {&partner::name, &partner::phone, &partner::linkman, &partner::mobile, &partner::fax,
                      &partner::address, &partner::account, &partner::bank, &partner::remark}) {
        EXPECT_EQ(one.*text, what.*text);
    }
    EXPECT_EQ(audited("partner_add"), 1);
}

TEST_P(partners, need_name_address_and_phone) {
    for (auto text : {&partner::name, &partner::address, &partner::phone}) {
        for (const char* nothing : {"", "  "}) {
            auto what = some_partner(1, "甲");
            what.*text = nothing;
            EXPECT_THROW(add(boss, what), refused);
        }
    }
    partner least;
    least.type = 1;
    least.name = least.address = least.phone = "x";
    EXPECT_NO_THROW(add(boss, least));
    EXPECT_EQ(list(boss, {.type = partner_type::supplier}).total, 1);
}

TEST_P(partners, have_bounded_texts) {
    const std::string longest_name(200, 'n');
    std::string longest_remark;
    for (int i = 0; i < 1000; ++i)
        longest_remark += "仓";
    auto what = some_partner(1, longest_name);
    what.remark = longest_remark;
    EXPECT_NO_THROW(add(boss, what));
    what.remark += "仓";
    EXPECT_THROW(add(boss, what), refused);
    EXPECT_THROW(add(boss, some_partner(1, longest_name + "n")), refused);
    EXPECT_THROW(add(boss, some_partner(1, std::string("a\0b", 3))), refused);
    EXPECT_THROW(add(boss, some_partner(1, "\xff")), refused);
    what = some_partner(1, "甲");
    what.mobile = "不详";
    EXPECT_THROW(add(boss, what), refused);
    for (const int type : {-1, 0, 4, 5})
        EXPECT_THROW(add(boss, some_partner(type, "甲")), refused) << type;
}

TEST_P(partners, an_edit_changes_what_is_given_and_nothing_else) {
    const auto id = add(boss, some_partner(1, "甲")).id;
    partner_change change{.id = id, .name = "Neu 乙", .remark = ""};
    edit(boss, change);
    const auto one = list(boss, {.type = partner_type::supplier}).list.at(0);
    EXPECT_EQ(one.name, "Neu 乙");
    EXPECT_EQ(one.remark, "");
    EXPECT_EQ(one.address, some_partner(1, "").address);
    EXPECT_EQ(one.datetime, g_now);
    EXPECT_EQ(list(boss, {.type = partner_type::supplier, .name = "nEU"}).total, 1);
    EXPECT_EQ(list(boss, {.type = partner_type::supplier, .name = "甲"}).total, 0);
    EXPECT_THROW(edit(boss, {.id = id, .name = " "}), refused);
    EXPECT_THROW(edit(boss, {.id = id, .mobile = "abc"}), refused);
    EXPECT_NO_THROW(edit(boss, {.id = id}));
    EXPECT_EQ(list(boss, {.type = partner_type::supplier}).list.at(0).name, "Neu 乙");
    EXPECT_EQ(audited("partner_edit"), 2);
}

TEST_P(partners, a_refused_change_changes_nothing) {
    const auto id = add(boss, some_partner(1, "甲")).id;
    const auto version = in->number("SELECT data_version FROM company");
    EXPECT_THROW(edit(boss, {.id = id, .name = "乙", .mobile = "abc"}), refused);
    EXPECT_THROW(remove(boss, id + 1), refused);
    EXPECT_EQ(list(boss, {.type = partner_type::supplier}).list.at(0).name, "甲");
    EXPECT_EQ(in->number("SELECT data_version FROM company"), version);
}

TEST_P(partners, a_removed_one_leaves_every_list_and_keeps_its_row) {
    const auto id = add(boss, some_partner(1, "甲")).id;
    remove(boss, id);
    EXPECT_EQ(list(boss, {.type = partner_type::supplier}).total, 0);
    EXPECT_EQ(list(boss, {.type = partner_type::any}).total, 0);
    EXPECT_EQ(list(boss, {.type = partner_type::supplier, .name = "甲"}).total, 0);
    EXPECT_THROW(remove(boss, id), refused);
    EXPECT_THROW(edit(boss, {.id = id, .name = "乙"}), refused);
    EXPECT_EQ(in->number("SELECT state FROM partner"), 2);
    EXPECT_EQ(audited("partner_delete"), 1);
    EXPECT_EQ(add(boss, some_partner(1, "丙")).id, id + 1);
}

TEST_P(partners, belong_to_their_company) {
    const auto id = add(boss, some_partner(1, "甲")).id;
    const auto other = other_company();
    EXPECT_EQ(list(other, {.type = partner_type::supplier}).total, 0);
    EXPECT_EQ(list(other, {.type = partner_type::any, .name = "甲"}).total, 0);
    EXPECT_THROW(edit(other, {.id = id, .name = "乙"}), refused);
    EXPECT_THROW(remove(other, id), refused);
    add(other, some_partner(1, "丙"));
    EXPECT_EQ(list(boss, {.type = partner_type::any}).total, 1);
    EXPECT_EQ(list(boss, {.type = partner_type::any}).list.at(0).name, "甲");
    EXPECT_EQ(list(other, {.type = partner_type::any}).list.at(0).name, "丙");
}

/** The second line: were the check before a write ever lost, the write itself would still not leave the
 * company. */
TEST_P(partners, each_statement_is_bound_to_the_company) {
    const auto id = add(boss, some_partner(1, "甲")).id;
    const auto other = other_company().company;
    std::array<store::value, store::g_partner_texts> texts;
    texts.fill(std::string("x"));
    std::array<store::value, store::g_partner_searched.size()> words;
    words.fill(std::string("x"));
    in->write([&](store::connection& with) {
        EXPECT_EQ(store::live_partner_type(with, other, id), std::nullopt);
        EXPECT_EQ(store::update_partner(with, other, id, texts, words), 0);
        EXPECT_EQ(store::retire_partner(with, other, id, g_now), 0);
        EXPECT_EQ(test::rows_seen(with, store::g_partner_list, other, id), 0);
        EXPECT_EQ(store::partner_counter(with, other, 0), 0);
    });
    EXPECT_EQ(list(boss, {.type = partner_type::supplier}).list.at(0).name, "甲");
}

TEST_P(partners, are_counted_anew_after_every_change) {
    const partner_search search{.type = partner_type::supplier, .name = "甲"};
    EXPECT_EQ(list(boss, search).total, 0);
    const auto id = add(boss, some_partner(1, "甲一")).id;
    EXPECT_EQ(list(boss, search).total, 1);
    EXPECT_EQ(list(boss, search).total, 1);
    edit(boss, {.id = id, .name = "乙"});
    EXPECT_EQ(list(boss, search).total, 0);
    edit(boss, {.id = id, .name = "甲"});
    EXPECT_EQ(list(boss, search).total, 1);
    remove(boss, id);
    EXPECT_EQ(list(boss, search).total, 0);
}

TEST_P(partners, are_searched_by_the_text_as_it_stands) {
    add(boss, some_partner(1, "100% 棉_布 C:\\tmp"));
    add(boss, some_partner(1, "100 棉布 ÄRGER Завод"));
    const auto total = [&](const std::string& name) {
        return list(boss, {.type = partner_type::supplier, .name = name}).total;
    };
    EXPECT_EQ(total("棉"), 2);
    EXPECT_EQ(total("棉布"), 1);
    EXPECT_EQ(total("%"), 1);
    EXPECT_EQ(total("_"), 1);
    EXPECT_EQ(total("\\T"), 1);
    EXPECT_EQ(total("ärger"), 1);
    EXPECT_EQ(total("ЗАВОД"), 1);
    EXPECT_EQ(total("0%%"), 0);
    EXPECT_EQ(total("C:\\"), 1);
    EXPECT_THROW(list(boss, {.type = partner_type::supplier, .name = std::string(1001, 'x')}), refused);
}

TEST_P(partners, pages_are_brought_into_the_range) {
    for (int i = 0; i < 5; ++i)
        add(boss, some_partner(1, std::to_string(i)));
    const partner_search search{.type = partner_type::supplier};
    const auto num = [&](std::int64_t wanted) { return list(boss, search, wanted, 2).page_num; };
    EXPECT_EQ(num(1), 1);
    EXPECT_EQ(num(0), 1);
    EXPECT_EQ(num(-2), 1);
    EXPECT_EQ(num(-1), 3);
    EXPECT_EQ(num(99), 3);
    EXPECT_EQ(num(INT64_MAX), 3);
    EXPECT_EQ(num(INT64_MIN), 1);
    const auto last = list(boss, search, -1, 2);
    EXPECT_EQ(last.page_count, 3);
    EXPECT_EQ(last.total, 5);
    ASSERT_EQ(last.list.size(), 1U);
    EXPECT_EQ(last.list.front().name, "0");
    EXPECT_THROW(list(boss, search, 1, 0), refused);
    EXPECT_THROW(list(boss, search, 1, 201), refused);
    EXPECT_EQ(list(boss, search, 1, 200).list.size(), 5U);
    const auto empty = list(boss, {.type = partner_type::other}, -1);
    EXPECT_EQ(empty.page_count, 0);
    EXPECT_EQ(empty.page_num, 1);
}

TEST_P(partners, ask_for_the_right_on_the_page_of_their_kind) {
    const auto supplier = add(boss, some_partner(1, "甲")).id;
    const auto client = add(boss, some_partner(2, "乙")).id;
    const auto who = with_rows({400, 403, 40301, 40302, 40303, 40304});
    EXPECT_EQ(list(who, {.type = partner_type::supplier}).total, 1);
    EXPECT_THROW(list(who, {.type = partner_type::client}), refused);
    EXPECT_THROW(list(who, {.type = partner_type::any}), refused);
    EXPECT_NO_THROW(add(who, some_partner(1, "丙")));
    EXPECT_THROW(add(who, some_partner(2, "丙")), refused);
    EXPECT_NO_THROW(edit(who, {.id = supplier, .name = "丁"}));
    EXPECT_THROW(edit(who, {.id = client, .name = "丁"}), refused);
    EXPECT_NO_THROW(remove(who, supplier));
    EXPECT_THROW(remove(who, client), refused);
}

TEST_P(partners, each_deed_has_its_own_right) {
    const auto id = add(boss, some_partner(1, "甲")).id;
    const auto who = with_rows({400, 403, 40301});
    EXPECT_NO_THROW(list(who, {.type = partner_type::supplier}));
    EXPECT_THROW(add(who, some_partner(1, "丙")), refused);
    EXPECT_THROW(edit(who, {.id = id, .name = "丁"}), refused);
    EXPECT_THROW(remove(who, id), refused);
}

TEST_P(partners, a_user_without_grants_has_nothing) {
    const auto who = in->log_in(in->hand);
    for (const auto type :
         {partner_type::supplier, partner_type::client, partner_type::other, partner_type::any}) {
        EXPECT_THROW(list(who, {.type = type}), refused);
    }
}

TEST_P(partners, are_open_to_whoever_writes_the_documents_that_pick_them) {
    add(boss, some_partner(2, "甲"));
    const auto who = with_rows({200, 202, 20202}); // sales
    for (const auto type : {partner_type::supplier, partner_type::client, partner_type::any}) {
        EXPECT_NO_THROW(list(who, {.type = type}));
    }
    EXPECT_EQ(list(who, {.type = partner_type::any}).total, 1);
    EXPECT_THROW(add(who, some_partner(2, "乙")), refused);
}

TEST_P(partners, stay_closed_to_whoever_writes_documents_that_name_none) {
    const auto who = with_rows({200, 203, 20302}); // what staff take out names a department
    EXPECT_THROW(list(who, {.type = partner_type::client}), refused);
}

TEST_P(partners, all_three_search_rights_make_any_kind) {
    add(boss, some_partner(2, "甲"));
    EXPECT_EQ(list(with_rows({40301, 40401, 40501}), {.type = partner_type::any}).total, 1);
}

TEST(partner_types, are_1_to_4) {
    EXPECT_EQ(partner_type_of(4), partner_type::any);
    EXPECT_THROW(partner_type_of(0), refused);
    EXPECT_THROW(partner_type_of(5), refused);
    EXPECT_THROW(partner_type_of((std::int64_t{1} << 32) + 1), refused);
    EXPECT_EQ(page_of(partner_type::other), "company_other");
    EXPECT_THROW(page_of(partner_type::any), refused);
}

} // namespace
} // namespace tavrok::domain
