#include "domain/demo_stock_control.h"

#include <algorithm>
#include <array>

#include "domain/demo_words.h"
#include "domain/documents.h"
#include "domain/refused.h"
#include "domain/stock.h"

namespace tavrok::domain {

namespace {

constexpr auto g_shelves = std::to_array<const char*>({"A-", "B-", "C-", "T-"});
constexpr std::int64_t g_hundredths = 100;

/** What a shelf had more than the books, count after count. */
constexpr std::array<std::int64_t, 11> g_off{0, -1, 0, 2, 0, -3, 1, 0, -2, 0, -1};

const words g_count_remarks{"月度盘点", "", "贵重物品抽盘，两人复核", "例行盘点，账物有出入", "换班交接盘点"};
const words g_missing{"少货，原因待查", "破损已清出", "疑似出库漏记"};
const words g_surplus{"多出，上次漏记", "混放在邻架，已归位"};
const words g_carry_remarks{"补前场库存", "", "腾出货位", "原库位已满，移至备库", "按领导要求集中存放", ""};

document_header header_of(const principal& who, const demo_premises& of, std::size_t number,
                          const char* remark) {
    document_header made;
    made.type = 1;
    made.operater = std::to_string(of.employees[number * 5 % of.employees.size()]);
    made.writer = std::to_string(who.user);
    made.remark = remark;
    return made;
}

/** Some rows of a warehouse that have something free. */
std::vector<stock_item> some_rows(store::connection& with, const principal& who, std::int64_t warehouse,
                                  std::size_t wanted, std::size_t number) {
    count_cache counts;
    auto all = list_stock(with, who, {.warehouse = warehouse}, {1, 200}, counts).list;
    std::erase_if(all, [](const stock_item& one) { return one.amount == 0; });
    if (all.empty()) throw refused("the demo company has an empty warehouse");
    std::rotate(all.begin(), all.begin() + static_cast<std::ptrdiff_t>(number * 3 % all.size()), all.end());
    all.resize(std::min(all.size(), wanted));
    return all;
}

document_line line_of(const stock_item& row) {
    document_line made;
    made.product = row.product;
    made.price = row.price;
    made.warehouse = row.warehouse;
    made.place = row.place;
    made.stock = row.id;
    return made;
}

} // namespace

std::string demo_place(std::size_t house, std::size_t number) {
    return g_shelves[house % g_shelves.size()] + digits("", 1 + number * 5 % 12, 2) +
           digits("-", 1 + number * 11 % 40, 2);
}

std::vector<demo_shift> count_demo_stock(store::connection& with, const principal& who,
                                         const demo_premises& of, std::size_t number, std::int64_t now) {
    const auto house = of.warehouses[number % of.warehouses.size()];
    const auto header = header_of(who, of, number, pick(g_count_remarks, number));
    const auto draft = open_draft(with, who, document_module::stocktaking, header, now).id;
    std::vector<demo_shift> shifts;
    document_sums sums;
    for (const auto& row : some_rows(with, who, house, 3 + number % 4, number)) {
        const auto nth = number * 3 + shifts.size();
        taking_line line{line_of(row), row.amount, 0};
        line.real_amount = std::max<std::int64_t>(row.amount + g_off[nth % g_off.size()], 0);
        line.what.amount = line.real_amount - line.sys_amount;
        line.what.total = line.what.amount * row.price / g_hundredths * g_hundredths; // as a client cuts it
        if (line.what.amount < 0) line.what.remark = pick(g_missing, nth);
        if (line.what.amount > 0) line.what.remark = pick(g_surplus, nth);
        add_taking_line(with, who, draft, line);
        sums.difference += line.what.amount;
        sums.total += line.what.total;
        shifts.push_back({row.id, line.what.amount});
    }
    const auto reason = close_taking(with, who, draft, sums, now);
    if (!reason.empty()) throw refused("demo stocktaking " + std::to_string(number) + ": " + reason);
    return shifts;
}

std::vector<demo_shift> carry_demo_stock(store::connection& with, const principal& who,
                                         const demo_premises& of, std::size_t number, std::int64_t now) {
    const auto houses = of.warehouses.size();
    const auto from = number % houses;
    const auto to = (from + 1 + number / houses % (houses - 1)) % houses;
    auto header = header_of(who, of, number, pick(g_carry_remarks, number));
    header.warehouse_out = of.warehouses[from];
    header.warehouse_in = of.warehouses[to];
    const auto draft = open_draft(with, who, document_module::transfer, header, now).id;
    std::vector<demo_shift> shifts;
    for (const auto& row : some_rows(with, who, of.warehouses[from], 1 + number % 4, number)) {
        auto line = line_of(row);
        const bool whole = (number + shifts.size()) % 4 == 1;
        line.amount = whole ? row.amount : std::max<std::int64_t>(row.amount * 2 / 5, 1);
        line.total = line.amount * line.price;
        line.place = demo_place(to, number * 2 + shifts.size());
        if (whole) line.remark = "整批移库";
        add_transfer_line(with, who, draft, line, now);
        shifts.push_back({row.id, -line.amount, 0, of.warehouses[to], line.place});
    }
    count_cache counts;
    const document_search kind{.type = 1};
    const auto made = list_documents(with, who, document_module::transfer, kind, {1, 1}, counts).list.at(0);
    const auto lines = lines_of_document(with, who, document_module::transfer, made.id);
    for (std::size_t i = 0; i < shifts.size(); ++i)
        shifts[i].made = lines.at(i).stock_in;
    return shifts;
}

} // namespace tavrok::domain
