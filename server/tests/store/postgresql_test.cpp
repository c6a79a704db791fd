#include <atomic>
#include <latch>

#include "store/store_tools.h"

namespace tavrok::test {
namespace {

using store::connection;
using store::error_kind;

const std::string g_terminate_others =
    "SELECT count(pg_terminate_backend(pid)) FROM pg_stat_activity"
    " WHERE datname = current_database() AND pid <> pg_backend_pid()";

class store_postgresql : public ::testing::Test {
protected:
    void SetUp() override { SKIP_WITHOUT("postgresql"); }
    /** A database with two rows in it. */
    std::unique_ptr<scratch_database> two_rows(const std::string& engine = "postgresql") {
        auto scratch = std::make_unique<scratch_database>(engine);
        define(*scratch, engine, "CREATE TABLE kept (id {int} NOT NULL PRIMARY KEY, n {int} NOT NULL)");
        write(**scratch, "INSERT INTO kept VALUES (1, 0), (2, 0)");
        return scratch;
    }
};

store::statement step(std::int64_t id) {
    return unnamed("UPDATE kept SET n = n + 1 WHERE id = " + std::to_string(id));
}

TEST_F(store_postgresql, the_loser_of_a_deadlock_runs_again) {
    const auto scratch = two_rows();
    std::latch both_hold(2);
    std::atomic<int> runs{0};
    const auto crossing = [&](std::int64_t first, std::int64_t second) {
        auto waited = std::make_shared<std::atomic<bool>>(false);
        return [&, first, second, waited](connection& with) {
            ++runs;
            with.execute(step(first), {});
            if (!waited->exchange(true)) both_hold.arrive_and_wait();
            with.execute(step(second), {});
        };
    };
    auto one = start_write(**scratch, crossing(1, 2));
    auto other = start_write(**scratch, crossing(2, 1));
    EXPECT_EQ(kind_of(one), std::nullopt);
    EXPECT_EQ(kind_of(other), std::nullopt);
    EXPECT_GE(runs, 3);
    EXPECT_EQ(number(**scratch, "SELECT sum(n) FROM kept"), 4);
}

TEST_F(store_postgresql, a_transaction_that_does_not_serialise_runs_again) {
    const auto scratch = two_rows("postgresql_serializable");
    std::latch both_read(2);
    std::atomic<int> runs{0};
    // Each takes what it reads in one row over to the other: one after the other gives 1 and 2, together 1
    // and 1.
    const auto carrying = [&](std::int64_t from, std::int64_t to) {
        auto waited = std::make_shared<std::atomic<bool>>(false);
        return [&, from, to, waited](connection& with) {
            ++runs;
            std::int64_t seen = 0;
            with.query({"kept_n", "SELECT n FROM kept WHERE id = ?"}, {from},
                       [&](const store::row& one) { seen = one.integer(0); });
            if (!waited->exchange(true)) both_read.arrive_and_wait();
            with.execute({"kept_set", "UPDATE kept SET n = ? WHERE id = ?"}, {seen + 1, to});
        };
    };
    auto one = start_write(**scratch, carrying(1, 2));
    auto other = start_write(**scratch, carrying(2, 1));
    EXPECT_EQ(kind_of(one), std::nullopt);
    EXPECT_EQ(kind_of(other), std::nullopt);
    EXPECT_GE(runs, 3);
    EXPECT_EQ(number(**scratch, "SELECT sum(n) FROM kept"), 3);
}

TEST_F(store_postgresql, a_conflict_is_tried_five_times) {
    const auto scratch = two_rows();
    int runs = 0;
    const auto kind = kind_of([&] {
        store::write_now(**scratch, [&](connection& with) {
            ++runs;
            with.execute(step(1), {});
            with.execute(unnamed("DO $$ BEGIN RAISE EXCEPTION USING ERRCODE = '40001'; END $$"), {});
        });
    });
    EXPECT_EQ(kind, error_kind::conflict);
    EXPECT_EQ(runs, 5);
    EXPECT_EQ(number(**scratch, "SELECT sum(n) FROM kept"), 0);
}

TEST_F(store_postgresql, connections_that_died_idle_are_replaced) {
    const auto scratch = two_rows();
    auto killer = store::open(scratch->options());
    for (int round = 0; round < 5; ++round) {
        EXPECT_GT(number(*killer, g_terminate_others), 0);
        EXPECT_NO_THROW(write(**scratch, "UPDATE kept SET n = n + 1"));
        EXPECT_EQ(number(**scratch, "SELECT n FROM kept WHERE id = 1"), round + 1);
    }
}

TEST_F(store_postgresql, a_connection_that_dies_before_the_commit_is_replaced_and_the_job_runs_again) {
    const auto scratch = two_rows();
    auto killer = store::open(scratch->options());
    int runs = 0;
    store::write_now(**scratch, [&](connection& with) {
        with.execute(step(1), {});
        if (++runs == 1) number(*killer, g_terminate_others);
        with.execute(step(2), {});
    });
    EXPECT_EQ(runs, 2);
    EXPECT_EQ(number(**scratch, "SELECT sum(n) FROM kept"), 2);
}

TEST_F(store_postgresql, a_connection_that_dies_in_the_commit_is_lost_and_nothing_runs_again) {
    const auto scratch = two_rows();
    write(**scratch,
          "CREATE FUNCTION die() RETURNS trigger LANGUAGE plpgsql AS"
          " $$ BEGIN PERFORM pg_terminate_backend(pg_backend_pid()); RETURN NULL; END $$");
    write(**scratch,
          "CREATE CONSTRAINT TRIGGER dying AFTER UPDATE ON kept DEFERRABLE INITIALLY DEFERRED"
          " FOR EACH ROW EXECUTE FUNCTION die()");
    int runs = 0;
    const auto kind = kind_of([&] {
        store::write_now(**scratch, [&](connection& with) {
            ++runs;
            with.execute(step(1), {});
        });
    });
    EXPECT_EQ(kind, error_kind::lost);
    EXPECT_EQ(runs, 1);
    EXPECT_EQ(number(**scratch, "SELECT sum(n) FROM kept"), 0);
}

TEST_F(store_postgresql, a_lock_that_is_not_given_back_is_busy) {
    scratch_database scratch("postgresql");
    scratch.options().lock_timeout = std::chrono::milliseconds(100);
    define(scratch, "postgresql", "CREATE TABLE kept (id {int} NOT NULL PRIMARY KEY, n {int} NOT NULL)");
    write(*scratch, "INSERT INTO kept VALUES (1, 0)");
    std::optional<error_kind> inner;
    store::write_now(*scratch, [&](connection& with) {
        with.execute(step(1), {});
        inner = kind_of(
            [&] { store::write_now(*scratch, [](connection& other) { other.execute(step(1), {}); }); });
    });
    EXPECT_EQ(inner, error_kind::busy);
    EXPECT_EQ(number(*scratch, "SELECT n FROM kept"), 1);
}

TEST_F(store_postgresql, readiness_follows_the_server) {
    scratch_database scratch("postgresql");
    scratch_database desk("postgresql");
    EXPECT_TRUE(scratch->ready());
    const auto name = [&] {
        std::string text;
        store::read_now(*scratch, [&](connection& with) {
            with.query(unnamed("SELECT CAST(current_database() AS TEXT)"), {},
                       [&](const store::row& one) { text = one.text(0); });
        });
        return text;
    }();
    write(*desk, "ALTER DATABASE " + name + " ALLOW_CONNECTIONS false");
    const auto gone = std::chrono::steady_clock::now();
    number(*desk,
           "SELECT count(pg_terminate_backend(pid)) FROM pg_stat_activity WHERE datname = '" + name + "'");
    EXPECT_TRUE(comes_true([&] { return !scratch->ready(); }));
    EXPECT_LT(std::chrono::steady_clock::now() - gone, std::chrono::seconds(5));
    EXPECT_EQ(kind_of([&] { number(*scratch, "SELECT 1"); }), error_kind::lost);
    write(*desk, "ALTER DATABASE " + name + " ALLOW_CONNECTIONS true");
    EXPECT_TRUE(comes_true([&] { return scratch->ready(); }));
    EXPECT_EQ(number(*scratch, "SELECT 1"), 1);
}

TEST_F(store_postgresql, a_server_that_acknowledges_early_is_told_not_to) {
    scratch_database scratch("postgresql");
    store::write_now(*scratch, [](connection& with) {
        with.execute(unnamed("DO $$ BEGIN EXECUTE 'ALTER DATABASE ' || current_database() ||"
                             " ' SET synchronous_commit = off'; END $$"),
                     {});
    });
    scratch.close();
    store::write_now(*scratch, [](connection& with) {
        with.query(unnamed("SELECT current_setting('synchronous_commit')"), {},
                   [](const store::row& one) { EXPECT_EQ(one.text(0), "on"); });
        with.query(unnamed("SELECT current_setting('transaction_isolation')"), {},
                   [](const store::row& one) { EXPECT_EQ(one.text(0), "read committed"); });
    });
}

TEST_F(store_postgresql, two_instances_start_at_once_and_are_one_service) {
    scratch_database scratch("postgresql");
    std::vector<std::future<std::unique_ptr<store::database>>> opening;
    for (int i = 0; i < 4; ++i) {
        opening.push_back(std::async(std::launch::async, [&] { return store::open(scratch.options()); }));
    }
    std::vector<std::unique_ptr<store::database>> instances;
    for (auto& one : opening) {
        ASSERT_NO_THROW(instances.push_back(one.get()));
    }
    write(*instances[0], "CREATE TABLE kept (id BIGINT PRIMARY KEY, n BIGINT NOT NULL)");
    write(*instances[1], "INSERT INTO kept VALUES (1, 0)");
    std::vector<std::thread> writers;
    for (auto& one : instances) {
        writers.emplace_back([&] {
            for (int i = 0; i < 25; ++i) {
                store::write_now(*one, [](connection& with) { with.execute(step(1), {}); });
            }
        });
    }
    for (auto& one : writers) {
        one.join();
    }
    for (auto& one : instances) {
        EXPECT_EQ(number(*one, "SELECT n FROM kept"), 100);
    }
}

TEST_F(store_postgresql, an_error_names_the_constraint_and_shows_no_data) {
    const auto scratch = std::make_unique<scratch_database>("postgresql");
    define(*scratch, "postgresql",
           "CREATE TABLE kept (name {text} NOT NULL CONSTRAINT kept_name UNIQUE, "
           "n {int} NOT NULL CONSTRAINT kept_n CHECK (n < 5))");
    write(**scratch, "INSERT INTO kept VALUES (?, 1)", {std::string("secret name")});
    const auto message = [&](const std::string& name, std::int64_t n) {
        try {
            write(**scratch, "INSERT INTO kept VALUES (?, ?)", {name, n});
        } catch (const store::error& failure) {
            return std::string(failure.what());
        }
        return std::string("no error");
    };
    for (const auto& [text, constraint] :
         {std::pair(message("secret name", 1), "kept_name"), {message("secret other", 9), "kept_n"}}) {
        EXPECT_EQ(text.find("secret"), std::string::npos) << text;
        EXPECT_NE(text.find(constraint), std::string::npos) << text;
        EXPECT_NE(text.find("235"), std::string::npos) << text;
    }
}

} // namespace
} // namespace tavrok::test
