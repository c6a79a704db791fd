#include "domain/upgrade.h"

#include "domain/check.h"
#include "domain/scene.h"
#include "store/meter.h"
#include "store/migrations.h"
#include "store/postgresql/connection.h"
#include "store/sqlite/connection.h"
#include "store/sqlite/files.h"

namespace tavrok::domain {
namespace {

using test::g_now;

/** A database with the first three steps of the schema, filled, and opened by this program. */
class upgrade : public test::on_engine {
protected:
    void SetUp() override {
        on_engine::SetUp();
        if (IsSkipped()) return;
        m_old = std::make_unique<test::scratch_database>(GetParam());
        const auto session = bare();
        store::migrate(*session, std::span(store::known_migrations()).first(3), 100);
        session->in_transaction([](store::connection& with) {
            for (const auto* sql :
                 {"INSERT INTO company (id, name, is_operator, created_at) VALUES (1001, 'ÄRZTE Группа', 1, "
                  "1), "
                  "(1002, 'ärzte группа', 0, 1), (1003, 'Ωmega', 0, 1)",
                  "INSERT INTO app_user (company, id, username, username_folded, realname, password_hash, "
                  "type, state, mobile, email, email_folded, registered_at) VALUES "
                  "(1001, 1001, 'boss', 'boss', 'ÉMILE', 'h', 1, 1, '', '', '', 1), "
                  "(1001, 1002, 'hand', 'hand', 'ИВАН', 'h', 2, 1, '', '', '', 1), "
                  "(1002, 1003, 'two', 'two', '', 'h', 1, 1, '', '', '', 1), "
                  "(1003, 1004, 'three', 'three', 'plain', 'h', 1, 1, '', '', '', 1)",
                  "INSERT INTO user_grant (company, user_id, menu_id) VALUES (1001, 1002, 400), "
                  "(1001, 1002, 403), (1001, 1002, 40301)",
                  "INSERT INTO partner_counter (company, type, live) VALUES (1001, 1, 0), (1001, 2, 0), "
                  "(1001, 3, 0), (1002, 1, 0), (1002, 2, 0), (1002, 3, 0), (1003, 1, 0), (1003, 2, 0), "
                  "(1003, 3, 0)"})
                with.execute({"", sql}, {});
            with.execute({"",
                          "INSERT INTO session (company, user_id, token_hash, peer, created_at, "
                          "last_used_at) VALUES (1001, 1002, ?, 'p', ?, ?)"},
                         {token_hash("token"), g_now, g_now});
        });
    }
    template <typename what_t>
    auto read(what_t what) {
        decltype(what(std::declval<store::connection&>())) made{};
        store::read_now(**m_old, [&](store::connection& with) { made = what(with); });
        return made;
    }
    template <typename what_t>
    auto write(what_t what) {
        decltype(what(std::declval<store::connection&>())) made{};
        store::write_now(**m_old, [&](store::connection& with) { made = what(with); });
        return made;
    }
    std::string text(const std::string& sql) {
        return read([&](store::connection& with) {
            std::string found;
            with.query({"", sql}, {}, [&](const store::row& one) { found = one.text(0); });
            return found;
        });
    }

private:
    std::unique_ptr<store::schema_session> bare() {
        auto figures = std::make_shared<store::meter>();
        if (GetParam() != "sqlite") {
            return std::make_unique<store::pg_connection>(m_old->options(), figures);
        }
        const auto& path = m_old->options().location;
        store::create_private_file(path);
        return std::make_unique<store::sqlite_connection>(store::sqlite_connection::setup{
            path, store::sqlite_connection::access::write, std::chrono::milliseconds(100), figures, {}});
    }
    std::unique_ptr<test::scratch_database> m_old;
};
ON_EVERY_ENGINE(upgrade);

TEST_P(upgrade, folds_the_names_of_old_rows_as_the_service_does) {
    EXPECT_TRUE(read(folds_missing));
    EXPECT_EQ(write(complete_folds), std::vector<std::int64_t>{1002});
    EXPECT_EQ(text("SELECT name_folded FROM company WHERE id = 1001"), "ärzte группа");
    EXPECT_EQ(text("SELECT name_folded FROM company WHERE id = 1002"), "") << "the older one has the name";
    EXPECT_EQ(text("SELECT name_folded FROM company WHERE id = 1003"), "ωmega");
    EXPECT_EQ(text("SELECT realname_folded FROM app_user WHERE id = 1001"), "émile");
    EXPECT_EQ(text("SELECT realname_folded FROM app_user WHERE id = 1002"), "иван");
    EXPECT_EQ(text("SELECT realname_folded FROM app_user WHERE id = 1003"), "");
}

TEST_P(upgrade, leaves_a_database_in_which_everything_but_the_shared_name_holds) {
    write(complete_folds);
    auto found = read(check);
    ASSERT_EQ(found.size(), 1U);
    EXPECT_EQ(found.front().rule, "folded");
    EXPECT_EQ(found.front().text, "company 1002 bears the name of an older one");
    write([](store::connection& with) {
        return with.execute({"", "UPDATE company SET name = 'another' WHERE id = 1002"}, {});
    });
    EXPECT_TRUE(write(complete_folds).empty());
    for (const auto& one : read(check))
        ADD_FAILURE() << one.text;
    EXPECT_FALSE(read(folds_missing)) << "nothing is left to do";
}

TEST_P(upgrade, keeps_grants_and_sessions) {
    write(complete_folds);
    const auto who = read([](store::connection& with) { return resume(with, "token", g_now); });
    ASSERT_TRUE(who);
    EXPECT_EQ(who->user, 1002);
    EXPECT_EQ(who->menu_rows, (std::unordered_set<std::int64_t>{400, 403, 40301}));
    EXPECT_TRUE(who->has("company_supplier", "search"));
}

} // namespace
} // namespace tavrok::domain
