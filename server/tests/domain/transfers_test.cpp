#include "domain/counts_scene.h"
#include "domain/sessions.h"

namespace tavrok::domain {
namespace {

using test::g_in;
using test::g_now;
using test::g_out;
using test::g_transfer;

class transfers : public test::counts_test {
protected:
    void SetUp() override {
        counts_test::SetUp();
        if (IsSkipped()) return;
        stock = batch(10); // at 2.50
        hand = in->log_in(in->hand);
        draft = open(g_transfer, transfer_header());
    }
    std::string reserve(const principal& who, std::int64_t row, std::int64_t amount) {
        return claim(who, row, amount, claim_use::transfer);
    }
    store::stock_record newest_row() {
        const auto id = in->number("SELECT max(id) FROM stock");
        return *in->read([&](store::connection& with) { return store::read_stock(with, in->company, id); });
    }
    void stays(const domain::document_line& line, const std::string& why = {}) {
        EXPECT_THROW(move(draft, line), refused) << why;
    }
    list_page<document_record> all(document_search search = {}) {
        search.type = 1;
        return documents(g_transfer, search);
    }

    std::int64_t stock{0};
    std::int64_t draft{0};
    domain::principal hand;
};
ON_EVERY_ENGINE(transfers);

TEST_P(transfers, move_goods_into_a_new_row_of_the_destination) {
    EXPECT_EQ(all().total, 0) << "nobody sees a draft";
    auto line = moved(stock, 4);
    line.price = 999; // typed over
    line.total = 4 * 999;
    EXPECT_TRUE(move(draft, line, g_now + 60));
    EXPECT_EQ(on_hand(stock), 6);
    const auto made = newest_row();
    EXPECT_EQ(made.warehouse, us.second_warehouse);
    EXPECT_EQ(made.product, us.product);
    EXPECT_EQ(made.place, "Z-9");
    EXPECT_EQ(made.price, 250) << "the price of the row that they left";
    EXPECT_EQ(made.remark, "搬");
    EXPECT_EQ(made.on_hand, 4);
    EXPECT_EQ(made.added_at, g_now + 60);
    EXPECT_EQ(in->number("SELECT sum(value) FROM movement"), 2500) << "nothing is lost or won on the way";
    ASSERT_EQ(all().total, 1);
    const auto one = all().list.at(0);
    EXPECT_EQ(one.sn.substr(0, 2), "DB");
    EXPECT_EQ(one.warehouse_out, us.warehouse);
    EXPECT_EQ(one.warehouse_in, us.second_warehouse);
    EXPECT_EQ(one.warehouse_out_name, "我一号库");
    EXPECT_EQ(one.warehouse_in_name, "我二号库");
    EXPECT_EQ(one.added_at, g_now + 60);
    EXPECT_EQ(one.total, 4 * 999);
    const auto lines = lines_of(g_transfer, one.id);
    ASSERT_EQ(lines.size(), 1U);
    EXPECT_EQ(lines[0].stock, stock);
    EXPECT_EQ(lines[0].stock_in, made.id);
    EXPECT_EQ(lines[0].price, 999) << "the line keeps what it told";
    EXPECT_EQ(lines[0].place, "Z-9");
    EXPECT_EQ(audited("transfer_add"), 1);
    ledger_is_right();
}

TEST_P(transfers, keep_their_document_for_all_lines_of_the_draft) {
    const auto before = version();
    EXPECT_TRUE(move(draft, moved(stock, 4)));
    EXPECT_FALSE(move(draft, moved(stock, 3), g_now + 1));
    in->database().close(); // as after a restart
    EXPECT_FALSE(move(draft, moved(stock, 3), g_now + 2));
    ASSERT_EQ(all().total, 1);
    const auto one = all().list.at(0);
    EXPECT_EQ(one.total, 2500);
    EXPECT_EQ(one.sn.substr(10), "-0001");
    EXPECT_EQ(lines_of(g_transfer, one.id).size(), 3U);
    EXPECT_EQ(on_hand(stock), 0);
    EXPECT_EQ(rows(), 4);
    EXPECT_EQ(audited("transfer_add"), 1);
    EXPECT_EQ(audited("transfer_line_add"), 2);
    EXPECT_EQ(version(), before + 3);
    ledger_is_right();
}

TEST_P(transfers, are_nothing_while_no_line_is_good) {
    const auto token = reserve(boss, stock, 4);
    stays(moved(stock, 11, token));
    nothing_made(1, 1);
    EXPECT_EQ(rows(), 1);
    EXPECT_EQ(claimed(stock), 4) << "the claim is as it was";
    EXPECT_TRUE(move(draft, moved(stock, 4, token))) << "a good line after it makes the document";
    EXPECT_EQ(claims(), 0);
}

TEST_P(transfers, leave_the_lines_before_a_refused_one) {
    move(draft, moved(stock, 6));
    stays(moved(stock, 5));
    EXPECT_EQ(lines_of(g_transfer, newest_document()).size(), 1U);
    EXPECT_EQ(on_hand(stock), 4);
    EXPECT_EQ(rows(), 2);
    EXPECT_FALSE(move(draft, moved(stock, 4)));
    EXPECT_EQ(all().list.at(0).total, 2500);
    ledger_is_right();
}

TEST_P(transfers, use_the_claim_up) {
    const auto first = reserve(boss, stock, 6);
    const auto second = reserve(boss, stock, 4);
    move(draft, moved(stock, 6, first));
    EXPECT_EQ(claimed(stock), 4);
    move(draft, moved(stock, 4, second));
    EXPECT_EQ(claimed(stock), 0);
    EXPECT_EQ(in->number("SELECT count(*) FROM claim WHERE state = 2"), 2);
    EXPECT_EQ(claimed(newest_row().id), 0);
    ledger_is_right();
}

TEST_P(transfers, take_what_is_free_where_a_line_has_no_live_claim) {
    const auto gone = reserve(boss, stock, 3);
    in->write([&](store::connection& with) { give_back_claim(with, boss, gone, g_now); });
    const auto others = reserve(hand, stock, 3);
    const auto outbound = claim(boss, stock, 1);
    for (const std::string& token :
         {std::string(), std::string("0"), gone, others, outbound, std::string("x")})
        EXPECT_NO_THROW(move(draft, moved(stock, 1, token))) << token;
    EXPECT_EQ(claimed(stock), 4) << "neither another's claim nor one for another use is used up";
    stays(moved(stock, 1), "nothing is free");
    in->write([&](store::connection& with) { give_back_claim(with, hand, others, g_now); });
    claim(boss, stock, 0, claim_use::stocktaking);
    EXPECT_NO_THROW(move(draft, moved(stock, 1))) << "his own hold is in his way no more than elsewhere";
    ledger_is_right();
}

TEST_P(transfers, do_not_take_from_a_row_that_another_holds) {
    claim(hand, stock, 0, claim_use::stocktaking);
    stays(moved(stock, 1));
    stays(moved(stock, 0), "not even nothing");
    nothing_made(1, 1);
}

TEST_P(transfers, take_from_rows_of_their_source_alone) {
    const auto there = [&] {
        auto what = line(5);
        what.warehouse = us.second_warehouse;
        return lines_of(g_in, receive({what})).at(0).stock;
    }();
    stays(moved(there, 1), "it lies at the destination");
    auto unknown = moved(stock, 1);
    unknown.stock = there + 1;
    stays(unknown);
    auto other_goods = moved(stock, 1);
    other_goods.product = us.second_product;
    stays(other_goods);
    nothing_made(2, 1);
}

TEST_P(transfers, refuse_lines_that_are_none) {
    auto wrong_total = moved(stock, 2);
    wrong_total.total += 1;
    stays(wrong_total);
    auto no_place = moved(stock, 1);
    no_place.place = "  ";
    stays(no_place);
    auto long_place = moved(stock, 1);
    long_place.place = std::string(201, 'x');
    stays(long_place);
    auto bad_remark = moved(stock, 1);
    bad_remark.remark = "\x01";
    stays(bad_remark);
    auto negative = moved(stock, -1);
    stays(negative);
    auto much = moved(stock, 100'000'000);
    stays(much);
    auto dear = moved(stock, 1);
    dear.price = dear.total = 100'000'000'00;
    stays(dear);
    nothing_made(1, 1);
}

TEST_P(transfers, take_what_is_free_where_the_line_names_what_can_be_no_claim) {
    EXPECT_TRUE(move(draft, moved(stock, 1, std::string(1001, 'L'))));
    EXPECT_EQ(on_hand(stock), 9);
}

TEST_P(transfers, of_nothing_make_an_empty_row) {
    EXPECT_TRUE(move(draft, moved(stock, 0)));
    EXPECT_EQ(on_hand(stock), 10);
    EXPECT_EQ(newest_row().on_hand, 0);
    ledger_is_right();
    remove(g_transfer, newest_document());
    ledger_is_right();
}

TEST_P(transfers, go_from_one_live_warehouse_to_another) {
    const auto refuses = [&](std::optional<std::int64_t> from, std::optional<std::int64_t> to) {
        auto header = transfer_header();
        header.warehouse_out = from;
        header.warehouse_in = to;
        EXPECT_THROW(open(g_transfer, header), refused);
    };
    refuses(us.warehouse, us.warehouse);
    refuses(std::nullopt, us.warehouse);
    refuses(us.warehouse, std::nullopt);
    refuses(us.warehouse, them.warehouse);
    refuses(them.warehouse, us.warehouse);
    refuses(us.warehouse, 4711);
    auto partner = transfer_header();
    partner.partner = us.supplier;
    EXPECT_THROW(open(g_transfer, partner), refused);
    for (const auto module : {g_in, g_out}) {
        auto other_kind = header(module, module == g_in ? 7 : 6);
        other_kind.warehouse_in = us.second_warehouse;
        EXPECT_THROW(open(module, other_kind), refused);
    }
    close_warehouse(us.second_warehouse);
    refuses(us.warehouse, us.second_warehouse);
    stays(moved(stock, 1), "retired since the header came");
    nothing_made(1, 1);
}

TEST_P(transfers, belong_to_the_session_and_need_the_right) {
    const auto again = in->log_in(in->boss);
    EXPECT_THROW(move(again, draft, moved(stock, 1)), refused);
    EXPECT_THROW(move(hand, draft, moved(stock, 1)), refused);
    EXPECT_THROW(close(g_out, draft, 0), refused);
    EXPECT_THROW(put(g_out, draft, from(stock, 1)), refused);
    move(draft, moved(stock, 1));
    const auto document = newest_document();
    if (document != draft) {
        EXPECT_THROW(move(document, moved(stock, 1)), refused) << "lines name the draft";
    }
    EXPECT_THROW(move(again, draft, moved(stock, 1)), refused);
    auto who = clerk({{"stock_allot", "add"}});
    const auto his = open(who, g_transfer, transfer_header());
    EXPECT_TRUE(move(who, his, moved(stock, 1)));
    who.rights = {{"stock_allot", "view"}};
    EXPECT_THROW(move(who, his, moved(stock, 1)), refused);
    EXPECT_THROW(remove(who, g_transfer, document), refused);
    who.rights = {{"stock_allot", "delete"}};
    EXPECT_NO_THROW(remove(who, g_transfer, document));
}

TEST_P(transfers, take_no_more_lines_once_the_draft_is_swept_or_the_document_deleted) {
    move(draft, moved(stock, 1));
    const auto document = newest_document();
    remove(g_transfer, document);
    stays(moved(stock, 1), "the document is deleted");
    EXPECT_EQ(on_hand(stock), 10);
    const auto second = open(g_transfer, transfer_header());
    move(second, moved(stock, 1));
    in->write([&](store::connection& with) { sweep(with, g_now + 3600); });
    EXPECT_EQ(in->number("SELECT count(*) FROM draft"), 0);
    EXPECT_THROW(move(second, moved(stock, 1)), refused);
    EXPECT_EQ(all().total, 1) << "the document stays";
    ledger_is_right();
}

TEST_P(transfers, that_were_made_do_not_count_as_drafts) {
    for (int i = 0; i < 55; ++i) {
        const auto one = open(g_transfer, transfer_header());
        move(one, moved(stock, 0));
    }
    EXPECT_EQ(all().total, 55);
    EXPECT_EQ(all().list.at(0).sn.substr(10), "-0055");
}

TEST_P(transfers, are_undone_at_both_ends) {
    const auto other = batch(3, 70);
    const auto id = transfer({moved(stock, 4), moved(other, 3), moved(stock, 6)});
    EXPECT_EQ(on_hand(stock) + on_hand(other), 0);
    EXPECT_THROW(remove(g_out, id), refused);
    EXPECT_THROW(remove(them.boss, g_transfer, id), refused);
    remove(g_transfer, id);
    EXPECT_EQ(on_hand(stock), 10);
    EXPECT_EQ(on_hand(other), 3);
    EXPECT_EQ(in->number("SELECT count(*) FROM stock WHERE listed = 1"), 2);
    EXPECT_EQ(audited("transfer_delete"), 1);
    EXPECT_THROW(remove(g_transfer, id), refused);
    EXPECT_EQ(all().total, 0);
    ledger_is_right();
}

TEST_P(transfers, stay_unless_the_destination_holds_the_whole_quantity_free) {
    const auto id = transfer({moved(stock, 4), moved(stock, 2)});
    const auto there = newest_row().id;
    const auto refuses = [&](const char* why) {
        EXPECT_THROW(remove(g_transfer, id), refused) << why;
        EXPECT_EQ(on_hand(stock), 4);
        ledger_is_right();
    };
    const auto give_back = [&](const principal& who, const std::string& token) {
        in->write([&](store::connection& with) { give_back_claim(with, who, token, g_now); });
    };
    const auto out = issue({from(there, 1)});
    refuses("one has gone out");
    remove(g_out, out);
    for (const auto& who : {boss, hand}) {
        for (const auto use : {claim_use::outbound, claim_use::transfer, claim_use::stocktaking}) {
            const auto token = claim(who, there, 1, use);
            refuses("claimed there");
            give_back(who, token);
        }
    }
    const auto held = claim(hand, stock, 0, claim_use::stocktaking);
    refuses("another holds the row that they go back to");
    give_back(hand, held);
    ASSERT_EQ(take_stock({counted(there, 2, 1)}), "");
    refuses("one is missing");
    remove(test::g_taking, newest_document());
    EXPECT_NO_THROW(remove(g_transfer, id));
    EXPECT_EQ(on_hand(stock), 10);
    ledger_is_right();
}

TEST_P(transfers, go_back_only_to_a_live_warehouse) {
    const auto id = transfer({moved(stock, 10)});
    close_warehouse(us.warehouse);
    EXPECT_THROW(remove(g_transfer, id), refused);
    EXPECT_EQ(on_hand(stock), 0);
    EXPECT_EQ(all().list.at(0).warehouse_out_name, "我一号库") << "it keeps its name";
    ledger_is_right();
}

TEST_P(transfers, keep_their_destination_from_being_closed) {
    const auto id = transfer({moved(stock, 10)});
    EXPECT_THROW(close_warehouse(us.second_warehouse), refused);
    EXPECT_THROW(remove_product(boss, us.product), refused);
    remove(g_transfer, id);
    EXPECT_NO_THROW(close_warehouse(us.second_warehouse));
    ledger_is_right();
}

TEST_P(transfers, can_go_on_and_come_back) {
    const auto there = transfer({moved(stock, 10)});
    const auto row = newest_row().id;
    auto back = transfer_header();
    std::swap(back.warehouse_out, back.warehouse_in);
    const auto home = open(g_transfer, back);
    move(home, moved(row, 10));
    EXPECT_THROW(remove(g_transfer, there), refused) << "the goods have left again";
    const auto second = newest_document();
    EXPECT_EQ(newest_row().warehouse, us.warehouse);
    remove(g_transfer, second);
    remove(g_transfer, there);
    EXPECT_EQ(on_hand(stock), 10);
    ledger_is_right();
}

TEST_P(transfers, are_found_by_what_they_tell) {
    transfer({moved(stock, 1)});
    const auto third = warehouse(boss, "三号库", us.employee);
    auto header = transfer_header();
    header.warehouse_in = third;
    header.remark = "急";
    const auto second = open(g_transfer, header, g_now);
    move(second, moved(stock, 1), g_now + 100);
    EXPECT_EQ(all().total, 2);
    EXPECT_EQ(all({.warehouse_out = us.warehouse}).total, 2);
    EXPECT_EQ(all({.warehouse_out = third}).total, 0);
    EXPECT_EQ(all({.warehouse_in = third}).total, 1);
    EXPECT_EQ(all({.warehouse_out = us.warehouse, .warehouse_in = us.second_warehouse}).total, 1);
    EXPECT_EQ(all({.date_start = g_now + 1}).total, 1);
    EXPECT_EQ(all({.date_end = g_now}).total, 1);
    EXPECT_EQ(all({.sn = "db"}).total, 2);
    EXPECT_EQ(all({.remark = "急"}).total, 1);
    EXPECT_EQ(all({.operater = std::to_string(us.employee), .writer = boss.user}).total, 2);
    EXPECT_EQ(documents(them.boss, g_transfer, {.type = 1}).total, 0);
}

} // namespace
} // namespace tavrok::domain
