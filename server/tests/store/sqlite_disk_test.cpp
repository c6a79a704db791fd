#include <signal.h>
#include <sqlite3.h>
#include <sys/resource.h>

#include <filesystem>

#include "store/faulty_disk.h"
#include "store/store_tools.h"

namespace tavrok::test {
namespace {

using store::connection;
using store::error_kind;

const std::string g_count = "SELECT count(*) FROM kept";

void make_table(scratch_database& where) {
    define(where, "sqlite", "CREATE TABLE kept (id {id}, words {text} NOT NULL) {strict}");
}

void add(store::database& where, std::size_t length) {
    write(where, "INSERT INTO kept (words) VALUES (?)", {std::string(length, 'x')});
}

std::uintmax_t size_of(const std::string& path) {
    std::error_code missing;
    const auto size = std::filesystem::file_size(path, missing);
    return missing ? 0 : size;
}

std::string log_of(scratch_database& where) {
    return where.options().location + "-wal";
}

TEST(store_sqlite_disk, a_file_that_cannot_grow_is_full_and_works_again_later) {
    ::signal(SIGXFSZ, SIG_IGN);
    scratch_database scratch("sqlite");
    make_table(scratch);
    rlimit before{};
    ASSERT_EQ(::getrlimit(RLIMIT_FSIZE, &before), 0);
    rlimit narrow = before;
    narrow.rlim_cur = 512 << 10;
    ASSERT_EQ(::setrlimit(RLIMIT_FSIZE, &narrow), 0);
    const auto kind = kind_of([&] { add(*scratch, 2 << 20); });
    const auto while_full = number(*scratch, g_count);
    ASSERT_EQ(::setrlimit(RLIMIT_FSIZE, &before), 0);
    EXPECT_EQ(kind, error_kind::full);
    EXPECT_EQ(while_full, 0);
    EXPECT_TRUE(scratch->ready());
    add(*scratch, 2 << 20);
    EXPECT_EQ(number(*scratch, g_count), 1);
}

TEST(store_sqlite_disk, little_free_space_makes_it_read_only) {
    scratch_database scratch("sqlite");
    make_table(scratch);
    add(*scratch, 10);
    scratch.close();
    scratch.options().minimum_free_bytes = ~0ULL;
    EXPECT_EQ(kind_of([&] { add(*scratch, 10); }), error_kind::full);
    EXPECT_EQ(number(*scratch, g_count), 1);
    EXPECT_TRUE(scratch->ready());
}

TEST(store_sqlite_disk, an_error_at_any_write_loses_no_acknowledged_row_and_heals) {
    for (const int code : {SQLITE_IOERR_WRITE, SQLITE_FULL}) {
        faulty_disk disk;
        scratch_database scratch("sqlite");
        make_table(scratch);
        std::int64_t acknowledged = 0;
        int failed = 0;
        for (int good = 0; good < 40; ++good) {
            disk.fail_writes(code, good);
            for (int i = 0; i < 3; ++i) {
                const auto kind = kind_of([&] { add(*scratch, 9000); });
                kind ? ++failed : ++acknowledged;
                EXPECT_TRUE(!kind || *kind == error_kind::full);
            }
            ASSERT_EQ(number(*scratch, g_count), acknowledged) << "after " << good << " good writes";
            disk.fail_writes(SQLITE_OK);
            add(*scratch, 10);
            ++acknowledged;
        }
        EXPECT_GT(failed, 40);
        EXPECT_TRUE(scratch->ready());
        scratch.close();
        EXPECT_EQ(number(*scratch, g_count), acknowledged);
        std::string proof;
        store::read_now(*scratch, [&](connection& with) {
            with.query(unnamed("PRAGMA integrity_check"), {},
                       [&](const store::row& one) { proof += one.text(0); });
        });
        EXPECT_EQ(proof, "ok");
        scratch.close();
    }
}

TEST(store_sqlite_disk, an_error_in_a_group_fails_nobody_wrongly) {
    faulty_disk disk;
    scratch_database scratch("sqlite");
    make_table(scratch);
    std::vector<std::future<void>> outcomes;
    {
        held_job holding(*scratch);
        for (int i = 0; i < 10; ++i) {
            outcomes.push_back(start_write(*scratch, [](connection& with) {
                with.execute(unnamed("INSERT INTO kept (words) VALUES (?)"), {std::string(3000, 'y')});
            }));
        }
        disk.fail_writes(SQLITE_IOERR_WRITE, 6);
        // The held job writes nothing, so its own commit does not touch the disk.
        holding.release();
    }
    std::int64_t acknowledged = 0;
    for (auto& one : outcomes) {
        if (!kind_of(one)) ++acknowledged;
    }
    disk.fail_writes(SQLITE_OK);
    EXPECT_EQ(number(*scratch, g_count), acknowledged);
    EXPECT_LT(acknowledged, 10);
}

TEST(store_sqlite_disk, a_failed_sync_stops_everything) {
    faulty_disk disk;
    scratch_database scratch("sqlite");
    std::atomic<int> doubts{0};
    scratch.options().on_doubt = [&](const std::string& why) {
        EXPECT_FALSE(why.empty());
        ++doubts;
    };
    make_table(scratch);
    add(*scratch, 10);
    disk.fail_syncs(true);
    EXPECT_EQ(kind_of([&] { add(*scratch, 10); }), error_kind::full);
    disk.fail_syncs(false);
    EXPECT_EQ(doubts, 1);
    EXPECT_FALSE(scratch->ready());
    EXPECT_EQ(kind_of([&] { add(*scratch, 10); }), error_kind::other);
    EXPECT_EQ(kind_of([&] { number(*scratch, g_count); }), error_kind::other);
    EXPECT_EQ(doubts, 1);
    scratch.close();
}

TEST(store_sqlite_disk, every_commit_is_synced_and_a_group_is_synced_once) {
    faulty_disk disk;
    scratch_database scratch("sqlite");
    make_table(scratch);
    add(*scratch, 10);
    const int before = disk.syncs();
    for (int i = 0; i < 10; ++i) {
        add(*scratch, 10);
    }
    EXPECT_GE(disk.syncs() - before, 10);
    std::vector<std::future<void>> outcomes;
    held_job holding(*scratch);
    for (int i = 0; i < 50; ++i) {
        outcomes.push_back(start_write(*scratch, [](connection& with) {
            with.execute(unnamed("INSERT INTO kept (words) VALUES ('z')"), {});
        }));
    }
    const auto commits = scratch->figures().commits;
    holding.release();
    for (auto& one : outcomes) {
        one.get();
    }
    // The held job is a commit of its own, or was not counted yet.
    EXPECT_LE(scratch->figures().commits - commits, 2U);
    EXPECT_EQ(number(*scratch, g_count), 61);
    scratch.close();
}

TEST(store_sqlite_disk, the_log_stays_small_under_writes_and_is_cut_when_idle) {
    scratch_database scratch("sqlite");
    make_table(scratch);
    std::uintmax_t largest = 0;
    for (int i = 0; i < 300; ++i) {
        add(*scratch, 100000);
        largest = std::max(largest, size_of(log_of(scratch)));
    }
    EXPECT_GT(largest, 1U << 20);
    EXPECT_LT(largest, 12U << 20);
    EXPECT_TRUE(comes_true([&] { return size_of(log_of(scratch)) == 0; }));
    EXPECT_EQ(number(*scratch, g_count), 300);
}

TEST(store_sqlite_disk, a_log_that_a_slow_reader_let_grow_is_cut_when_he_is_gone) {
    scratch_database scratch("sqlite");
    make_table(scratch);
    store::read_now(*scratch, [&](connection& with) {
        with.query(unnamed(g_count), {}, [](const store::row&) {});
        for (int i = 0; i < 75; ++i) {
            add(*scratch, 1 << 20);
        }
        EXPECT_GT(size_of(log_of(scratch)), 64U << 20);
    });
    for (int i = 0; i < 10; ++i) {
        add(*scratch, 1 << 20);
    }
    EXPECT_LT(size_of(log_of(scratch)), 32U << 20);
    EXPECT_EQ(number(*scratch, g_count), 85);
}

} // namespace
} // namespace tavrok::test
