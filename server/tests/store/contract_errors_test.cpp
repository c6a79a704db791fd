#include "store/store_tools.h"

namespace tavrok::test {
namespace {

using store::connection;
using store::error;
using store::error_kind;
using store::row;
using store::statement;

class store_errors : public on_each_engine {
protected:
    void SetUp() override {
        on_each_engine::SetUp();
        if (IsSkipped()) return;
        define(
            "CREATE TABLE parent (id {id}, name {text} NOT NULL UNIQUE, amount {int} NOT NULL CHECK (amount "
            ">= 0))"
            " {strict}");
        define(
            "CREATE TABLE child (id {id}, parent {int} NOT NULL REFERENCES parent (id),"
            " late {int} REFERENCES parent (id) DEFERRABLE INITIALLY DEFERRED) {strict}");
        write(db(), "INSERT INTO parent (id, name, amount) VALUES (1, 'one', 1)");
    }
    std::optional<error_kind> kind_of_write(const std::string& sql) {
        return kind_of([&] { write(db(), sql); });
    }
};
ON_EACH_ENGINE(store_errors);

TEST_P(store_errors, constraints_have_their_classes) {
    EXPECT_EQ(kind_of_write("INSERT INTO parent (name, amount) VALUES ('one', 1)"), error_kind::unique);
    EXPECT_EQ(kind_of_write("INSERT INTO parent (id, name, amount) VALUES (1, 'x', 1)"), error_kind::unique);
    EXPECT_EQ(kind_of_write("INSERT INTO child (parent) VALUES (99)"), error_kind::unique);
    EXPECT_EQ(kind_of_write("INSERT INTO parent (id, name, amount) VALUES (5, 'five', -1)"),
              error_kind::check);
    EXPECT_EQ(kind_of_write("UPDATE parent SET amount = amount - 2 WHERE id = 1"), error_kind::check);
    EXPECT_EQ(kind_of_write("INSERT INTO parent (id, name, amount) VALUES (6, NULL, 1)"), error_kind::check);
    EXPECT_EQ(kind_of_write("INSERT INTO child (id, parent) VALUES (1, 1)"), std::nullopt);
    EXPECT_EQ(kind_of_write("DELETE FROM parent WHERE id = 1"), error_kind::unique);
    EXPECT_EQ(number(db(), "SELECT count(*) FROM parent"), 1);
}

TEST_P(store_errors, a_reference_that_is_checked_late_is_still_checked) {
    EXPECT_EQ(kind_of_write("INSERT INTO child (id, parent, late) VALUES (1, 1, 77)"), error_kind::unique);
    EXPECT_EQ(number(db(), "SELECT count(*) FROM child"), 0);
}

TEST_P(store_errors, sql_that_is_wrong_is_another_error) {
    EXPECT_EQ(kind_of_write("SELEKT 1"), error_kind::other);
    EXPECT_EQ(kind_of_write("SELECT \"no such column\" FROM parent"), error_kind::other);
    EXPECT_EQ(kind_of_write("INSERT INTO parent (name, amount) VALUES (?, ?)"), error_kind::other);
    EXPECT_EQ(kind_of_write("DELETE FROM child; DELETE FROM parent"), error_kind::other);
    EXPECT_EQ(number(db(), "SELECT count(*) FROM parent"), 1);
}

TEST_P(store_errors, a_reader_cannot_write) {
    const auto kind = kind_of([&] {
        store::read_now(db(),
                        [](connection& with) { with.execute(unnamed("UPDATE parent SET amount = 5"), {}); });
    });
    EXPECT_EQ(kind, error_kind::full);
    EXPECT_EQ(number(db(), "SELECT amount FROM parent"), 1);
}

TEST_P(store_errors, a_job_cannot_pass_over_a_failed_statement) {
    std::optional<error_kind> second;
    const auto kind = kind_of([&] {
        store::write_now(db(), [&](connection& with) {
            with.execute(unnamed("INSERT INTO parent (id, name, amount) VALUES (2, 'two', 2)"), {});
            try {
                with.execute(unnamed("INSERT INTO parent (id, name, amount) VALUES (9, 'one', 2)"), {});
            } catch (const error&) {
                second = kind_of([&] { with.execute(unnamed("UPDATE parent SET amount = 9"), {}); });
            }
        });
    });
    EXPECT_EQ(second, error_kind::unique);
    EXPECT_EQ(kind, error_kind::unique);
    EXPECT_EQ(number(db(), "SELECT count(*) FROM parent"), 1);
    EXPECT_EQ(number(db(), "SELECT amount FROM parent"), 1);
}

struct refusal : std::runtime_error {
    using std::runtime_error::runtime_error;
};

TEST_P(store_errors, what_a_job_throws_comes_out_as_it_is) {
    EXPECT_THROW(store::write_now(db(),
                                  [](connection& with) {
                                      with.execute(unnamed("DELETE FROM parent"), {});
                                      throw refusal("no");
                                  }),
                 refusal);
    EXPECT_THROW(store::read_now(db(), [](connection&) { throw refusal("no"); }), refusal);
    EXPECT_EQ(number(db(), "SELECT count(*) FROM parent"), 1);
}

TEST_P(store_errors, an_exception_out_of_a_row_leaves_the_statement_usable) {
    const statement list{"parent_list", "SELECT id FROM parent"};
    for (int i = 0; i < 2; ++i) {
        const auto stumble = [&](connection& with) {
            with.query(list, {}, [](const row&) { throw refusal("no"); });
        };
        EXPECT_THROW(store::read_now(db(), stumble), refusal);
    }
    int seen = 0;
    store::read_now(db(), [&](connection& with) { with.query(list, {}, [&](const row&) { ++seen; }); });
    EXPECT_EQ(seen, 1);
}

TEST_P(store_errors, two_texts_cannot_share_a_name) {
    const auto kind = kind_of([&] {
        store::read_now(db(), [](connection& with) {
            with.query({"shared", "SELECT 1"}, {}, [](const row&) {});
            with.query({"shared", "SELECT 2"}, {}, [](const row&) {});
        });
    });
    EXPECT_EQ(kind, error_kind::other);
}

TEST_P(store_errors, a_cached_statement_takes_other_values_and_other_types) {
    const statement add{"parent_add", "INSERT INTO child (id, parent, late) VALUES (?, ?, ?)"};
    store::write_now(db(), [&](connection& with) {
        with.execute(add, {std::int64_t{1}, std::int64_t{1}, nullptr});
        with.execute(add, {std::int64_t{2}, std::int64_t{1}, std::int64_t{1}});
        with.execute(add, {std::int64_t{3}, std::int64_t{1}, nullptr});
    });
    EXPECT_EQ(number(db(), "SELECT count(*) FROM child WHERE late IS NULL"), 2);
}

TEST_P(store_errors, a_query_may_run_inside_its_own_rows) {
    write(db(), "INSERT INTO parent (id, name, amount) VALUES (2, 'two', 2)");
    const statement list{"parent_list", "SELECT id FROM parent ORDER BY id"};
    std::string seen;
    store::read_now(db(), [&](connection& with) {
        seen.clear();
        with.query(list, {}, [&](const row& outer) {
            with.query(list, {}, [&](const row& inner) {
                seen += std::to_string(outer.integer(0)) + std::to_string(inner.integer(0)) + " ";
            });
        });
    });
    EXPECT_EQ(seen, "11 12 21 22 ");
}

TEST_P(store_errors, more_names_than_the_cache_holds_all_work) {
    store::read_now(db(), [&](connection& with) {
        for (int round = 0; round < 2; ++round) {
            for (std::int64_t i = 0; i < 700; ++i) {
                std::int64_t answer = -1;
                with.query(
                    {"name_" + std::to_string(i), "SELECT amount + " + std::to_string(i) + " FROM parent"},
                    {}, [&](const row& one) { answer = one.integer(0); });
                ASSERT_EQ(answer, i + 1);
            }
        }
    });
}

} // namespace
} // namespace tavrok::test
