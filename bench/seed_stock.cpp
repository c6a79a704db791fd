#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <exception>
#include <stdexcept>
#include <vector>

#include "domain/accounts.h"
#include "domain/document_numbers.h"
#include "domain/fold.h"
#include "store/database.h"
#include "store/records/companies.h"
#include "store/records/documents.h"
#include "support/names.h"
#include "support/service.h"

namespace {

using namespace tavrok;

constexpr std::int64_t lines_of_document = 100;
constexpr std::int64_t documents_at_once = 20;
constexpr std::int64_t year = 365 * 24 * 3600;
constexpr std::int64_t products_wanted = 100'000;

const store::statement new_document{
    "seed_document",
    "INSERT INTO document (company, module, type, sn, added_at, operater, writer, partner, dept, has_dept, "
    "total, remark, remark_folded) VALUES (?, 1, 1, ?, ?, ?, ?, ?, 0, 0, 0, '', '') RETURNING id"};
// Every thousandth row is a bulk batch, which many can claim at once. A document's products lie beside each
// other, so that one transaction does not touch the whole of an index.
const store::statement new_stock{
    "seed_stock",
    "INSERT INTO stock (company, product, warehouse, place, price, remark, added_at, on_hand, listed, "
    "place_folded, remark_folded) WITH RECURSIVE n (i) AS (SELECT ? UNION ALL SELECT i + 1 FROM n "
    "WHERE i < ?), batch (i, place, remark, folded) AS (SELECT i, "
    "CAST(1 + i / 1000 % 40 AS TEXT) || '-' || CAST(1 + i % 30 AS TEXT), "
    "CASE WHEN i % 1000 = 0 THEN ? ELSE '' END, CASE WHEN i % 1000 = 0 THEN ? ELSE '' END FROM n) "
    "SELECT ?, ? + (i + i / 100 * 7919) % ?, ?, place, 50 + i * 37 % 90000, remark, ?, "
    "CASE WHEN i % 1000 = 0 THEN 1000000 ELSE 1 + i * 31 % 5000 END, 1, place, folded FROM batch "
    "RETURNING id"};
const store::statement new_lines{
    "seed_lines",
    "INSERT INTO document_line (company, document, product, price, amount, total, warehouse, place, remark, "
    "stock) SELECT company, ?, product, price, on_hand, on_hand * price, warehouse, place, remark, id "
    "FROM stock WHERE company = ? AND id BETWEEN ? AND ? ORDER BY id"};
const store::statement new_movements{
    "seed_movements",
    "INSERT INTO movement (company, stock, amount, value, document, line, user_id, moved_at) SELECT company, "
    "stock, amount, total, document, id, ?, ? FROM document_line WHERE company = ? AND document = ? "
    "ORDER BY id"};
const store::statement sum_up{"seed_total",
                              "UPDATE document SET total = (SELECT sum(total) FROM document_line l WHERE "
                              "l.company = ? AND l.document = ?) WHERE company = ? AND id = ?"};

/** The demo company, and what its documents name. */
struct seeding {
    std::int64_t company{0};
    std::int64_t user{0};
    std::int64_t employee{0};
    std::int64_t first_product{0}; /**< from here on every id is one of its products */
    std::vector<std::int64_t> warehouses;
    std::vector<std::int64_t> suppliers;
};

std::vector<std::int64_t> numbers(store::connection& with, const std::string& sql,
                                  std::initializer_list<store::value> bound) {
    std::vector<std::int64_t> found;
    with.query({"", sql}, bound, [&](const store::row& one) { found.push_back(one.integer(0)); });
    if (found.empty()) throw std::runtime_error("run seed_company first: nothing for " + sql);
    return found;
}

seeding look_up(store::connection& with) {
    const auto user = domain::find_user(with, bench::demo_name);
    if (!user) throw std::runtime_error("no demo account; run tavrok_wmsd demo first");
    seeding to;
    to.company = user->company;
    to.user = user->user;
    const store::value company = to.company;
    const std::string live = " WHERE company = ? AND state = 1 ORDER BY id";
    to.employee = numbers(with, "SELECT id FROM employee" + live + " LIMIT 1", {company}).front();
    to.warehouses = numbers(with, "SELECT id FROM warehouse" + live, {company});
    to.suppliers = numbers(
        with, "SELECT id FROM partner WHERE company = ? AND state = 1 AND type = 1 ORDER BY id LIMIT 200",
        {company});
    const auto last = numbers(with, "SELECT id FROM product" + live + " DESC LIMIT 1", {company}).front();
    to.first_product = last - products_wanted + 1;
    const auto there =
        numbers(with, "SELECT count(*) FROM product WHERE company = ? AND state = 1 AND id BETWEEN ? AND ?",
                {company, to.first_product, last});
    if (there.front() != products_wanted) throw std::runtime_error("too few products in a row");
    return to;
}

/** A delivery of a hundred batches to one warehouse; `number` counts the documents from 0. */
void add_document(store::connection& with, const seeding& to, std::int64_t number, std::int64_t when) {
    const auto place = static_cast<std::size_t>(number);
    const auto day = domain::day_of(when);
    const auto sn =
        domain::document_number("CG", day, store::next_document_number(with, to.company, "CG", day));
    std::int64_t document = 0;
    with.query(new_document,
               {to.company, sn, when, to.employee, to.user, to.suppliers[place % to.suppliers.size()]},
               [&](const store::row& one) { document = one.integer(0); });
    const std::string remark = bench::bulk_remark;
    const std::int64_t first = number * lines_of_document;
    std::vector<std::int64_t> rows;
    with.query(new_stock,
               {first, first + lines_of_document - 1, remark, domain::fold(remark), to.company,
                to.first_product, products_wanted, to.warehouses[place % to.warehouses.size()], when},
               [&](const store::row& one) { rows.push_back(one.integer(0)); });
    const auto [least, most] = std::minmax_element(rows.begin(), rows.end());
    with.execute(new_lines, {document, to.company, *least, *most});
    with.execute(new_movements, {to.user, when, to.company, document});
    with.execute(sum_up, {to.company, document, to.company, document});
}

} // namespace

/** seed_stock DATABASE ROWS: gives the demo company that many stock rows, over one year: each with the line
 * that brought it in, and its movement, a hundred lines to a document. Straight into the tables, as the rules
 * ask some twenty statements for each row. */
int main(int count, char** words) try {
    if (count != 3) {
        std::fputs("usage: seed_stock DATABASE ROWS\n", stderr);
        return 2;
    }
    store::options how;
    how.location = words[1];
    const auto database = store::open(how);
    seeding to;
    store::read_now(*database, [&](store::connection& with) { to = look_up(with); });
    const std::int64_t documents = std::strtoll(words[2], nullptr, 10) / lines_of_document;
    const std::int64_t now = std::time(nullptr);
    for (std::int64_t begin = 0; begin < documents; begin += documents_at_once) {
        const std::int64_t end = std::min(documents, begin + documents_at_once);
        store::write_now(*database, [&](store::connection& with) {
            for (std::int64_t number = begin; number < end; ++number)
                add_document(with, to, number, now - year + number * year / documents);
            store::bump_data_version(with, to.company);
        });
    }
    database->stop();
    return 0;
} catch (const std::exception& failed) {
    std::fprintf(stderr, "seed_stock: %s\n", failed.what());
    return 1;
}
