#include <atomic>
#include <vector>

#include "store/store_tools.h"

namespace tavrok::test {
namespace {

using store::connection;
using store::error_kind;

const store::statement g_add{"counted_add", "INSERT INTO counted (id) VALUES (?)"};
const std::string g_count = "SELECT count(*) FROM counted";

class store_transactions : public on_each_engine {
protected:
    /** Opens the database with one thread and room for `limit` writes, and makes the table. */
    void narrow(unsigned limit) {
        scratch().options().readers = 1;
        scratch().options().queue_limit = limit;
        define("CREATE TABLE counted (id {int} NOT NULL PRIMARY KEY) {strict}");
    }
};
ON_EACH_ENGINE(store_transactions);

store::job adding(std::int64_t id) {
    return [id](connection& with) { with.execute(g_add, {id}); };
}

TEST_P(store_transactions, a_job_that_fails_takes_nobody_with_it) {
    narrow(100);
    held_job holding(db());
    auto first = start_write(db(), adding(1));
    auto twice = start_write(db(), [](connection& with) {
        with.execute(g_add, {std::int64_t{2}});
        with.execute(g_add, {std::int64_t{2}});
    });
    auto thrower = start_write(db(), [](connection& with) {
        with.execute(g_add, {std::int64_t{3}});
        throw std::logic_error("no");
    });
    auto last = start_write(db(), adding(4));
    holding.release();
    EXPECT_NO_THROW(first.get());
    EXPECT_EQ(kind_of(twice), error_kind::unique);
    EXPECT_THROW(thrower.get(), std::logic_error);
    EXPECT_NO_THROW(last.get());
    EXPECT_EQ(number(db(), g_count), 2);
    EXPECT_EQ(number(db(), "SELECT sum(id) FROM counted"), 5);
}

TEST_P(store_transactions, a_statement_without_end_is_stopped_and_its_neighbours_live) {
    scratch().options().statement_timeout = std::chrono::milliseconds(300);
    narrow(100);
    held_job holding(db());
    auto before = start_write(db(), adding(1));
    auto endless = start_write(db(), [](connection& with) {
        with.execute(unnamed("WITH RECURSIVE n (i) AS (SELECT 10 UNION ALL SELECT i + 1 FROM n)"
                             " INSERT INTO counted SELECT i FROM n"),
                     {});
    });
    auto after = start_write(db(), adding(2));
    holding.release();
    EXPECT_NO_THROW(before.get());
    EXPECT_EQ(kind_of(endless), error_kind::busy);
    EXPECT_NO_THROW(after.get());
    EXPECT_EQ(number(db(), g_count), 2);
}

TEST_P(store_transactions, success_is_told_after_the_commit) {
    scratch().options().readers = 2;
    define("CREATE TABLE counted (id {int} NOT NULL PRIMARY KEY) {strict}");
    for (std::int64_t i = 1; i <= 50; ++i) {
        std::promise<std::int64_t> seen;
        // Asked from within the completion, while the thread that commits waits: nothing can become visible
        // later.
        db().write(adding(i), [&](const std::exception_ptr& failure) {
            seen.set_value(failure ? -1 : number(db(), g_count));
        });
        ASSERT_EQ(seen.get_future().get(), i);
    }
}

TEST_P(store_transactions, a_full_queue_refuses_without_running) {
    narrow(2);
    held_job holding(db());
    auto one = start_write(db(), adding(1));
    auto two = start_write(db(), adding(2));
    std::atomic<bool> ran{false};
    auto three = start_write(db(), [&](connection&) { ran = true; });
    EXPECT_EQ(three.wait_for(std::chrono::seconds(0)), std::future_status::ready);
    EXPECT_EQ(kind_of(three), error_kind::busy);
    EXPECT_EQ(db().figures().waiting_writes, 2U);
    holding.release();
    EXPECT_NO_THROW(one.get());
    EXPECT_NO_THROW(two.get());
    EXPECT_FALSE(ran);
    EXPECT_EQ(number(db(), g_count), 2);
}

TEST_P(store_transactions, many_writers_at_once_lose_no_step) {
    define("CREATE TABLE total (n {int} NOT NULL) {strict}");
    write(db(), "INSERT INTO total VALUES (0)");
    std::atomic<std::int64_t> succeeded{0};
    std::vector<std::thread> writers;
    for (int i = 0; i < 4; ++i) {
        writers.emplace_back([&] {
            for (int k = 0; k < 50; ++k) {
                const auto kind = kind_of([&] {
                    store::write_now(db(), [](connection& with) {
                        with.execute({"total_step", "UPDATE total SET n = n + 1"}, {});
                    });
                });
                // Under SERIALIZABLE five tries may not be enough; such a step must not count.
                EXPECT_TRUE(!kind || *kind == error_kind::conflict);
                if (!kind) ++succeeded;
            }
        });
    }
    for (auto& one : writers) {
        one.join();
    }
    EXPECT_EQ(number(db(), "SELECT n FROM total"), succeeded);
    if (GetParam() != "postgresql_serializable") {
        EXPECT_EQ(succeeded, 200);
    }
    EXPECT_GT(succeeded, 100);
}

TEST_P(store_transactions, a_reader_sees_one_moment) {
    define("CREATE TABLE counted (id {int} NOT NULL PRIMARY KEY) {strict}");
    std::vector<std::int64_t> seen;
    store::read_now(db(), [&](connection& with) {
        const auto look = [&] {
            with.query({"counted", g_count}, {},
                       [&](const store::row& one) { seen.push_back(one.integer(0)); });
        };
        look();
        store::write_now(db(), adding(1));
        look();
    });
    EXPECT_EQ(seen, (std::vector<std::int64_t>{0, 0}));
    EXPECT_EQ(number(db(), g_count), 1);
}

TEST_P(store_transactions, stop_runs_what_was_accepted_and_nothing_later) {
    narrow(100);
    std::vector<std::future<void>> accepted;
    {
        held_job holding(db());
        for (std::int64_t i = 0; i < 5; ++i) {
            accepted.push_back(start_write(db(), adding(i)));
        }
        std::thread stopping([&] { db().stop(); });
        EXPECT_TRUE(comes_true([&] { return !db().ready(); }));
        holding.release();
        stopping.join();
    }
    for (auto& one : accepted) {
        EXPECT_NO_THROW(one.get());
    }
    auto late = start_write(db(), adding(99));
    EXPECT_EQ(kind_of(late), error_kind::lost);
    EXPECT_EQ(kind_of([&] { store::read_now(db(), [](connection&) {}); }), error_kind::lost);
    scratch().close();
    EXPECT_EQ(number(db(), g_count), 5);
}

TEST_P(store_transactions, what_was_written_is_there_after_a_new_start) {
    define("CREATE TABLE counted (id {int} NOT NULL PRIMARY KEY) {strict}");
    store::write_now(db(), adding(41));
    scratch().close();
    EXPECT_EQ(number(db(), "SELECT id FROM counted"), 41);
}

TEST_P(store_transactions, several_reads_run_at_the_same_time_and_all_end) {
    define("CREATE TABLE counted (id {int} NOT NULL PRIMARY KEY) {strict}");
    store::write_now(db(), adding(41));
    std::atomic<int> there{0};
    std::atomic<int> ended{0};
    // Each waits for the other one: one after the other they would never end.
    const auto meet = [&](connection& with) {
        with.query(unnamed(g_count), {}, [&](const store::row& one) { EXPECT_EQ(one.integer(0), 1); });
        ++there;
        while (there < 2)
            std::this_thread::yield();
        ++ended;
    };
    store::read_all_now(db(), {meet, meet});
    EXPECT_EQ(ended, 2);
    const auto fails = [](connection&) { throw std::logic_error("no"); };
    const auto last = [&](connection&) { ++ended; };
    EXPECT_THROW(store::read_all_now(db(), {fails, last, last}), std::logic_error);
    EXPECT_EQ(ended, 4) << "the others ran to their end";
    store::read_all_now(db(), {});
}

TEST_P(store_transactions, the_figures_count_statements_and_commits) {
    define("CREATE TABLE counted (id {int} NOT NULL PRIMARY KEY) {strict}");
    const auto before = db().figures();
    for (std::int64_t i = 0; i < 3; ++i) {
        store::write_now(db(), adding(i));
    }
    const auto after = db().figures();
    EXPECT_EQ(after.commits - before.commits, 3U);
    EXPECT_EQ(after.committed_jobs - before.committed_jobs, 3U);
    EXPECT_EQ(after.statements.at("counted_add").count, 3U);
    EXPECT_GT(after.statements.at("counted_add").time.count(), 0);
    EXPECT_EQ(after.waiting_writes, 0U);
    EXPECT_TRUE(db().ready());
}

} // namespace
} // namespace tavrok::test
