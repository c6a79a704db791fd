#include "domain/warehouses.h"

#include "domain/staff_scene.h"
#include "store/records/live_rows.h"

namespace tavrok::domain {
namespace {

using test::full_warehouse;
using test::g_now;
using test::some_employee;
using test::some_warehouse;

class warehouses : public test::on_staff {
protected:
    void SetUp() override {
        on_staff::SetUp();
        if (IsSkipped()) return;
        keeper = in->hire(in->chief, some_employee("K1", "裴云舟"));
        by = std::to_string(keeper);
    }
    std::vector<warehouse_option> options(const principal& who) {
        return in->read([&](store::connection& with) { return list_warehouse_options(with, who); });
    }
    std::int64_t defaults() {
        return in->number("SELECT count(*) FROM warehouse WHERE isdefault = 1 AND state = 1");
    }
    std::int64_t total(const warehouse_search& search) { return in->warehouses(in->chief, search).total; }

    std::int64_t keeper{0};
    std::string by;
};
ON_EVERY_ENGINE(warehouses);

constexpr std::array<std::string warehouse::*, 5> g_every_text{
    &warehouse::name, &warehouse::phone, &warehouse::address, &warehouse::mobile, &warehouse::remark};

TEST_P(warehouses, come_back_as_they_were_typed_with_the_name_of_the_keeper) {
    auto what = full_warehouse("A&B=C+D%20 '仓' \\ _%");
    what.isdefault = 1;
    const auto id = in->open(in->chief, what, by, g_now + 5);
    EXPECT_EQ(id, 1001);
    const auto page = in->warehouses(in->chief);
    ASSERT_EQ(page.list.size(), 1U);
    const auto& one = page.list.front();
    EXPECT_EQ(one.id, id);
    EXPECT_EQ(one.added_at, g_now + 5);
    EXPECT_EQ(one.isdefault, 1);
    EXPECT_EQ(one.keeper, keeper);
    EXPECT_EQ(one.keeper_name, "裴云舟");
    for (const auto text : g_every_text)
        EXPECT_EQ(one.*text, what.*text);
    EXPECT_EQ(in->audited("warehouse_add"), 1);
}

TEST_P(warehouses, need_a_name_and_a_keeper_of_the_company) {
    for (const char* nothing : {"", "  "})
        EXPECT_THROW(in->open(in->chief, some_warehouse(nothing), by), refused);
    const auto other = in->another("二号");
    const auto foreign = in->hire(other, some_employee("K1"));
    const auto gone = in->hire(in->chief, some_employee("K2"));
    in->dismiss(in->chief, gone);
    for (const auto& nobody : {std::string(), std::string("0"), std::string("4711"), std::string("裴云舟"),
                               std::to_string(foreign), std::to_string(gone)})
        EXPECT_THROW(in->open(in->chief, some_warehouse("甲"), nobody), refused) << nobody;
    EXPECT_EQ(in->warehouses(in->chief).total, 0);
    EXPECT_NO_THROW(in->open(in->chief, some_warehouse("甲"), by));
    EXPECT_NO_THROW(in->open(in->chief, some_warehouse("甲"), by)) << "two may share a name";
    EXPECT_NO_THROW(in->open(other, some_warehouse("甲"), std::to_string(foreign)));
}

TEST_P(warehouses, take_the_letter_of_the_picker_for_the_keeper) {
    const auto letter = test::utf8(static_cast<unsigned>(keeper % 256));
    const auto id = in->open(in->chief, some_warehouse("甲"), letter);
    EXPECT_EQ(in->warehouse(in->chief, id).keeper, keeper);
    const auto second = in->hire(in->chief, some_employee("K2", "祝晓岚"));
    auto what = some_warehouse("甲");
    what.id = id;
    in->edit(in->chief, what, test::utf8(static_cast<unsigned>(second % 256)));
    EXPECT_EQ(in->warehouse(in->chief, id).keeper_name, "祝晓岚");
    EXPECT_EQ(total({.keeper = test::utf8(static_cast<unsigned>(second % 256))}), 1);
    EXPECT_EQ(total({.keeper = letter}), 0);
}

TEST_P(warehouses, keep_a_keeper_who_has_gone_and_take_no_such_one) {
    auto first = some_warehouse("甲");
    first.id = in->open(in->chief, first, by);
    const auto second = in->hire(in->chief, some_employee("K2", "祝晓岚"));
    auto other = some_warehouse("乙");
    other.id = in->open(in->chief, other, std::to_string(second));
    EXPECT_NO_THROW(in->dismiss(in->chief, keeper)) << "though he keeps a warehouse";
    EXPECT_EQ(in->warehouse(in->chief, first.id).keeper_name, "裴云舟");
    first.phone = "1";
    EXPECT_NO_THROW(in->edit(in->chief, first, by));
    EXPECT_EQ(in->warehouse(in->chief, first.id).phone, "1");
    EXPECT_EQ(in->warehouse(in->chief, first.id).keeper, keeper);
    EXPECT_THROW(in->edit(in->chief, other, by), refused);
    EXPECT_THROW(in->edit(in->chief, first, ""), refused);
    EXPECT_THROW(in->edit(in->chief, first, test::utf8(static_cast<unsigned>(keeper % 256))), refused);
    in->edit(in->chief, first, std::to_string(second));
    EXPECT_THROW(in->edit(in->chief, first, by), refused) << "now he is another one";
}

TEST_P(warehouses, have_bounded_texts_and_a_flag) {
    const std::vector<std::pair<std::string warehouse::*, std::size_t>> limits{{&warehouse::name, 200},
                                                                               {&warehouse::phone, 200},
                                                                               {&warehouse::address, 1000},
                                                                               {&warehouse::mobile, 40},
                                                                               {&warehouse::remark, 1000}};
    for (const auto& [text, limit] : limits) {
        auto what = some_warehouse("甲");
        what.*text = std::string(limit, '5');
        EXPECT_NO_THROW(in->open(in->chief, what, by)) << limit;
        what.*text += '5';
        EXPECT_THROW(in->open(in->chief, what, by), refused) << limit;
        for (const auto& bad : {std::string("5\0", 2), std::string("5\xff"), std::string("5\x1b")}) {
            what.*text = bad;
            EXPECT_THROW(in->open(in->chief, what, by), refused);
        }
    }
    auto what = some_warehouse("甲");
    what.mobile = "不详";
    EXPECT_THROW(in->open(in->chief, what, by), refused);
    for (const std::int64_t flag : {-1, 2}) {
        what = some_warehouse("甲");
        what.isdefault = flag;
        EXPECT_THROW(in->open(in->chief, what, by), refused) << flag;
    }
}

TEST_P(warehouses, an_edit_writes_every_text_and_clears_what_is_empty) {
    auto what = full_warehouse("甲");
    what.isdefault = 1;
    const auto id = in->open(in->chief, what, by);
    auto bare = some_warehouse("乙");
    bare.id = id;
    in->edit(in->chief, bare, by);
    const auto one = in->warehouse(in->chief, id);
    for (const auto text : g_every_text)
        EXPECT_EQ(one.*text, bare.*text);
    EXPECT_EQ(one.isdefault, 0);
    EXPECT_EQ(one.added_at, g_now);
    EXPECT_EQ(total({.name = "甲"}), 0);
    EXPECT_EQ(total({.name = "乙"}), 1);
    EXPECT_EQ(in->audited("warehouse_edit"), 1);
}

TEST_P(warehouses, a_refused_change_changes_nothing) {
    auto kept = full_warehouse("甲");
    kept.isdefault = 1;
    kept.id = in->open(in->chief, kept, by);
    auto second = some_warehouse("乙");
    second.id = in->open(in->chief, second, by);
    const auto version = in->version();
    second.isdefault = 1;
    second.mobile = "abc";
    EXPECT_THROW(in->edit(in->chief, second, by), refused);
    second.mobile = "";
    EXPECT_THROW(in->edit(in->chief, second, "4711"), refused);
    second.id = 4711;
    EXPECT_THROW(in->edit(in->chief, second, by), refused);
    EXPECT_THROW(in->open(in->chief, second, "4711"), refused);
    EXPECT_THROW(in->close(in->chief, 4711), refused);
    EXPECT_EQ(in->warehouse(in->chief, kept.id).isdefault, 1) << "still the default one";
    EXPECT_EQ(in->version(), version);
    EXPECT_EQ(in->warehouses(in->chief).total, 2);
}

TEST_P(warehouses, one_is_the_default) {
    auto first = some_warehouse("1");
    first.isdefault = 1;
    first.id = in->open(in->chief, first, by);
    auto second = first;
    second.id = in->open(in->chief, second, by);
    EXPECT_EQ(in->warehouse(in->chief, first.id).isdefault, 0);
    EXPECT_EQ(in->warehouse(in->chief, second.id).isdefault, 1);
    in->edit(in->chief, first, by);
    EXPECT_EQ(in->warehouse(in->chief, first.id).isdefault, 1);
    EXPECT_EQ(in->warehouse(in->chief, second.id).isdefault, 0);
    in->edit(in->chief, first, by);
    EXPECT_EQ(defaults(), 1);
    const auto other = in->another("二号");
    in->open(other, first, std::to_string(in->hire(other, some_employee("1"))));
    EXPECT_EQ(defaults(), 2) << "one for each company";
    in->close(in->chief, first.id);
    EXPECT_EQ(defaults(), 1) << "none inherits the flag";
    EXPECT_NO_THROW(in->edit(in->chief, second, by));
}

TEST_P(warehouses, a_closed_one_leaves_every_list_and_keeps_its_row) {
    auto what = full_warehouse("甲");
    const auto id = in->open(in->chief, what, by);
    in->close(in->chief, id);
    EXPECT_EQ(in->warehouses(in->chief).total, 0);
    EXPECT_EQ(total({.name = "甲"}), 0);
    EXPECT_TRUE(options(in->chief).empty());
    EXPECT_THROW(in->close(in->chief, id), refused);
    what.id = id;
    EXPECT_THROW(in->edit(in->chief, what, by), refused);
    EXPECT_EQ(in->number("SELECT state FROM warehouse"), 2);
    EXPECT_EQ(in->audited("warehouse_delete"), 1);
    EXPECT_EQ(in->open(in->chief, what, by), id + 1) << "an id is never given twice";
}

TEST_P(warehouses, belong_to_their_company) {
    auto what = full_warehouse("甲");
    what.isdefault = 1;
    what.id = in->open(in->chief, what, by);
    const auto other = in->another("二号");
    const auto theirs = std::to_string(in->hire(other, some_employee("1")));
    EXPECT_EQ(in->warehouses(other).total, 0);
    EXPECT_EQ(in->warehouses(other, {.keeper = by}).total, 0);
    EXPECT_TRUE(options(other).empty());
    EXPECT_THROW(in->edit(other, what, theirs), refused);
    EXPECT_THROW(in->edit(other, what, by), refused);
    EXPECT_THROW(in->close(other, what.id), refused);
    in->write([&](store::connection& with) {
        const auto& list = store::g_warehouse_list;
        EXPECT_EQ(store::keeper_of_warehouse(with, other.company, what.id), std::nullopt);
        EXPECT_EQ(store::update_warehouse(with, other.company, what, {"x", "x"}), 0);
        EXPECT_EQ(store::retire(with, list, other.company, what.id, g_now), 0);
        EXPECT_EQ(test::rows_seen(with, list, other.company, what.id), 0);
        store::clear_default(with, list, other.company, 0);
    });
    EXPECT_EQ(in->warehouse(in->chief, what.id).isdefault, 1);
    EXPECT_EQ(in->warehouse(in->chief, what.id).name, "甲");
}

TEST_P(warehouses, are_searched_by_text_and_keeper) {
    const auto second = std::to_string(in->hire(in->chief, some_employee("K2", "祝晓岚")));
    auto what = full_warehouse("100% 棉_仓");
    in->open(in->chief, what, by);
    in->open(in->chief, some_warehouse("100 棉仓 ÄRGER"), second);
    EXPECT_EQ(total({.name = "棉"}), 2);
    EXPECT_EQ(total({.name = "%"}), 1);
    EXPECT_EQ(total({.name = "ärger"}), 1);
    EXPECT_EQ(total({.phone = "转 a"}), 1);
    EXPECT_EQ(total({.mobile = "7001"}), 1);
    EXPECT_EQ(total({.mobile = "_"}), 0);
    EXPECT_EQ(total({.keeper = by}), 1);
    EXPECT_EQ(total({.name = "棉", .keeper = second}), 1);
    EXPECT_EQ(total({.name = "%", .keeper = second}), 0);
    EXPECT_EQ(in->warehouses(in->chief, {.name = "棉", .keeper = second}).list.at(0).keeper_name, "祝晓岚");
    for (const char* nobody : {"4711", "0", "祝晓岚", "x"}) {
        const auto page = in->warehouses(in->chief, {.keeper = nobody}, -1);
        EXPECT_EQ(page.total, 0) << nobody;
        EXPECT_EQ(page.page_num, 1);
        EXPECT_EQ(page.page_count, 0);
        EXPECT_TRUE(page.list.empty());
    }
    EXPECT_THROW(in->warehouses(in->chief, {.keeper = "4711"}, 1, 201), refused);
    EXPECT_THROW(total({.name = std::string(1001, 'x')}), refused);
}

TEST_P(warehouses, options_are_all_in_the_order_of_opening) {
    in->open(in->chief, some_warehouse("丙"), by);
    auto what = some_warehouse("甲");
    what.isdefault = 1;
    in->open(in->chief, what, by);
    const auto closed = in->open(in->chief, some_warehouse("丁"), by);
    in->open(in->chief, some_warehouse("乙"), by);
    in->close(in->chief, closed);
    std::string names;
    for (const auto& one : options(in->chief)) {
        names += one.name + std::to_string(one.isdefault);
        EXPECT_EQ(one.on_hand, 0) << "no stock yet";
    }
    EXPECT_EQ(names, "丙0甲1乙0");
}

TEST_P(warehouses, are_bounded_in_number) {
    const auto keeps = std::to_string(in->hire(in->chief, test::some_employee("K")));
    in->open(in->chief, test::some_warehouse("仓"), keeps);
    in->write([&](store::connection& with) {
        with.execute({"", "UPDATE list_counter SET live = ? WHERE list = 'warehouse'"},
                     {g_most_warehouses - 1});
    });
    EXPECT_NO_THROW(in->open(in->chief, test::some_warehouse("仓"), keeps));
    EXPECT_THROW(in->open(in->chief, test::some_warehouse("仓"), keeps), refused);
    EXPECT_EQ(in->number("SELECT count(*) FROM warehouse"), 2);
    EXPECT_EQ(in->number("SELECT live FROM list_counter WHERE list = 'warehouse'"), g_most_warehouses);
}

} // namespace
} // namespace tavrok::domain
