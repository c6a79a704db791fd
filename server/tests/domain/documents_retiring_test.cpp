#include "domain/documents_scene.h"
#include "domain/interleave.h"
#include "domain/warehouses.h"

namespace tavrok::domain {
namespace {

using test::g_in;
using test::g_now;
using test::g_out;

/** Goods that are retired at the very moment at which a document brings some in or back. SQLite runs writes
 * one after the other. */
class documents_retiring : public test::documents_test {
protected:
    using work = std::function<void(store::connection&)>;

    work retiring_product() {
        return [this](store::connection& with) { domain::remove_product(with, boss, us.product, g_now); };
    }
    work retiring_warehouse() {
        return [this](store::connection& with) { remove_warehouse(with, boss, us.warehouse, g_now); };
    }
    work closing(std::int64_t draft) {
        return [this, draft](store::connection& with) {
            m_reason = close_draft(with, boss, g_in, draft, 2500, g_now);
        };
    }
    work deleting(std::int64_t document) {
        return [this, document](store::connection& with) {
            remove_document(with, boss, g_out, document, g_now);
        };
    }
    std::int64_t ready() {
        const auto draft = open(g_in, 7);
        put(g_in, draft, line());
        announce(line());
        return draft;
    }
    /** Whether the second, which waits for the first, is refused. */
    bool refused_beside(const work& first, const work& second) {
        const auto met = test::interleave(*in, first, second);
        EXPECT_TRUE(met.waited);
        return test::is_refused([&] {
            if (met.failure) std::rethrow_exception(met.failure);
        });
    }
    void live(bool expected) {
        EXPECT_EQ(in->number("SELECT count(*) FROM product WHERE state = 1 AND id = " +
                             std::to_string(us.product)) == 1 &&
                      in->number("SELECT count(*) FROM warehouse WHERE state = 1 AND id = " +
                                 std::to_string(us.warehouse)) == 1,
                  expected);
        ledger_is_right();
    }

    std::string m_reason;
};
INSTANTIATE_TEST_SUITE_P(engines, documents_retiring,
                         testing::Values("postgresql", "postgresql_serializable"),
                         [](const auto& one) { return one.param; });

TEST_P(documents_retiring, what_came_in_first_keeps_its_product) {
    EXPECT_TRUE(refused_beside(closing(ready()), retiring_product()));
    EXPECT_EQ(m_reason, "");
    live(true);
}

TEST_P(documents_retiring, what_came_in_first_keeps_its_warehouse) {
    EXPECT_TRUE(refused_beside(closing(ready()), retiring_warehouse()));
    EXPECT_EQ(m_reason, "");
    live(true);
}

TEST_P(documents_retiring, what_comes_later_finds_no_product) {
    EXPECT_FALSE(refused_beside(retiring_product(), closing(ready())));
    EXPECT_NE(m_reason, "") << "the draft is dropped";
    EXPECT_EQ(in->number("SELECT count(*) FROM stock"), 0);
    live(false);
}

TEST_P(documents_retiring, what_comes_later_finds_no_warehouse) {
    EXPECT_FALSE(refused_beside(retiring_warehouse(), closing(ready())));
    EXPECT_NE(m_reason, "");
    EXPECT_EQ(in->number("SELECT count(*) FROM stock"), 0);
    live(false);
}

TEST_P(documents_retiring, what_comes_back_first_keeps_its_product) {
    const auto out = issue({from(batch(10), 10)});
    EXPECT_TRUE(refused_beside(deleting(out), retiring_product()));
    live(true);
}

TEST_P(documents_retiring, what_would_come_back_later_stays_out) {
    const auto stock = batch(10);
    const auto out = issue({from(stock, 10)});
    EXPECT_TRUE(refused_beside(retiring_product(), deleting(out)));
    EXPECT_EQ(on_hand(stock), 0);
    live(false);
}

} // namespace
} // namespace tavrok::domain
