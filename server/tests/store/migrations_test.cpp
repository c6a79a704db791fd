#include "store/migrations.h"

#include "store/meter.h"
#include "store/postgresql/connection.h"
#include "store/sqlite/connection.h"
#include "store/sqlite/files.h"
#include "store/store_tools.h"

namespace tavrok::test {
namespace {

using store::error_kind;
using store::migration;

class store_migrations : public on_each_engine {
protected:
    /** A bare connection to a database of its own, with nothing in it. */
    std::unique_ptr<store::schema_session> bare() {
        auto figures = std::make_shared<store::meter>();
        if (GetParam() != "sqlite") {
            write(db(), "DROP TABLE schema_version");
            return std::make_unique<store::pg_connection>(scratch().options(), figures);
        }
        const auto path = scratch().folder() + "/bare.db";
        store::create_private_file(path);
        return std::make_unique<store::sqlite_connection>(store::sqlite_connection::setup{
            path, store::sqlite_connection::access::write, std::chrono::milliseconds(100), figures, {}});
    }
    std::string steps(store::schema_session& session) {
        std::string text;
        session.in_transaction([&](store::connection& with) {
            with.query(unnamed("SELECT number, name, applied_at FROM schema_version ORDER BY number"), {},
                       [&](const store::row& one) {
                           text += std::to_string(one.integer(0)) + " " + std::string(one.text(1)) + " " +
                                   std::to_string(one.integer(2)) + ";";
                       });
        });
        return text;
    }
    void note_step(std::int64_t step, const std::string& name) {
        write(db(), "INSERT INTO schema_version (number, name, applied_at) VALUES (?, ?, 0)", {step, name});
        scratch().close();
    }
};
ON_EACH_ENGINE(store_migrations);

const migration g_first{1, "first",
                        "CREATE TABLE zoo (id {id}, name {text} NOT NULL) {strict};\n"
                        "-- sqlite: INSERT INTO zoo (name) VALUES ('s; ?');\n"
                        "-- postgresql: INSERT INTO zoo (name) VALUES ('p; ?');\n"};
const migration g_second{2, "second", "ALTER TABLE zoo ADD COLUMN age {int} NOT NULL DEFAULT 3;"};
const migration g_broken{2, "second", "ALTER TABLE zoo ADD COLUMN age {int};\nCREATE TABLE zoo (id {id});"};

TEST_P(store_migrations, steps_are_taken_once_and_noted_with_their_time) {
    const auto session = bare();
    store::migrate(*session, std::vector<migration>{g_first}, 100);
    store::migrate(*session, std::vector<migration>{g_first, g_second}, 200);
    store::migrate(*session, std::vector<migration>{g_first, g_second}, 300);
    EXPECT_EQ(steps(*session), "1 first 100;2 second 200;");
    std::string animals;
    session->in_transaction([&](store::connection& with) {
        with.query(unnamed("SELECT id, name, age FROM zoo"), {}, [&](const store::row& one) {
            animals +=
                std::to_string(one.integer(0)) + std::string(one.text(1)) + std::to_string(one.integer(2));
        });
    });
    EXPECT_EQ(animals, GetParam() == "sqlite" ? "1s; ?3" : "1p; ?3");
}

TEST_P(store_migrations, a_step_that_fails_leaves_nothing) {
    const auto session = bare();
    const std::vector<migration> bad{g_first, g_broken};
    EXPECT_EQ(kind_of([&] { store::migrate(*session, bad, 100); }), error_kind::other);
    EXPECT_EQ(steps(*session), "1 first 100;");
    store::migrate(*session, std::vector<migration>{g_first, g_second}, 200);
    EXPECT_EQ(steps(*session), "1 first 100;2 second 200;");
}

TEST_P(store_migrations, a_newer_or_a_different_schema_is_refused) {
    const auto session = bare();
    store::migrate(*session, std::vector<migration>{g_first, g_second}, 100);
    EXPECT_EQ(kind_of([&] { store::migrate(*session, std::vector<migration>{g_first}, 200); }),
              error_kind::other);
    const std::vector<migration> other{g_first, {2, "elsewhere", "SELECT 1;"}};
    EXPECT_EQ(kind_of([&] { store::migrate(*session, other, 200); }), error_kind::other);
    const std::vector<migration> gap{g_first, {3, "third", "SELECT 1;"}};
    EXPECT_EQ(kind_of([&] { store::migrate(*session, gap, 200); }), error_kind::other);
    EXPECT_EQ(steps(*session), "1 first 100;2 second 100;");
}

TEST_P(store_migrations, a_database_opens_empty_and_again_without_a_change) {
    const auto known = static_cast<std::int64_t>(store::known_migrations().size());
    EXPECT_EQ(number(db(), "SELECT count(*) FROM schema_version"), known);
    write(db(), "UPDATE schema_version SET applied_at = 1");
    scratch().close();
    EXPECT_EQ(number(db(), "SELECT count(*) FROM schema_version"), known);
    EXPECT_EQ(number(db(), "SELECT count(*) FROM schema_version WHERE applied_at <> 1"), 0);
}

TEST_P(store_migrations, a_database_from_the_future_is_not_opened) {
    note_step(9999, "from_the_future");
    EXPECT_EQ(kind_of([&] { scratch().get(); }), error_kind::other);
}

} // namespace
} // namespace tavrok::test
