#include "domain/stock_scene.h"

namespace tavrok::domain {
namespace {

using test::g_now;
using test::is_refused;

/** What has stock does not go. */
class stock_guards : public test::on_stock {
protected:
    void TearDown() override {
        if (in) in->sound();
    }
    void close_warehouse(std::int64_t id) {
        in->write([&](store::connection& with) { remove_warehouse(with, one, id, g_now); });
    }
};
ON_EVERY_ENGINE(stock_guards);

TEST_P(stock_guards, a_product_on_hand_stays) {
    const auto other = in->new_product("别的");
    const auto row = in->bring_in(10);
    EXPECT_TRUE(is_refused([&] { in->remove_product(in->product); }));
    EXPECT_EQ(in->number("SELECT live FROM list_counter WHERE list = 'product'"), 2);
    EXPECT_FALSE(is_refused([&] { in->remove_product(other); }));
    EXPECT_EQ(in->take_out(one, {in->line_out(row, 10)}), "");
    EXPECT_FALSE(is_refused([&] { in->remove_product(in->product); }));
    EXPECT_TRUE(is_refused([&] {
        in->remove_document(one, document_module::outbound, in->number("SELECT max(id) FROM document"));
    })) << "its goods would come back";
    EXPECT_EQ(in->on_hand(row), 0);
}

TEST_P(stock_guards, a_movement_is_never_changed_or_deleted) {
    in->bring_in(10);
    const auto kept = [&](const std::string& sql) {
        try {
            in->write([&](store::connection& with) { with.execute({"", sql}, {}); });
            return false;
        } catch (const store::error& error) {
            return error.kind() == store::error_kind::check;
        }
    };
    EXPECT_TRUE(kept("UPDATE movement SET amount = amount + 1"));
    EXPECT_TRUE(kept("UPDATE movement SET moved_at = 0"));
    EXPECT_TRUE(kept("DELETE FROM movement"));
    EXPECT_TRUE(GetParam() == "sqlite" || kept("TRUNCATE movement"));
    EXPECT_EQ(in->number("SELECT sum(amount) FROM movement"), 10);
    in->bring_in(5);
    EXPECT_EQ(in->number("SELECT sum(amount) FROM movement"), 15) << "it may grow";
}

TEST_P(stock_guards, a_warehouse_with_stock_stays) {
    const auto empty = in->open(one, test::some_warehouse("空"), in->handler);
    const auto row = in->bring_in(10);
    EXPECT_TRUE(is_refused([&] { close_warehouse(in->warehouse); }));
    EXPECT_FALSE(is_refused([&] { close_warehouse(empty); }));
    EXPECT_EQ(in->take_out(one, {in->line_out(row, 10)}), "");
    EXPECT_FALSE(is_refused([&] { close_warehouse(in->warehouse); }));
}

TEST_P(stock_guards, the_box_of_warehouses_shows_what_is_free) {
    const auto second = in->open(one, test::some_warehouse("空"), in->handler);
    const auto shown = [&] {
        return in->read([&](store::connection& with) { return list_warehouse_stock(with, one); });
    };
    const auto row = in->bring_in(10);
    in->bring_in(5);
    in->claim(one, row, 4);
    in->claim(one, claim_use::stocktaking, row, 0);
    const auto other = in->another("二号");
    const auto all = shown();
    ASSERT_EQ(all.size(), 2U);
    EXPECT_EQ(all[0].id, in->warehouse);
    EXPECT_EQ(all[0].name, "一号仓");
    EXPECT_EQ(all[0].on_hand, 11);
    EXPECT_EQ(all[1].id, second);
    EXPECT_EQ(all[1].on_hand, 0);
    EXPECT_TRUE(in->read([&](store::connection& with) { return list_warehouse_stock(with, other); }).empty());
    close_warehouse(second);
    EXPECT_EQ(shown().size(), 1U);
}

/** Retiring and bringing in at the same moment: both orders. */
class stock_guard_races : public test::on_stock {
protected:
    using work = std::function<void(store::connection&)>;

    bool second_refused(const work& first, const work& second) {
        const auto met = test::interleave(*in, first, second);
        EXPECT_TRUE(met.waited);
        if (!met.failure) return false;
        EXPECT_TRUE(is_refused([&] { std::rethrow_exception(met.failure); }));
        return true;
    }
    work saving(document_module module, const document_line& line) {
        const auto draft = in->draft(two, module, {line});
        return [this, module, draft, total = line.total](store::connection& with) {
            const auto reason = close_draft(with, two, module, draft, total, g_now);
            if (!reason.empty()) throw refused(reason);
        };
    }
    work retiring_product() {
        return [this](store::connection& with) { remove_product(with, one, in->product, g_now); };
    }
    work retiring_warehouse() {
        return [this](store::connection& with) { remove_warehouse(with, one, in->warehouse, g_now); };
    }
    void TearDown() override {
        if (!in) return;
        in->sound();
        EXPECT_EQ(
            in->number("SELECT count(*) FROM stock s JOIN product p ON p.id = s.product JOIN warehouse w "
                       "ON w.id = s.warehouse WHERE s.listed = 1 AND (p.state <> 1 OR w.state <> 1)"),
            0);
    }
};
INSTANTIATE_TEST_SUITE_P(engines, stock_guard_races, testing::Values("postgresql", "postgresql_serializable"),
                         [](const auto& one) { return one.param; });

TEST_P(stock_guard_races, goods_that_came_first_keep_their_product) {
    EXPECT_TRUE(second_refused(saving(document_module::inbound, in->line_in(5)), retiring_product()));
    EXPECT_EQ(in->number("SELECT count(*) FROM stock"), 1);
}

TEST_P(stock_guard_races, goods_that_come_later_find_no_product) {
    EXPECT_TRUE(second_refused(retiring_product(), saving(document_module::inbound, in->line_in(5))));
    EXPECT_EQ(in->number("SELECT count(*) FROM stock"), 0);
}

TEST_P(stock_guard_races, goods_that_came_first_keep_their_warehouse) {
    EXPECT_TRUE(second_refused(saving(document_module::inbound, in->line_in(5)), retiring_warehouse()));
}

TEST_P(stock_guard_races, goods_that_come_later_find_no_warehouse) {
    EXPECT_TRUE(second_refused(retiring_warehouse(), saving(document_module::inbound, in->line_in(5))));
    EXPECT_EQ(in->number("SELECT count(*) FROM stock"), 0);
}

TEST_P(stock_guard_races, the_last_goods_that_leave_let_the_product_go) {
    const auto row = in->bring_in(5);
    EXPECT_FALSE(second_refused(saving(document_module::outbound, in->line_out(row, 5)), retiring_product()));
}

TEST_P(stock_guard_races, goods_that_come_back_keep_their_product) {
    const auto row = in->bring_in(5);
    EXPECT_EQ(in->take_out(one, {in->line_out(row, 5)}), "");
    const auto document = in->number("SELECT max(id) FROM document");
    const work removing = [&](store::connection& with) {
        remove_document(with, two, document_module::outbound, document, g_now);
    };
    EXPECT_TRUE(second_refused(removing, retiring_product()));
    EXPECT_EQ(in->on_hand(row), 5);
}

TEST_P(stock_guard_races, goods_that_would_come_back_later_find_no_product) {
    const auto row = in->bring_in(5);
    EXPECT_EQ(in->take_out(one, {in->line_out(row, 5)}), "");
    const auto document = in->number("SELECT max(id) FROM document");
    EXPECT_TRUE(second_refused(retiring_product(), [&](store::connection& with) {
        remove_document(with, two, document_module::outbound, document, g_now);
    }));
    EXPECT_EQ(in->on_hand(row), 0);
}

} // namespace
} // namespace tavrok::domain
