#include "domain/ledger_damage.h"

#include <sqlite3.h>

#include <algorithm>

namespace tavrok::test {

namespace {

struct undo {};

constexpr const char* g_tables[] = {"stock", "document", "document_line", "movement",
                                    "claim", "draft",    "draft_line",    "document_number"};

} // namespace

void ledger_damage::SetUp() {
    on_engine::SetUp();
    if (IsSkipped()) return;
    in = std::make_unique<scene>(GetParam());
    of = in->write([](store::connection& with) { return make_ledger_company(with, "甲"); });
    const auto late = in->log_in(of.deputy, g_now - 9 * 3600);
    boss = in->log_in(of.boss);
    in->write([&](store::connection& with) { fill(with, late); });
}

domain::document_line ledger_damage::goods(std::size_t product, std::int64_t amount, std::int64_t price,
                                           std::int64_t stock, const std::string& token) const {
    domain::document_line line;
    line.product = of.products.at(product);
    line.warehouse = of.warehouses.front();
    line.amount = amount;
    line.price = price;
    line.place = "A-1 架";
    line.remark = "Ab 注";
    line.stock = stock;
    line.token = token;
    return line;
}

void ledger_damage::fill(store::connection& with, const domain::principal& late) {
    using enum domain::document_module;
    write(with, inbound, 1, {goods(0, 10, 250), goods(1, 5, 100)});
    domain::remove_document(with, boss, inbound, write(with, inbound, 2, {goods(2, 7, 33)}), g_now);
    const auto token = domain::take_claim(with, boss, {domain::claim_use::outbound, 1001, 3}, g_now);
    write(with, outbound, 2, {goods(0, 4, 999, 1001, token)});
    domain::remove_document(with, boss, outbound, write(with, outbound, 6, {goods(1, 2, 5, 1002)}), g_now);
    domain::take_claim(with, boss, {domain::claim_use::transfer, 1001, 2}, g_now);
    domain::take_claim(with, boss, {domain::claim_use::stocktaking, 1002, 0}, g_now);
    domain::give_back_claim(
        with, boss, domain::take_claim(with, boss, {domain::claim_use::outbound, 1001, 1}, g_now), g_now);
    domain::take_claim(with, late, {domain::claim_use::outbound, 1001, 1}, g_now);
    domain::sweep(with, g_now);
    const auto draft = domain::open_draft(with, boss, inbound, header_for(of, inbound, 1), g_now).id;
    auto line = goods(0, 1, 1);
    line.total = 1;
    domain::add_line(with, boss, inbound, draft, line);
}
std::int64_t ledger_damage::write(store::connection& with, domain::document_module module, std::int64_t type,
                                  const std::vector<domain::document_line>& lines) {
    const auto id = write_document(with, of, boss, module, type, lines);
    with.execute({"test_remark", "UPDATE document SET remark = 'Ab', remark_folded = 'ab' WHERE id = ?"},
                 {id});
    return id;
}

void ledger_damage::strip() {
    std::vector<std::string> steps;
    for (const std::string table : g_tables) {
        steps.push_back("CREATE TABLE bare AS SELECT * FROM " + table);
        steps.push_back("DROP TABLE " + table + (GetParam() == "sqlite" ? "" : " CASCADE"));
        steps.push_back("ALTER TABLE bare RENAME TO " + table);
    }
    if (GetParam() != "sqlite") {
        in->write([&](store::connection& with) {
            for (const auto& one : steps)
                with.execute({"", one}, {});
        });
        return;
    }
    in->database().close(); // foreign keys are looked at by every connection of the store
    sqlite3* raw = nullptr;
    ASSERT_EQ(sqlite3_open(in->database().options().location.c_str(), &raw), SQLITE_OK);
    for (const auto& one : steps)
        EXPECT_EQ(sqlite3_exec(raw, one.c_str(), nullptr, nullptr, nullptr), SQLITE_OK) << one;
    sqlite3_close(raw);
}

std::vector<domain::finding> ledger_damage::proof_with(const std::vector<std::string>& planted) {
    std::vector<domain::finding> found;
    try {
        in->write([&](store::connection& with) {
            for (const auto& one : planted)
                EXPECT_GT(with.execute({"", one}, {}), 0) << one;
            found = domain::check(with);
            throw undo{};
        });
    } catch (const undo&) {
    }
    return found;
}

void ledger_damage::expect_found(const std::vector<damage>& all) {
    strip();
    ASSERT_TRUE(proof_with({}).empty());
    for (const auto& one : all) {
        const auto found = proof_with(one.sql);
        std::string told;
        for (const auto& each : found)
            told += each.rule + ": " + each.text + '\n';
        EXPECT_EQ(found.size(), one.findings) << one.sql.front() << '\n' << told;
        EXPECT_TRUE(std::any_of(found.begin(), found.end(),
                                [&](const domain::finding& each) {
                                    return each.rule == one.rule &&
                                           each.text.find(one.words) != std::string::npos;
                                }))
            << one.sql.front() << '\n'
            << told;
    }
}

} // namespace tavrok::test
