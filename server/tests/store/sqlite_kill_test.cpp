#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <set>

#include "store/store_tools.h"

namespace tavrok::test {
namespace {

constexpr int g_kills = 8;
constexpr int g_writers = 3;

const store::statement g_add{"pair_add", "INSERT INTO pair (number, half) VALUES (?, ?)"};

/** In the child: writes pairs of rows from several threads and tells each number after its commit. */
[[noreturn]] void write_until_killed(const store::options& how, int told, std::int64_t first) {
    const auto db = store::open(how);
    std::vector<std::thread> writers;
    for (std::int64_t writer = 0; writer < g_writers; ++writer) {
        writers.emplace_back([&, writer] {
            for (std::int64_t i = first + writer;; i += g_writers) {
                store::write_now(*db, [i](store::connection& with) {
                    with.execute(g_add, {i, std::int64_t{1}});
                    with.execute(g_add, {i, std::int64_t{2}});
                });
                if (::write(told, &i, sizeof i) != sizeof i) ::_exit(1);
            }
        });
    }
    for (auto& one : writers) {
        one.join();
    }
    ::_exit(0);
}

/** Takes `wanted` numbers out of the pipe, kills the child and takes what it had still told. */
void kill_after(pid_t child, int told, std::size_t wanted, std::set<std::int64_t>& acknowledged) {
    std::int64_t one = 0;
    for (std::size_t taken = 0; ::read(told, &one, sizeof one) == sizeof one;) {
        acknowledged.insert(one);
        if (++taken == wanted) ::kill(child, SIGKILL);
    }
}

TEST(store_sqlite_kill, no_acknowledged_row_is_lost_and_no_job_is_halved) {
    scratch_database scratch("sqlite");
    define(scratch, "sqlite",
           "CREATE TABLE pair (number {int} NOT NULL, half {int} NOT NULL, PRIMARY KEY (number, half)) "
           "{strict}");
    std::set<std::int64_t> acknowledged;
    for (int round = 0; round < g_kills; ++round) {
        scratch.close(); // also: no thread may live across the fork
        int ends[2];
        ASSERT_EQ(::pipe(ends), 0);
        const pid_t child = ::fork();
        if (child == 0) {
            ::close(ends[0]);
            write_until_killed(scratch.options(), ends[1], std::int64_t{round} * 1000000);
        }
        ::close(ends[1]);
        kill_after(child, ends[0], 20 + static_cast<std::size_t>(round) * 37, acknowledged);
        ::close(ends[0]);
        int status = 0;
        ASSERT_EQ(::waitpid(child, &status, 0), child);
        ASSERT_TRUE(WIFSIGNALED(status)) << "the child ended by itself with " << status;

        std::set<std::int64_t> found;
        store::read_now(*scratch, [&](store::connection& with) {
            found.clear();
            with.query(unnamed("SELECT number, count(*) FROM pair GROUP BY number"), {},
                       [&](const store::row& one) {
                           EXPECT_EQ(one.integer(1), 2) << "half a job is left of " << one.integer(0);
                           found.insert(one.integer(0));
                       });
        });
        for (const auto one : acknowledged) {
            ASSERT_TRUE(found.contains(one)) << one << " was acknowledged and is gone";
        }
    }
    EXPECT_GT(acknowledged.size(), 1000U);
}

} // namespace
} // namespace tavrok::test
