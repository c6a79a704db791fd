#include "domain/demo_documents.h"

#include <algorithm>
#include <array>
#include <ctime>
#include <map>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "domain/demo_stock_control.h"
#include "domain/documents.h"
#include "domain/employees.h"
#include "domain/partners.h"
#include "domain/products.h"
#include "domain/refused.h"
#include "domain/trees.h"
#include "domain/warehouses.h"

namespace tavrok::domain {

namespace {

/** A kind of documents in the story, and the letter that stands for it there. */
struct part {
    char letter;
    document_module module;
    std::int64_t type;
    principal demo_writers::*writer;
    int partner;     // the type of its partner; 0 for a department, -1 for neither
    char comes_from; // the kind whose documents it answers, 0 for none
    std::array<const char*, 3> remarks;
};

constexpr auto g_in = document_module::inbound;
constexpr auto g_out = document_module::outbound;
const std::array<part, 13> g_parts{{
    {'P', g_in, 1, &demo_writers::buyer, 1, 0, {"", "月度备货", "合同 TK-2026，货到付款"}},
    {'M', g_in, 2, &demo_writers::keeper, 0, 0, {"", "完工入库，已质检", "补库存"}},
    {'s', g_in, 3, &demo_writers::admin, 2, 'S', {"客户退货，外包装破损", "", "规格不符，整箱退回"}},
    {'r', g_in, 4, &demo_writers::keeper, 0, 'U', {"多领退回", "", "项目结束余料"}},
    {'B', g_in, 5, &demo_writers::admin, 3, 0, {"借用一个月", "展会周转借用", ""}},
    {'l', g_in, 6, &demo_writers::keeper, 3, 'L', {"按期归还，外观完好", "", "归还"}},
    {'O', g_in, 7, &demo_writers::keeper, -1, 0, {"供应商赠品", "样品入库", ""}},
    {'R', g_out, 1, &demo_writers::buyer, 1, 'P', {"质量问题退货", "来货数量多发，退回", ""}},
    {'S', g_out, 2, &demo_writers::admin, 2, 0, {"", "送货上门", "客户自提，A&B 两车"}},
    {'U', g_out, 3, &demo_writers::keeper, 0, 0, {"车间领用", "", "办公领用"}},
    {'L', g_out, 4, &demo_writers::keeper, 3, 0, {"借出两周", "", "展会借出"}},
    {'b', g_out, 5, &demo_writers::admin, 3, 'B', {"到期归还", "", "提前归还"}},
    {'o', g_out, 6, &demo_writers::keeper, -1, 0, {"样品寄送", "破损报废", ""}},
}};

/** The documents in their order, two a day. */
constexpr std::string_view g_story = "PPPMPOPSSUPBPPSLMPSSrPRSPBsUlPSbMPSUPLSosOMSPRUrlPSBLMbSPUSo";
/** Those of them that were written by mistake and deleted. */
constexpr std::array<std::size_t, 3> g_mistakes{13, 19, 41};
/** What the evening after each pair of them brings: stock is counted, or carried to another warehouse. */
constexpr std::string_view g_evenings = "  T CT TTC TTC TT CTT CT TC   ";

constexpr std::int64_t g_minute = 60;
constexpr std::size_t g_return_house = 3;

const part& part_of(char letter) {
    return *std::find_if(g_parts.begin(), g_parts.end(),
                         [&](const part& one) { return one.letter == letter; });
}

/** The moment `minutes` after midnight, so many days before `now`; on a weekend, of the Friday before. */
std::int64_t working_time(std::int64_t now, int days, int minutes) {
    const auto today = static_cast<std::time_t>(now);
    std::tm local{};
    localtime_r(&today, &local);
    const int weekday = ((local.tm_wday - days) % 7 + 7) % 7; // 0 is a Sunday
    local.tm_mday -= days + (weekday == 6 ? 1 : weekday == 0 ? 2 : 0);
    local.tm_hour = 0;
    local.tm_min = minutes;
    local.tm_sec = minutes * 7 % 60;
    local.tm_isdst = -1;
    return std::mktime(&local);
}

int days_before(int pair) {
    return std::max(87 - pair * 3, 1);
}

std::int64_t time_of(std::size_t number, std::int64_t now) {
    const auto pair = static_cast<int>(number / 2);
    // Afternoons and mornings take turns: a Friday may get a second pair from its weekend.
    const int start = pair % 2 == 0 ? 9 * 60 + pair * 3 : 13 * 60 + 30 + pair * 3;
    return working_time(now, days_before(pair), start + static_cast<int>(number % 2) * 70);
}

std::int64_t evening_of(std::size_t pair, std::int64_t now) {
    const auto day = static_cast<int>(pair);
    return working_time(now, days_before(day), 16 * 60 + 55 + day * 2);
}

std::int64_t plausible_amount(std::int64_t price, std::size_t seed) {
    const auto spread = static_cast<std::int64_t>(seed);
    if (price < 100) return 500 + spread * 350 % 2000;
    if (price < 1000) return 60 + spread * 20 % 240;
    if (price < 5000) return 20 + spread * 5 % 80;
    return 5 + spread * 3 % 25;
}

std::int64_t share(std::int64_t of, std::int64_t hundredths) {
    return std::max<std::int64_t>(of * hundredths / 100, 1);
}

/** What a document of a part did: a later one may answer it. */
struct event {
    std::int64_t counterpart{0};
    std::vector<document_line> lines;
};

/** What lies somewhere; `origin` brought it there. */
struct batch {
    document_line what;
    std::int64_t left{0};
    char origin{0};
    std::int64_t counterpart{0};
};

/** What the documents are made of. */
struct company_stock {
    std::vector<product> products;
    std::map<int, std::vector<std::int64_t>> counterparts; // by part::partner
    demo_premises premises;
};

company_stock stock_of(store::connection& with, const principal& who) {
    company_stock made;
    count_cache counts;
    made.products = list_products(with, who, {}, {1, 200}, counts).list;
    for (const int type : {1, 2, 3}) {
        for (const auto& one :
             list_partners(with, who, {.type = static_cast<partner_type>(type)}, 1, 200, counts).list)
            made.counterparts[type].push_back(one.id);
    }
    for (const auto& one : list_tree(with, who, store::g_departments))
        for (const auto& below : one.child)
            made.counterparts[0].push_back(below.id);
    for (const auto& one : list_employee_options(with, who))
        made.premises.employees.push_back(one.id);
    for (const auto& one : list_warehouse_options(with, who))
        made.premises.warehouses.push_back(one.id);
    return made;
}

class narrator {
public:
    narrator(store::connection& with, const demo_writers& who, std::int64_t now)
        : m_with(with), m_who(who), m_now(now), m_from(stock_of(with, who.admin)) {}

    void tell(std::size_t number) {
        const auto& what = part_of(g_story[number]);
        auto told = what.module == g_in ? inbound(what, number) : outbound(what, number);
        const auto when = time_of(number, m_now);
        const auto id = write(what, told, number, when);
        if (std::find(g_mistakes.begin(), g_mistakes.end(), number) != g_mistakes.end()) {
            remove_document(m_with, m_who.admin, what.module, id, when + 40 * g_minute);
            return;
        }
        what.module == g_in ? put(what, told, id) : take(told);
        m_events[what.letter].push_back(std::move(told));
    }

    void end_day(std::size_t pair) {
        const auto what = g_evenings[pair];
        if (what == ' ') return;
        const auto number = m_evenings++;
        const auto& who = number % 5 == 0 ? m_who.admin : m_who.keeper;
        const auto act = what == 'C' ? count_demo_stock : carry_demo_stock;
        for (const auto& one : act(m_with, who, m_from.premises, number, evening_of(pair, m_now)))
            shift(one);
    }

private:
    std::int64_t counterpart(const part& what, std::size_t number) const {
        if (what.partner < 0) return 0;
        const auto& all = m_from.counterparts.at(what.partner);
        return all[number * 7 % all.size()];
    }

    event inbound(const part& what, std::size_t number) {
        return what.comes_from != 0 ? returned(what, number) : fresh(what, number);
    }

    /** New goods: bought dearer than they are made, cheaper than the list says. */
    event fresh(const part& what, std::size_t number) const {
        event made{counterpart(what, number), {}};
        const auto cost = what.letter == 'M' ? 70 : 85 + static_cast<std::int64_t>(number) % 4 * 3;
        for (std::size_t i = 0; i < 1 + number * 5 % 6; ++i) {
            const auto& goods = m_from.products[(number * 37 + i * 61) % m_from.products.size()];
            const auto house = (number + i) % 3;
            document_line line;
            line.product = goods.id;
            line.price = share(goods.price, cost);
            line.amount = plausible_amount(line.price, number + i);
            line.warehouse = m_from.premises.warehouses[house];
            line.place = demo_place(house, number + i);
            if (number % 5 == 0 && i == 0) line.remark = "外箱有压痕，已验收";
            made.lines.push_back(line);
        }
        return made;
    }

    /** What the oldest document took that nobody has answered yet: all that was lent, a part of the rest. */
    event returned(const part& what, std::size_t number) {
        auto& open = m_events.at(what.comes_from);
        auto made = open.at(0);
        open.erase(open.begin());
        if (what.letter != 'l') made.lines.resize((made.lines.size() + 1) / 2);
        for (std::size_t i = 0; i < made.lines.size(); ++i) {
            auto& line = made.lines[i];
            if (what.letter != 'l') line.amount = share(line.amount, 25);
            line.warehouse = m_from.premises.warehouses[g_return_house];
            line.place = demo_place(g_return_house, number + i);
        }
        return made;
    }

    event outbound(const part& what, std::size_t number) const {
        event made{counterpart(what, number), {}};
        const auto wanted = 1 + number * 3 % 4;
        for (std::size_t i = 0; i < m_batches.size() && made.lines.size() < wanted; ++i) {
            const auto& one =
                m_batches[(number * 11 + i * (what.comes_from != 0 ? 1 : 7)) % m_batches.size()];
            if (!fits(what, made, one)) continue;
            if (what.comes_from != 0) made.counterpart = one.counterpart;
            auto line = one.what;
            if (what.letter == 'S' && one.origin != 's') line.price = share(line.price, 125);
            line.amount = what.letter == 'b' || (number % 4 == 2 && made.lines.empty())
                              ? one.left
                              : share(one.left, 20 + static_cast<std::int64_t>(number + i) % 4 * 15);
            line.remark.clear();
            made.lines.push_back(line);
        }
        return made;
    }

    /** Whether a document may take of a batch: what answers a kind takes what one of its documents brought;
     * what was borrowed is not ours to give away. */
    static bool fits(const part& what, const event& so_far, const batch& one) {
        if (one.left == 0) return false;
        if (what.comes_from == 0) {
            const auto twice = [&](const document_line& line) { return line.stock == one.what.stock; };
            return one.origin != 'B' && std::none_of(so_far.lines.begin(), so_far.lines.end(), twice);
        }
        return one.origin == what.comes_from &&
               (so_far.lines.empty() || one.counterpart == so_far.counterpart);
    }

    void put(const part& what, const event& told, std::int64_t id) {
        const auto lines = lines_of_document(m_with, m_who.admin, what.module, id);
        for (std::size_t i = 0; i < lines.size(); ++i) {
            auto line = told.lines[i];
            line.stock = lines[i].stock;
            m_batches.push_back({line, line.amount, what.letter, told.counterpart});
        }
    }

    void take(const event& told) {
        for (const auto& line : told.lines)
            for (auto& one : m_batches)
                if (one.what.stock == line.stock) one.left -= line.amount;
    }

    void shift(const demo_shift& what) {
        const auto at = std::find_if(m_batches.begin(), m_batches.end(),
                                     [&](const batch& one) { return one.what.stock == what.stock; });
        at->left += what.by;
        if (what.made == 0) return;
        auto there = *at;
        there.what.stock = what.made;
        there.what.warehouse = what.warehouse;
        there.what.place = what.place;
        there.left = -what.by;
        m_batches.push_back(there);
    }

    /** As a client does it; gives the document's id. */
    std::int64_t write(const part& what, event& told, std::size_t number, std::int64_t when) {
        const auto& writer = m_who.*what.writer;
        document_header header;
        header.type = what.type;
        header.operater =
            std::to_string(m_from.premises.employees[number * 3 % m_from.premises.employees.size()]);
        header.writer = std::to_string(writer.user);
        if (what.partner == 0) header.dept = told.counterpart;
        if (what.partner > 0) header.partner = told.counterpart;
        header.remark = what.remarks[number % what.remarks.size()];
        const auto draft = open_draft(m_with, writer, what.module, header, when).id;
        std::int64_t total = 0;
        for (auto& line : told.lines) {
            line.total = line.amount * line.price;
            total += line.total;
            add_line(m_with, writer, what.module, draft, line);
            if (what.module == g_in) announce_stock(m_with, writer, line);
        }
        const auto reason = close_draft(m_with, writer, what.module, draft, total, when);
        if (!reason.empty()) throw refused("demo document " + std::to_string(number) + ": " + reason);
        count_cache counts;
        const document_search kind{.type = what.type};
        return list_documents(m_with, m_who.admin, what.module, kind, {1, 1}, counts).list.at(0).id;
    }

    store::connection& m_with;
    const demo_writers& m_who;
    std::int64_t m_now;
    company_stock m_from;
    std::vector<batch> m_batches;
    std::map<char, std::vector<event>> m_events;
    std::size_t m_evenings{0}; // that had something to do
};

} // namespace

void tell_documents(store::connection& with, const demo_writers& who, std::int64_t now) {
    narrator one(with, who, now);
    for (std::size_t number = 0; number < g_story.size(); ++number) {
        one.tell(number);
        if (number % 2 == 1) one.end_day(number / 2);
    }
}

} // namespace tavrok::domain
