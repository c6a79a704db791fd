#include <rapidcheck.h>

#include <limits>

#include "store/store_tools.h"

namespace tavrok::test {
namespace {

using store::connection;
using store::error_kind;
using store::row;
using store::statement;

class store_values : public on_each_engine {};
ON_EACH_ENGINE(store_values);

std::string utf8(const std::vector<char32_t>& letters) {
    std::string text;
    for (const char32_t one : letters) {
        if (one < 0x80) {
            text += static_cast<char>(one);
        } else if (one < 0x800) {
            text += {static_cast<char>(0xC0 | (one >> 6)), static_cast<char>(0x80 | (one & 0x3F))};
        } else if (one < 0x10000) {
            text += {static_cast<char>(0xE0 | (one >> 12)), static_cast<char>(0x80 | ((one >> 6) & 0x3F)),
                     static_cast<char>(0x80 | (one & 0x3F))};
        } else {
            text += {static_cast<char>(0xF0 | (one >> 18)), static_cast<char>(0x80 | ((one >> 12) & 0x3F)),
                     static_cast<char>(0x80 | ((one >> 6) & 0x3F)), static_cast<char>(0x80 | (one & 0x3F))};
        }
    }
    return text;
}

rc::Gen<std::string> any_text() {
    const auto letter =
        rc::gen::oneOf(rc::gen::inRange<char32_t>(1, 0x80), rc::gen::inRange<char32_t>(0x80, 0xD800),
                       rc::gen::inRange<char32_t>(0xE000, 0x110000),
                       rc::gen::element<char32_t>('\'', '?', '$', '\\', '%', '&', '\n', 0x4E2D));
    return rc::gen::map(rc::gen::container<std::vector<char32_t>>(letter), utf8);
}

TEST_P(store_values, any_integer_and_text_comes_back_as_it_went) {
    define("CREATE TABLE kept (id {id}, number {int} NOT NULL, words {text} NOT NULL) {strict}");
    const statement add{"kept_add", "INSERT INTO kept (number, words) VALUES (?, ?) RETURNING id"};
    const statement get{"kept_get", "SELECT number, words FROM kept WHERE id = ? AND words = ?"};
    EXPECT_TRUE(rc::check([&] {
        const auto number = *rc::gen::arbitrary<std::int64_t>();
        const auto words = *any_text();
        std::int64_t id = 0;
        store::write_now(db(), [&](connection& with) {
            with.query(add, {number, words}, [&](const row& one) { id = one.integer(0); });
        });
        int seen = 0;
        store::read_now(db(), [&](connection& with) {
            with.query(get, {id, words}, [&](const row& one) {
                ++seen;
                RC_ASSERT(one.integer(0) == number);
                RC_ASSERT(one.text(1) == words);
            });
        });
        RC_ASSERT(seen == 1);
    }));
}

TEST_P(store_values, the_ends_of_the_integers_are_kept) {
    define("CREATE TABLE ends (number {int} NOT NULL) {strict}");
    for (const auto number :
         {std::numeric_limits<std::int64_t>::min(), std::numeric_limits<std::int64_t>::max()}) {
        write(db(), "DELETE FROM ends");
        write(db(), "INSERT INTO ends VALUES (?)", {number});
        EXPECT_EQ(tavrok::test::number(db(), "SELECT number FROM ends"), number);
    }
}

TEST_P(store_values, text_that_is_not_utf8_is_refused_as_a_check) {
    define("CREATE TABLE kept (words {text} NOT NULL) {strict}");
    for (const auto& bad :
         {std::string("a\0b", 3), std::string("\xff"), std::string("\xc0\x80"), std::string("\xed\xa0\x80"),
          std::string("\xe4\xb8"), std::string("\xf5\x80\x80\x80")}) {
        EXPECT_EQ(kind_of([&] { write(db(), "INSERT INTO kept VALUES (?)", {bad}); }), error_kind::check);
    }
    EXPECT_EQ(number(db(), "SELECT count(*) FROM kept"), 0);
}

TEST_P(store_values, null_is_told_apart_from_zero_and_from_nothing) {
    define("CREATE TABLE kept (number {int}, words {text}) {strict}");
    write(db(), "INSERT INTO kept VALUES (?, ?)", {nullptr, nullptr});
    write(db(), "INSERT INTO kept VALUES (?, ?)", {std::int64_t{0}, std::string()});
    std::string seen;
    store::read_now(db(), [&](connection& with) {
        seen.clear();
        with.query(unnamed("SELECT number, words FROM kept"), {}, [&](const row& one) {
            seen += one.null(0) ? "null " : std::to_string(one.integer(0)) + " ";
            seen += one.null(1) ? "null;" : "[" + std::string(one.text(1)) + "];";
        });
    });
    EXPECT_EQ(seen, "null null;0 [];");
}

TEST_P(store_values, a_column_is_read_as_what_it_is) {
    define("CREATE TABLE kept (number {int}, words {text}, empty {int}) {strict}");
    write(db(), "INSERT INTO kept VALUES (7, 'seven', NULL)");
    const auto reading = [&](const std::function<void(const row&)>& read) {
        return kind_of([&] {
            store::read_now(db(),
                            [&](connection& with) { with.query(unnamed("SELECT * FROM kept"), {}, read); });
        });
    };
    EXPECT_EQ(reading([](const row& one) { one.text(0); }), error_kind::other);
    EXPECT_EQ(reading([](const row& one) { one.integer(1); }), error_kind::other);
    EXPECT_EQ(reading([](const row& one) { one.integer(2); }), error_kind::other);
    EXPECT_EQ(reading([](const row& one) { one.null(3); }), error_kind::other);
    EXPECT_EQ(reading([](const row& one) { EXPECT_EQ(one.integer(0), 7); }), std::nullopt);
}

TEST_P(store_values, sums_and_comparisons_read_as_integers) {
    define("CREATE TABLE kept (number {int} NOT NULL) {strict}");
    write(db(), "INSERT INTO kept VALUES (4000000000000), (5000000000000)");
    EXPECT_EQ(number(db(), "SELECT sum(number) FROM kept"), 9000000000000);
    EXPECT_EQ(number(db(), "SELECT max(number) > min(number) FROM kept"), 1);
}

TEST_P(store_values, texts_compare_and_match_by_their_bytes) {
    define("CREATE TABLE kept (words {text} NOT NULL) {strict}");
    write(db(), "INSERT INTO kept VALUES ('b'), ('B'), ('a'), ('中'), ('a%c')");
    std::string order;
    store::read_now(db(), [&](connection& with) {
        order.clear();
        with.query(unnamed("SELECT words FROM kept ORDER BY words"), {},
                   [&](const row& one) { order += std::string(one.text(0)) + " "; });
    });
    EXPECT_EQ(order, "B a a%c b 中 ");
    EXPECT_EQ(number(db(), "SELECT count(*) FROM kept WHERE words LIKE 'B' ESCAPE '\\'"), 1);
    EXPECT_EQ(number(db(), "SELECT count(*) FROM kept WHERE words LIKE 'a\\%%' ESCAPE '\\'"), 1);
}

TEST_P(store_values, a_write_tells_how_many_rows_it_changed) {
    define("CREATE TABLE kept (id {id}, number {int} NOT NULL) {strict}");
    store::write_now(db(), [&](connection& with) {
        const auto add = unnamed("INSERT INTO kept (number) VALUES (1), (2), (3)");
        EXPECT_EQ(with.execute(add, {}), 3);
        EXPECT_EQ(
            with.execute(unnamed("UPDATE kept SET number = number + 1 WHERE number > ?"), {std::int64_t{1}}),
            2);
        EXPECT_EQ(with.execute(unnamed("UPDATE kept SET number = 0 WHERE number > 100"), {}), 0);
        EXPECT_EQ(with.execute(unnamed("CREATE TABLE more (number INTEGER)"), {}), 0);
        EXPECT_EQ(with.execute(unnamed("SELECT * FROM kept"), {}), 0);
        EXPECT_EQ(with.execute(unnamed("DELETE FROM kept"), {}), 3);
    });
}

TEST_P(store_values, given_ids_rise) {
    define("CREATE TABLE kept (id {id}, number {int} NOT NULL) {strict}");
    std::vector<std::int64_t> ids;
    store::write_now(db(), [&](connection& with) {
        ids.clear();
        for (std::int64_t i = 0; i < 3; ++i) {
            with.query({"kept_add", "INSERT INTO kept (number) VALUES (?) RETURNING id"}, {i},
                       [&](const row& one) { ids.push_back(one.integer(0)); });
        }
    });
    EXPECT_EQ(ids, (std::vector<std::int64_t>{1, 2, 3}));
}

} // namespace
} // namespace tavrok::test
