#include "domain/counts_scene.h"

namespace tavrok::test {

using namespace tavrok::domain; // NOLINT: the calls below are its

document_header counts_test::taking_header() const {
    document_header made;
    made.type = 1;
    made.operater = std::to_string(us.employee);
    return made;
}

document_header counts_test::transfer_header() const {
    auto made = taking_header();
    made.warehouse_out = us.warehouse;
    made.warehouse_in = us.second_warehouse;
    return made;
}

taking_line counts_test::counted(std::int64_t stock, std::int64_t sys, std::int64_t real,
                                 const std::string& token) {
    taking_line made;
    made.what = from(stock, real - sys, token);
    made.what.total = made.what.amount * made.what.price / 100 * 100;
    made.sys_amount = sys;
    made.real_amount = real;
    return made;
}

std::int64_t counts_test::put(const principal& who, std::int64_t draft, const taking_line& line) {
    return in->write([&](store::connection& with) { return add_taking_line(with, who, draft, line); });
}

std::string counts_test::close_sums(const principal& who, std::int64_t draft, std::int64_t difference,
                                    std::int64_t total, std::int64_t now) {
    return in->write([&](store::connection& with) {
        return close_taking(with, who, draft, document_sums{total, difference}, now);
    });
}

std::int64_t counts_test::counting(const principal& who, const std::vector<taking_line>& lines,
                                   std::int64_t now) {
    const auto draft = open(who, g_taking, taking_header(), now);
    for (const auto& one : lines)
        put(who, draft, one);
    return draft;
}

std::string counts_test::take_stock(const principal& who, const std::vector<taking_line>& lines,
                                    std::int64_t now) {
    std::int64_t difference = 0;
    std::int64_t total = 0;
    for (const auto& one : lines) {
        difference += one.what.amount;
        total += one.what.total;
    }
    return close_sums(who, counting(who, lines, now), difference, total, now);
}

document_line counts_test::moved(std::int64_t stock, std::int64_t amount, const std::string& token) {
    auto made = from(stock, amount, token);
    made.warehouse = 0;
    made.place = "Z-9";
    made.remark = "搬";
    return made;
}

bool counts_test::move(const principal& who, std::int64_t draft, const document_line& line,
                       std::int64_t now) {
    return in->write([&](store::connection& with) { return add_transfer_line(with, who, draft, line, now); });
}

std::int64_t counts_test::transfer(const std::vector<document_line>& lines) {
    const auto draft = open(g_transfer, transfer_header());
    for (const auto& one : lines)
        move(draft, one);
    return newest_document();
}

void counts_test::nothing_made(std::int64_t movements, std::int64_t drafts) {
    EXPECT_EQ(in->number("SELECT count(*) FROM document WHERE module > 2"), 0);
    EXPECT_EQ(in->number("SELECT count(*) FROM document_line l JOIN document d ON d.id = l.document WHERE "
                         "d.module > 2"),
              0);
    EXPECT_EQ(in->number("SELECT count(*) FROM document_number WHERE kind IN ('PD', 'DB')"), 0);
    EXPECT_EQ(in->number("SELECT count(*) FROM movement"), movements);
    EXPECT_EQ(in->number("SELECT count(*) FROM draft"), drafts);
    ledger_is_right();
}

std::int64_t counts_test::rows() {
    return in->number("SELECT count(*) FROM stock");
}

} // namespace tavrok::test
