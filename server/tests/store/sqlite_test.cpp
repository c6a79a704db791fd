#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <filesystem>

#include "store/store_tools.h"

namespace tavrok::test {
namespace {

using store::connection;
using store::error_kind;

TEST(store_sqlite, a_second_handle_is_kept_out) {
    scratch_database scratch("sqlite");
    scratch.get();
    EXPECT_EQ(kind_of([&] { store::open(scratch.options()); }), error_kind::busy);
    auto linked = scratch.options();
    linked.location = scratch.folder() + "/link.db";
    std::filesystem::create_symlink(scratch.options().location, linked.location);
    EXPECT_EQ(kind_of([&] { store::open(linked); }), error_kind::busy);
    scratch.close();
    EXPECT_NO_THROW(store::open(linked));
}

TEST(store_sqlite, a_second_process_is_kept_out_until_the_first_ends) {
    scratch_database scratch("sqlite");
    const auto try_to_open = [&] {
        const pid_t child = ::fork();
        if (child == 0) {
            const auto kind = kind_of([&] { store::open(scratch.options()); });
            ::_exit(!kind ? 0 : *kind == error_kind::busy ? 3 : 4);
        }
        int status = 0;
        ::waitpid(child, &status, 0);
        return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    };
    EXPECT_EQ(try_to_open(), 0);
    scratch.get();
    EXPECT_EQ(try_to_open(), 3);
    scratch.close();
    EXPECT_EQ(try_to_open(), 0);
}

TEST(store_sqlite, only_the_owner_can_read_the_files) {
    scratch_database scratch("sqlite");
    write(*scratch, "CREATE TABLE kept (id INTEGER) STRICT");
    int files = 0;
    for (const auto& one : std::filesystem::directory_iterator(scratch.folder())) {
        struct stat facts {};
        ASSERT_EQ(::stat(one.path().c_str(), &facts), 0);
        EXPECT_EQ(facts.st_mode & 0777U, 0600U) << one.path();
        ++files;
    }
    EXPECT_EQ(files, 4); // database, log, index of the log, lock
}

TEST(store_sqlite, a_folder_that_is_not_there_is_told) {
    scratch_database scratch("sqlite");
    scratch.options().location = scratch.folder() + "/nowhere/x.db";
    EXPECT_EQ(kind_of([&] { scratch.get(); }), error_kind::other);
}

TEST(store_sqlite, a_file_that_is_no_database_is_not_opened) {
    scratch_database scratch("sqlite");
    {
        std::unique_ptr<FILE, int (*)(FILE*)> file(::fopen(scratch.options().location.c_str(), "w"),
                                                   &::fclose);
        for (int i = 0; i < 1000; ++i) {
            std::fputs("this is a letter, not a database\n", file.get());
        }
    }
    EXPECT_EQ(kind_of([&] { scratch.get(); }), error_kind::other);
}

std::string pragma(connection& with, const std::string& name) {
    std::string text;
    with.query(unnamed("SELECT CAST(" + name + " AS TEXT) FROM pragma_" + name), {},
               [&](const store::row& one) { text = one.text(0); });
    return text;
}

TEST(store_sqlite, the_settings_that_durability_rests_on_are_made) {
    scratch_database scratch("sqlite");
    store::write_now(*scratch, [](connection& with) {
        EXPECT_EQ(pragma(with, "journal_mode"), "wal");
        EXPECT_EQ(pragma(with, "synchronous"), "2");
        EXPECT_EQ(pragma(with, "foreign_keys"), "1");
        with.query(unnamed("PRAGMA wal_autocheckpoint"), {},
                   [](const store::row& one) { EXPECT_EQ(one.integer(0), 0); });
    });
    store::read_now(*scratch, [](connection& with) {
        EXPECT_EQ(pragma(with, "query_only"), "1");
        with.query(unnamed("PRAGMA wal_autocheckpoint"), {},
                   [](const store::row& one) { EXPECT_EQ(one.integer(0), 0); });
    });
}

TEST(store_sqlite, a_job_that_ends_the_transaction_fails_alone) {
    scratch_database scratch("sqlite");
    define(scratch, "sqlite", "CREATE TABLE kept (id {id}) {strict}");
    std::vector<std::future<void>> outcomes;
    {
        held_job holding(*scratch);
        for (const std::string sql :
             {"INSERT INTO kept VALUES (1)", "ROLLBACK", "INSERT INTO kept VALUES (2)"}) {
            outcomes.push_back(
                start_write(*scratch, [sql](connection& with) { with.execute(unnamed(sql), {}); }));
        }
    }
    EXPECT_EQ(kind_of(outcomes[0]), std::nullopt);
    EXPECT_EQ(kind_of(outcomes[1]), error_kind::other);
    EXPECT_EQ(kind_of(outcomes[2]), std::nullopt);
    EXPECT_EQ(number(*scratch, "SELECT sum(id) FROM kept"), 3);
}

} // namespace
} // namespace tavrok::test
