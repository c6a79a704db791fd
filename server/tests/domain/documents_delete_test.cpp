#include "domain/documents_scene.h"

namespace tavrok::domain {
namespace {

using test::g_in;
using test::g_now;
using test::g_out;

class documents_delete : public test::documents_test {
protected:
    std::string about(std::int64_t document) { return " WHERE id = " + std::to_string(document); }
    void stays(document_module module, std::int64_t id) {
        EXPECT_THROW(remove(module, id), refused);
        EXPECT_EQ(in->number("SELECT state FROM document" + about(id)), 1);
        ledger_is_right();
    }
};
ON_EVERY_ENGINE(documents_delete);

TEST_P(documents_delete, takes_what_came_in_off_again) {
    const auto id = receive({line(10), line(5, 0), line(0)}, 1);
    const auto lines = lines_of(g_in, id);
    const auto before = version();
    remove(g_in, id, g_now + 60);
    EXPECT_EQ(version(), before + 1);
    EXPECT_EQ(audited("inbound_delete"), 1);
    for (const auto& one : lines)
        EXPECT_EQ(on_hand(one.stock), 0);
    EXPECT_EQ(in->number("SELECT count(*) FROM stock WHERE listed = 1"), 0);
    EXPECT_EQ(in->number("SELECT count(*) FROM movement"), 6) << "nothing is erased";
    EXPECT_EQ(in->number("SELECT sum(value) FROM movement"), 0);
    EXPECT_EQ(in->number("SELECT count(*) FROM movement WHERE amount < 0 AND moved_at = " +
                         std::to_string(g_now + 60)),
              2);
    ledger_is_right();
}

TEST_P(documents_delete, puts_what_went_out_on_again) {
    const auto stock = batch(10);
    const auto other = batch(3, 70);
    const auto id = issue({from(stock, 4), from(other, 3), from(stock, 6)});
    EXPECT_EQ(on_hand(stock) + on_hand(other), 0);
    remove(g_out, id);
    EXPECT_EQ(on_hand(stock), 10);
    EXPECT_EQ(on_hand(other), 3);
    EXPECT_EQ(audited("outbound_delete"), 1);
    ledger_is_right();
    EXPECT_NO_THROW(issue({from(stock, 10)})) << "and it can go out once more";
}

TEST_P(documents_delete, keeps_the_document_with_who_and_when) {
    const auto id = receive({line()});
    auto who = in->log_in(in->hand);
    who.rights = {{"instore_other", "delete"}};
    remove(who, g_in, id, g_now + 60);
    EXPECT_EQ(in->number("SELECT state FROM document" + about(id)), 2);
    EXPECT_EQ(in->number("SELECT deleted_at FROM document" + about(id)), g_now + 60);
    EXPECT_EQ(in->number("SELECT deleted_by FROM document" + about(id)), in->hand.user);
    EXPECT_EQ(in->number("SELECT count(*) FROM document_line"), 1);
    EXPECT_TRUE(documents(g_in, {.type = 7}).list.empty());
    EXPECT_THROW(lines_of(g_in, id), refused);
}

TEST_P(documents_delete, happens_once_and_in_the_documents_company_and_module) {
    const auto id = receive({line()});
    EXPECT_THROW(remove(g_out, id), refused) << "another module";
    EXPECT_THROW(remove(them.boss, g_in, id), refused) << "another company";
    EXPECT_THROW(remove(g_in, 0), refused);
    EXPECT_THROW(remove(g_in, -1), refused);
    EXPECT_THROW(remove(g_in, open(g_in, 7)), refused) << "a draft is no document";
    remove(g_in, id);
    EXPECT_THROW(remove(g_in, id), refused);
    EXPECT_EQ(in->number("SELECT count(*) FROM movement"), 2);
    const auto stock = batch(10);
    const auto out = issue({from(stock, 4)});
    remove(g_out, out);
    EXPECT_THROW(remove(g_out, out), refused);
    EXPECT_EQ(on_hand(stock), 10);
    ledger_is_right();
}

TEST_P(documents_delete, needs_the_right_on_the_page_of_the_kind) {
    const auto purchase = receive({line()}, 1);
    const auto other = receive({line()}, 7);
    const auto stock = lines_of(g_in, other).at(0).stock;
    const auto out = issue({from(stock, 1)}, 6);
    const auto who = clerk({{"instore_purchase", "delete"},
                            {"instore_other", "add"},
                            {"instore_other", "view"},
                            {"outstore_lend", "delete"}});
    EXPECT_THROW(remove(who, g_in, other), refused);
    EXPECT_THROW(remove(who, g_out, out), refused);
    EXPECT_NO_THROW(remove(who, g_in, purchase));
    EXPECT_NO_THROW(remove(clerk({{"outstore_other", "delete"}}), g_out, out));
}

TEST_P(documents_delete, of_inbound_goods_waits_until_the_stock_is_whole) {
    const auto id = receive({line(10), line(3)});
    const auto first = lines_of(g_in, id).at(0).stock;
    const auto out = issue({from(first, 1)});
    stays(g_in, id);
    EXPECT_EQ(on_hand(first), 9) << "the other line, too, stays";
    remove(g_out, out);
    EXPECT_NO_THROW(remove(g_in, id));
}

TEST_P(documents_delete, of_inbound_goods_is_refused_while_anybody_claims_or_holds_them) {
    const auto id = receive({line(10)});
    const auto stock = lines_of(g_in, id).at(0).stock;
    const auto hand = in->log_in(in->hand);
    for (const auto& who : {hand, boss}) {
        for (const auto use : {claim_use::outbound, claim_use::transfer, claim_use::stocktaking}) {
            const auto token = claim(who, stock, 1, use);
            stays(g_in, id);
            in->write([&](store::connection& with) { give_back_claim(with, who, token, g_now); });
        }
    }
    claim(hand, stock, 1);
    const auto later = in->log_in(in->boss, g_now + 3 * 3600);
    EXPECT_NO_THROW(remove(later, g_in, id, g_now + 3 * 3600)) << "the claim has lapsed";
    ledger_is_right();
}

TEST_P(documents_delete, of_outbound_goods_is_refused_while_somebody_else_holds_the_row) {
    const auto stock = batch(10);
    const auto id = issue({from(stock, 4)});
    const auto hand = in->log_in(in->hand);
    const auto token = claim(hand, stock, 0, claim_use::stocktaking);
    stays(g_out, id);
    EXPECT_EQ(on_hand(stock), 6);
    in->write([&](store::connection& with) { give_back_claim(with, hand, token, g_now); });
    claim(hand, stock, 6);
    EXPECT_NO_THROW(remove(g_out, id)) << "a claim of a quantity is none on what comes back";
    EXPECT_EQ(on_hand(stock), 10);
    EXPECT_EQ(claimed(stock), 6);
    ledger_is_right();
}

TEST_P(documents_delete, of_outbound_goods_needs_the_product_and_the_warehouse) {
    const auto stock = batch(10);
    const auto id = issue({from(stock, 10)});
    remove_product(boss, us.product);
    stays(g_out, id);
    EXPECT_EQ(on_hand(stock), 0);
    auto what = line(10);
    what.product = us.second_product;
    const auto second = lines_of(g_in, receive({what})).at(0).stock;
    const auto out = issue({from(second, 10)});
    close_warehouse(us.warehouse);
    stays(g_out, out);
}

TEST_P(documents_delete, of_inbound_goods_that_were_none_needs_nothing) {
    const auto id = receive({line(0)});
    remove_product(boss, us.product);
    close_warehouse(us.warehouse);
    EXPECT_NO_THROW(remove(g_in, id));
    ledger_is_right();
}

TEST_P(documents_delete, products_and_warehouses_stay_while_anything_is_on_hand) {
    const auto stock = batch(10);
    EXPECT_THROW(remove_product(boss, us.product), refused);
    EXPECT_THROW(close_warehouse(us.warehouse), refused);
    EXPECT_NO_THROW(close_warehouse(us.second_warehouse));
    EXPECT_NO_THROW(remove_product(boss, us.second_product));
    issue({from(stock, 9)});
    EXPECT_THROW(remove_product(boss, us.product), refused);
    EXPECT_THROW(close_warehouse(us.warehouse), refused);
    issue({from(stock, 1)});
    EXPECT_NO_THROW(remove_product(boss, us.product));
    EXPECT_NO_THROW(close_warehouse(us.warehouse));
    ledger_is_right();
}

} // namespace
} // namespace tavrok::domain
