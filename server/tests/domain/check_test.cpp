#include "domain/check.h"

#include <sqlite3.h>

#include <algorithm>

#include "domain/staff_scene.h"

namespace tavrok::domain {
namespace {

using test::g_now;
using test::some_partner;

std::vector<finding> proof(test::scene& in) {
    return in.read([](store::connection& with) { return check(with); });
}

void fill(test::scene& in) {
    const auto boss = in.log_in(in.boss);
    for (const int type : {1, 1, 2, 3}) {
        in.write(
            [&](store::connection& with) { add_partner(with, boss, some_partner(type, "Ab 甲"), g_now); });
    }
    in.write([&](store::connection& with) { remove_partner(with, boss, 1002, g_now); });
    in.write([&](store::connection& with) { grant_row(with, in.hand, 400, g_now); });
    in.write([&](store::connection& with) {
        const auto keeper = add_employee(with, boss, test::full_employee("Ab-1"), g_now).id;
        add_employee(with, boss, test::some_employee("Ab-2"), g_now);
        remove_employee(with, boss, add_employee(with, boss, test::some_employee("c"), g_now).id, g_now);
        add_warehouse(with, boss, test::full_warehouse("Ab 仓"), std::to_string(keeper), g_now);
        with.execute({"test_series", "UPDATE number_series SET last = 2000 WHERE name = 'employee'"}, {});
    });
}

class proofs : public test::on_engine {};
ON_EVERY_ENGINE(proofs);

TEST_P(proofs, a_sound_database_has_no_findings) {
    test::scene in(GetParam());
    EXPECT_TRUE(proof(in).empty());
    fill(in);
    for (const auto& one : proof(in))
        ADD_FAILURE() << one.text;
}

TEST_P(proofs, say_the_same_part_by_part) {
    test::scene in(GetParam());
    fill(in);
    in.write([&](store::connection& with) {
        with.execute({"", "UPDATE partner_counter SET live = live + 1 WHERE type = 2"}, {});
        with.execute({"", "UPDATE partner SET name_folded = 'x' WHERE id = 1003"}, {});
    });
    std::vector<finding> parts;
    for (const auto one : domain::proofs())
        in.read([&](store::connection& with) { one(with, parts); });
    const auto whole = proof(in);
    ASSERT_EQ(whole.size(), 2U);
    ASSERT_EQ(parts.size(), whole.size());
    for (std::size_t i = 0; i < whole.size(); ++i)
        EXPECT_EQ(parts[i].text, whole[i].text);
}

struct damage {
    const char* name;
    const char* sql;
    const char* rule;
    const char* words;
};

/** Damage that no constraint forbids. */
TEST_P(proofs, find_what_the_constraints_let_through) {
    test::scene in(GetParam());
    fill(in);
    const damage all[] = {
        {"", "UPDATE partner_counter SET live = live + 1 WHERE type = 2", "counter", "type 2"},
        {"", "UPDATE partner SET name_folded = 'x' WHERE id = 1003", "folded", "partner 1003"},
        {"", "UPDATE partner SET remark = 'x' WHERE id = 1002", "folded", "partner 1002"},
        {"", "UPDATE app_user SET username_folded = 'HAND' WHERE username = 'hand'", "folded", "user 1002"},
        {"", "UPDATE menu SET action = 'gone' WHERE action = 'stock_allot'", "menu", "stock_allot"},
        {"", "INSERT INTO audit (company, user_id, noted_at, what, object_id) VALUES (1001, 4711, 1, 'x', 1)",
         "reference", "app_user"},
        {"", "UPDATE list_counter SET live = live + 1 WHERE list = 'employee'", "counter", "list employee"},
        {"", "DELETE FROM list_counter WHERE list = 'warehouse'", "counter", "list warehouse"},
        {"", "UPDATE employee SET name_folded = 'x' WHERE id = 1001", "folded", "employee 1001"},
        {"", "UPDATE employee SET jobnum = 'x' WHERE id = 1002", "folded", "employee 1002"},
        {"", "UPDATE warehouse SET phone_folded = 'x'", "folded", "warehouse 1001"},
        {"", "UPDATE employee SET id = 1024 WHERE id = 1002", "id", "employee 1024"},
    };
    std::size_t expected = 0;
    for (const auto& one : all) {
        in.write([&](store::connection& with) { with.execute({one.sql, one.sql}, {}); });
        const auto found = proof(in);
        EXPECT_EQ(found.size(), ++expected) << one.sql << (found.empty() ? std::string() : found.back().text);
        EXPECT_TRUE(std::any_of(found.begin(), found.end(), [&](const finding& each) {
            return each.rule == one.rule && each.text.find(one.words) != std::string::npos;
        })) << one.sql;
    }
}

/** Damage that only a broken or tampered file can have: planted behind the back of the constraints. */
class tampered : public testing::TestWithParam<damage> {};

TEST_P(tampered, is_found) {
    test::scene in("sqlite");
    fill(in);
    in.database().close();
    sqlite3* raw = nullptr;
    ASSERT_EQ(sqlite3_open(in.database().options().location.c_str(), &raw), SQLITE_OK);
    const std::string sql =
        std::string("PRAGMA foreign_keys = OFF; PRAGMA ignore_check_constraints = ON; ") + GetParam().sql;
    char* message = nullptr;
    EXPECT_EQ(sqlite3_exec(raw, sql.c_str(), nullptr, nullptr, &message), SQLITE_OK) << message;
    EXPECT_GT(sqlite3_changes(raw), 0);
    sqlite3_close(raw);
    const auto found = proof(in);
    ASSERT_FALSE(found.empty());
    for (const auto& one : found)
        EXPECT_EQ(one.rule, GetParam().rule) << one.text;
    EXPECT_TRUE(std::any_of(found.begin(), found.end(), [](const finding& one) {
        return one.text.find(GetParam().words) != std::string::npos;
    })) << found.front().text;
}

INSTANTIATE_TEST_SUITE_P(
    files, tampered,
    testing::Values(
        damage{"session_user", "UPDATE session SET user_id = 4711", "reference", "session"},
        damage{"relogin_user", "INSERT INTO relogin_secret VALUES (1001, 4711, hex(zeroblob(32)), 1, 2)",
               "reference", "relogin_secret"},
        damage{"repeat_session",
               "INSERT INTO repeat_record VALUES (1001, 1, 4711, 'a', hex(zeroblob(32)), 'x', 1, 0)",
               "reference", "repeat_record"},
        damage{"user_company",
               "INSERT INTO app_user ("
               "company, id, username, username_folded, realname, password_hash, type, state, mobile, email, "
               "email_folded, last_login_at, registered_at, realname_folded)"
               " SELECT 4711, 5000, 'w', 'w', realname, password_hash, type, state, '', '', '', 0, 0, "
               "realname_folded FROM app_user WHERE id = 1001",
               "reference", "app_user 5000"},
        damage{"grant_user", "UPDATE user_grant SET user_id = 4711", "reference", "user_grant 4711"},
        damage{"grant_row", "UPDATE user_grant SET menu_id = 4711", "reference", "menu"},
        damage{"partner_user", "UPDATE partner SET added_by = 4711 WHERE id = 1001", "reference",
               "partner 1001"},
        damage{"partner_erased", "DELETE FROM partner WHERE id = 1004", "counter", "type 3"},
        damage{"counter_gone", "DELETE FROM partner_counter WHERE type = 1", "counter", "nothing"},
        damage{"counter_of_nobody", "INSERT INTO partner_counter VALUES (4711, 1, 0)", "reference",
               "company 4711"},
        damage{"employee_company", "UPDATE employee SET company = 4711 WHERE id = 1003", "reference",
               "company 4711, employee 1003"},
        damage{"employee_user", "UPDATE employee SET added_by = 4711 WHERE id = 1002", "reference",
               "employee 1002 names a row of app_user"},
        damage{"employee_erased", "DELETE FROM employee WHERE id = 1002", "counter", "list employee"},
        damage{"employee_idnum", "UPDATE employee SET idnum_folded = '990117' WHERE id = 1001", "folded",
               "employee 1001"},
        damage{"warehouse_keeper", "UPDATE warehouse SET keeper = 4711", "reference",
               "warehouse 1001 names a row of employee"},
        damage{"warehouse_user", "UPDATE warehouse SET added_by = 4711", "reference",
               "warehouse 1001 names a row of app_user"},
        damage{"warehouse_name", "UPDATE warehouse SET name = 'x'", "folded", "warehouse 1001"},
        damage{"warehouse_erased", "DELETE FROM warehouse", "counter", "list warehouse"},
        damage{"warehouse_7", "UPDATE warehouse SET id = 7", "id", "warehouse"},
        damage{"employee_7", "UPDATE employee SET id = 7 WHERE id = 1002", "id", "employee"},
        damage{"menu_hanging", "UPDATE menu SET parent = 4711 WHERE id = 40301", "menu", "below no row"},
        damage{"menu_page_gone", "DELETE FROM menu WHERE id = 501 OR id = 50101", "menu", "user"},
        damage{"menu_7", "UPDATE menu SET id = 7 WHERE id = 50101", "id", "menu"},
        damage{"partner_7", "UPDATE partner SET id = 7 WHERE id = 1002", "id", "partner"}),
    [](const auto& one) { return std::string(one.param.name); });

} // namespace
} // namespace tavrok::domain
