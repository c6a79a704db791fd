#include "domain/demo_documents.h"

#include <algorithm>
#include <ctime>
#include <map>
#include <set>

#include "domain/check.h"
#include "domain/demo.h"
#include "domain/documents.h"
#include "domain/scene.h"

namespace tavrok::domain {
namespace {

using test::g_now;

/** The demo's main company, seen by its administrator. */
class demo_documents : public test::on_engine {
protected:
    void fill(std::int64_t now) {
        database = std::make_unique<test::scratch_database>(GetParam());
        store::write_now(**database, [&](store::connection& with) { make_demo(with, "pepper", now); });
    }
    std::int64_t number(const std::string& sql) {
        std::int64_t found = -1;
        store::read_now(**database, [&](store::connection& with) {
            with.query({"test " + sql, sql}, {}, [&](const store::row& one) { found = one.integer(0); });
        });
        return found;
    }
    template <typename each_t>
    void each(const std::string& sql, const each_t& each) {
        store::read_now(**database, [&](store::connection& with) {
            with.query({"test " + sql, sql}, {}, each);
        });
    }

    std::unique_ptr<test::scratch_database> database;
};
ON_EVERY_ENGINE(demo_documents);

TEST_P(demo_documents, are_of_all_kinds_by_several_writers) {
    fill(g_now);
    EXPECT_EQ(number("SELECT count(*) FROM document WHERE module <= 2"), 60);
    EXPECT_EQ(number("SELECT count(*) FROM document WHERE module = 3 AND state = 1"), 6);
    EXPECT_EQ(number("SELECT count(*) FROM document WHERE module = 4 AND state = 1"), 12);
    EXPECT_EQ(number("SELECT count(*) FROM document"), 78);
    EXPECT_EQ(number("SELECT count(*) FROM document WHERE state = 2"), 3);
    EXPECT_EQ(number("SELECT count(DISTINCT module * 10 + type) FROM document WHERE state = 1"), 15);
    EXPECT_EQ(number("SELECT count(DISTINCT writer) FROM document"), 3);
    EXPECT_EQ(number("SELECT count(DISTINCT company) FROM document"), 1);
    EXPECT_GT(number("SELECT count(*) FROM document WHERE remark <> ''"), 25);
    EXPECT_EQ(number("SELECT count(*) FROM draft"), 0);
    EXPECT_EQ(number("SELECT count(*) FROM session"), 0) << "nobody stays logged in";
    EXPECT_EQ(number("SELECT count(*) FROM (SELECT document FROM document_line GROUP BY document "
                     "HAVING count(*) > 6) t"),
              0);
    EXPECT_EQ(number("SELECT count(*) FROM document d WHERE NOT EXISTS (SELECT 1 FROM document_line l WHERE "
                     "l.document = d.id)"),
              0);
    EXPECT_EQ(number("SELECT count(DISTINCT n) FROM (SELECT count(*) AS n FROM document_line GROUP BY "
                     "document) t"),
              6)
        << "from one line to six";
}

TEST_P(demo_documents, are_written_at_working_hours_of_the_last_ninety_days) {
    for (const auto now : {g_now, g_now + 2 * 86'400 + 1800, g_now + 5 * 86'400 + 50'000}) {
        fill(now);
        std::int64_t before = now - 90 * 86'400;
        each("SELECT added_at, sn FROM document ORDER BY id", [&](const store::row& one) {
            EXPECT_GT(one.integer(0), before) << one.text(1) << ": each after the one before it";
            EXPECT_LT(one.integer(0), now) << one.text(1);
            before = one.integer(0);
            const auto when = static_cast<std::time_t>(before);
            std::tm local{};
            localtime_r(&when, &local);
            EXPECT_GE(local.tm_hour, 9) << one.text(1);
            EXPECT_LT(local.tm_hour, 18) << one.text(1);
            EXPECT_TRUE(local.tm_wday >= 1 && local.tm_wday <= 5) << one.text(1);
        });
        EXPECT_EQ(number("SELECT count(*) FROM document WHERE deleted_at - added_at <> 2400"), 0);
    }
}

TEST_P(demo_documents, have_numbers_without_gaps) {
    fill(g_now);
    std::map<std::string, std::set<int>> series;
    each("SELECT sn FROM document", [&](const store::row& one) {
        const std::string sn(one.text(0));
        ASSERT_EQ(sn.size(), 15U) << sn;
        EXPECT_TRUE(series[sn.substr(0, 10)].insert(std::stoi(sn.substr(11))).second) << sn;
    });
    std::size_t longest = 0;
    for (const auto& [day, numbers] : series) {
        EXPECT_EQ(*numbers.begin(), 1) << day;
        EXPECT_EQ(*numbers.rbegin(), static_cast<int>(numbers.size())) << day;
        longest = std::max(longest, numbers.size());
    }
    EXPECT_GT(longest, 1U) << "some days have two of a kind";
}

TEST_P(demo_documents, leave_stock_that_makes_sense) {
    fill(g_now);
    const std::string document_batches =
        "FROM stock s WHERE EXISTS (SELECT 1 FROM movement m WHERE m.stock = s.id)";
    const auto rows = number("SELECT count(*) " + document_batches);
    EXPECT_GT(rows, 80);
    EXPECT_EQ(number("SELECT count(*) FROM stock"), rows);
    const auto used_up = number("SELECT count(*) FROM stock WHERE on_hand = 0");
    EXPECT_GE(used_up, 5);
    EXPECT_LT(used_up, rows / 3);
    EXPECT_GT(number("SELECT count(DISTINCT product) FROM stock WHERE listed = 1") * 10,
              number("SELECT count(DISTINCT product) FROM document_line") * 8)
        << "most products are on hand";
    EXPECT_EQ(number("SELECT count(*) FROM stock s WHERE s.on_hand <> (SELECT sum(m.amount) FROM movement m "
                     "WHERE m.stock = s.id)"),
              0);
    EXPECT_EQ(number("SELECT count(DISTINCT warehouse) FROM stock WHERE listed = 1"), 4);
    EXPECT_EQ(number("SELECT count(*) FROM stock WHERE length(place) <> 7"), 0) << "such as A-03-12";
    // Around the product's price: made for less, sold for more.
    EXPECT_EQ(
        number("SELECT count(*) FROM document_line l JOIN product p ON p.id = l.product WHERE p.price > "
               "20 AND (l.price * 100 < p.price * 65 OR l.price * 100 > p.price * 130)"),
        0);
    EXPECT_GT(number("SELECT count(*) FROM document_line l JOIN stock s ON s.id = l.stock WHERE s.price < "
                     "l.price"),
              10)
        << "sold for more than they had cost";
}

TEST_P(demo_documents, have_stocktakings_that_are_a_few_off) {
    fill(g_now);
    const std::string lines = " FROM document_line l JOIN document d ON d.id = l.document WHERE d.module = 3";
    EXPECT_EQ(number("SELECT count(*) FROM (SELECT l.document" + lines +
                     " GROUP BY l.document HAVING count(*) BETWEEN 3 AND 6) t"),
              6);
    EXPECT_EQ(number("SELECT count(*)" + lines + " AND (l.amount < -3 OR l.amount > 2)"), 0);
    EXPECT_GT(number("SELECT count(*)" + lines + " AND l.amount < 0"), 5);
    EXPECT_GT(number("SELECT count(*)" + lines + " AND l.amount > 0"), 2);
    EXPECT_GT(number("SELECT count(*)" + lines + " AND l.amount = 0"), 5) << "most shelves are right";
    EXPECT_EQ(number("SELECT count(*)" + lines + " AND (l.amount = 0) <> (l.remark = '')"), 0)
        << "what is off is explained";
    EXPECT_EQ(number("SELECT count(DISTINCT l.document)" + lines + " AND l.amount <> 0"), 6);
    EXPECT_GT(number("SELECT count(DISTINCT l.warehouse)" + lines), 2);
    EXPECT_EQ(number("SELECT count(*) FROM (SELECT l.document" + lines +
                     " GROUP BY l.document HAVING count(DISTINCT l.warehouse) > 1) t"),
              0)
        << "one warehouse is counted at a time";
    EXPECT_EQ(number("SELECT count(*)" + lines + " AND l.total * l.amount < 0"), 0);
    EXPECT_EQ(number("SELECT count(*) FROM document d WHERE module = 3 AND (difference, total) <> (SELECT "
                     "sum(amount), sum(total) FROM document_line l WHERE l.document = d.id)"),
              0);
}

TEST_P(demo_documents, have_transfers_between_all_warehouses) {
    fill(g_now);
    const std::string lines =
        " FROM document_line l JOIN document d ON d.id = l.document JOIN stock f ON "
        "f.id = l.stock JOIN stock t ON t.id = l.stock_in WHERE d.module = 4";
    EXPECT_GT(number("SELECT count(*)" + lines), 20);
    EXPECT_EQ(number("SELECT count(*)" + lines +
                     " AND f.warehouse = d.warehouse_out AND t.warehouse = d.warehouse_in AND f.price = "
                     "t.price AND f.product = t.product AND l.amount > 0"),
              number("SELECT count(*) FROM document_line WHERE stock_in IS NOT NULL"));
    EXPECT_EQ(number("SELECT count(DISTINCT warehouse_out) FROM document WHERE module = 4"), 4);
    EXPECT_EQ(number("SELECT count(DISTINCT warehouse_in) FROM document WHERE module = 4"), 4);
    EXPECT_GT(number("SELECT count(*)" + lines + " AND f.on_hand > 0"), 5) << "a part stays where it was";
    EXPECT_GT(number("SELECT count(*)" + lines + " AND t.on_hand < l.amount"), 1) << "some has gone on";
    EXPECT_EQ(number("SELECT count(*) FROM movement m JOIN document d ON d.id = m.document WHERE m.moved_at "
                     "< (SELECT s.added_at FROM stock s WHERE s.id = m.stock)"),
              0)
        << "nothing leaves a shelf before it came";
}

TEST_P(demo_documents, are_controlled_by_keeper_and_administrator) {
    fill(g_now);
    for (const std::string of : {"module = 3", "module = 4"}) {
        const auto written_by = [&](const std::string& name) {
            return number("SELECT count(*) FROM document d JOIN app_user u ON u.id = d.writer WHERE " + of +
                          " AND u.username = '" + name + "'");
        };
        EXPECT_GT(written_by("demo_keeper"), written_by("demo_admin")) << of;
        EXPECT_GT(written_by("demo_admin"), 0) << of;
        EXPECT_EQ(written_by("demo_buyer"), 0) << of << ": he may not";
        EXPECT_GE(number("SELECT count(*) FROM document WHERE remark <> '' AND " + of) * 2,
                  number("SELECT count(*) FROM document WHERE " + of));
    }
}

TEST_P(demo_documents, stand_the_proof) {
    fill(g_now);
    store::read_now(**database, [](store::connection& with) {
        for (const auto& one : check(with))
            ADD_FAILURE() << one.text;
    });
}

} // namespace
} // namespace tavrok::domain
