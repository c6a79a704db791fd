#include <algorithm>
#include <array>

#include "document_clerk.h"

namespace tavrok::test {

namespace {

constexpr std::int64_t g_price = 250; /**< of every line, in hundredths */
constexpr const char* g_price_text = "2.50";

/** How a module is reached: the call that closes its drafts, and its list's criteria before and behind the
 * remark. */
struct book {
    std::string module, closing, criteria, more;
};
const std::array<book, 4> g_books{{
    {"wms_instore", "update_total", "remark=", "&instore_type=1"},
    {"wms_outstore", "update_total", "outstore_type=2&remark=", ""},
    {"wms_stock_taking", "update_profitloss", "&remark=", ""},
    {"wms_stock_allot", "", "remark=", ""},
}};

const book& book_of(int module) {
    return g_books.at(static_cast<std::size_t>(module) - 1);
}

/** Below zero whole money alone. */
std::string money(std::int64_t hundredths) {
    const auto rest = hundredths % 100;
    return std::to_string(hundredths / 100) + (rest < 10 ? ".0" : ".") + std::to_string(rest);
}

/** What the client shows for a gain or loss, in hundredths. */
std::int64_t truncated(std::int64_t difference) {
    return difference * g_price / 100 * 100;
}

} // namespace

stock_control_world document_clerk::seen_from(const std::string& warehouse) const {
    auto world = m_world;
    if (warehouse != world.warehouse) std::swap(world.warehouse, world.second_warehouse);
    return world;
}

void document_clerk::write_inbound() {
    const auto remark = open(1, m_world.inbound_header(1) + "&remark=");
    if (remark.empty()) return;
    for (auto lines = 1 + below(3); lines > 0; --lines)
        add_inbound_line(remark);
    if (below(10) != 0) close(remark);
}

void document_clerk::write_outbound() {
    const auto remark = open(2, m_world.outbound_header(2));
    if (remark.empty()) return;
    for (auto lines = 1 + below(2); lines > 0; --lines)
        add_outbound_line(remark);
    if (below(10) != 0) close(remark);
}

void document_clerk::write_taking() {
    const auto remark = open(3, "&operater=" + m_world.employee + "&writer=&remark=");
    if (remark.empty()) return;
    for (auto lines = 1 + below(2); lines > 0; --lines)
        add_taking_line(remark);
    if (below(10) != 0) close(remark);
}

/** Now and then he goes on with one that is there, or was. */
void document_clerk::write_transfer() {
    std::vector<std::string> begun;
    for (const auto& [remark, one] : m_memory.papers)
        if (one.module == 4) begun.push_back(remark);
    if (!begun.empty() && below(5) == 0) {
        const auto last = static_cast<std::int64_t>(begun.size()) - 1;
        return add_transfer_line(
            begun[static_cast<std::size_t>(last - below(std::min<std::int64_t>(last + 1, 5)))]);
    }
    const auto stock = any_stock();
    if (!stock) return write_inbound();
    const auto remark = open(4, seen_from(stock->warehouse).transfer_header() + "&remark=", stock->warehouse);
    if (remark.empty()) return;
    for (auto lines = 1 + below(3); lines > 0; --lines)
        add_transfer_line(remark);
}

/** Opens a draft and gives the remark that it is known by; "" where it was refused. `header` ends with what
 * the remark follows. */
std::string document_clerk::open(int module, const std::string& header, const std::string& warehouse) {
    const auto remark = word("p");
    const auto answer = do_it({book_of(module).module + "/do_add",
                               header + remark,
                               [remark, module](picture& in, const std::string& got) {
                                   if (is_success(got)) in.papers[remark].module = module;
                               },
                               {"the id of a draft"},
                               remark,
                               warehouse});
    return is_success(answer) ? remark : "";
}

/** A transfer's line is applied as soon as it is accepted, and makes the document if it is the first. */
bool document_clerk::add_line(const std::string& paper, const std::string& remark, const std::string& body,
                              const paper_line& line) {
    const auto module = m_memory.papers[paper].module;
    const auto& tokens = m_named[paper];
    const auto token = tokens.contains(remark) ? tokens.at(remark) : "";
    return is_success(do_it({book_of(module).module + "_detail/do_add",
                             "main_id=" + m_drafts[paper].id + body,
                             [=](picture& in, const std::string& got) {
                                 if (!is_success(got)) return;
                                 auto& written = in.papers[paper];
                                 written.lines[remark] = line;
                                 if (module != 4) return;
                                 written.state = paper_state::live;
                                 const auto claim = in.claims.find(token);
                                 if (claim != in.claims.end() && claim->second.state == 1)
                                     claim->second.state = 2;
                             },
                             {"1"}}));
}

void document_clerk::add_inbound_line(const std::string& paper) {
    const auto remark = word("l");
    const auto amount = 1 + below(20);
    const auto line =
        m_world.line(std::to_string(amount), g_price_text, money(amount * g_price), remark) + "&place=A-1";
    if (!add_line(paper, remark, "&" + line, {.amount = amount})) return;
    do_it({"wms_stock_detail/do_add",
           line,
           [=](picture& in, const std::string& got) {
               if (is_success(got)) in.papers[paper].lines[remark].stocked = true;
           },
           {"1"}});
}

/** With one of his claims that no line of the document names yet, or of what is free. */
void document_clerk::add_outbound_line(const std::string& paper) {
    const auto remark = word("l");
    const auto token = any_claim(3);
    const auto fresh = token && std::none_of(m_named[paper].begin(), m_named[paper].end(),
                                             [&](const auto& one) { return one.second == *token; });
    row from;
    if (fresh) {
        const auto& claim = m_memory.claims[*token];
        from = {claim.stock, m_warehouse[claim.stock], std::max<std::int64_t>(1, claim.amount - below(2))};
        m_named[paper][remark] = *token;
    } else if (const auto stock = any_stock()) {
        from = {stock->id, stock->warehouse, 1 + below(3)};
    } else {
        return;
    }
    const auto line =
        seen_from(from.warehouse)
            .line(std::to_string(from.amount), g_price_text, money(from.amount * g_price), remark);
    add_line(
        paper, remark,
        "&" + line + "&stock_id=" + std::to_string(from.id) + "&place=A-1&locked_id=" + (fresh ? *token : ""),
        {.amount = from.amount, .stock = from.id});
}

/** With a hold of his, or without one; the count is off by a little, so that it may be refused in the end. */
void document_clerk::add_taking_line(const std::string& paper) {
    const auto remark = word("l");
    const auto token = below(4) == 0 ? std::nullopt : any_claim(2);
    row counted;
    if (token) {
        const auto stock = m_memory.claims[*token].stock;
        counted = {stock, m_warehouse[stock], 5};
        m_named[paper][remark] = *token;
    } else if (const auto stock = any_stock()) {
        counted = *stock;
    } else {
        return;
    }
    const auto found = std::max<std::int64_t>(0, counted.amount + (below(2) == 0 ? -1 : 1) * (1 + below(4)));
    const auto difference = found - counted.amount;
    add_line(
        paper, remark,
        seen_from(counted.warehouse)
            .counted(std::to_string(counted.id), static_cast<int>(counted.amount), static_cast<int>(found),
                     g_price_text, money(truncated(difference)), token.value_or(""), remark),
        {.amount = difference, .stock = counted.id, .sys = counted.amount});
}

void document_clerk::add_transfer_line(const std::string& paper) {
    const auto remark = word("l");
    const auto& from = m_drafts[paper].warehouse;
    const auto token = below(4) == 0 ? std::nullopt : any_claim(1, from);
    std::int64_t id = 0;
    std::int64_t amount = 0;
    if (token) {
        const auto& claim = m_memory.claims[*token];
        id = claim.stock;
        amount = std::max<std::int64_t>(1, claim.amount - below(2));
        m_named[paper][remark] = *token;
    } else if (const auto stock = any_stock(from)) {
        id = stock->id;
        amount = 1 + below(3);
    } else {
        return write_inbound();
    }
    add_line(paper, remark,
             seen_from(from).moved(std::to_string(id), std::to_string(amount), g_price_text,
                                   money(amount * g_price), token.value_or(""), remark),
             {.amount = amount, .stock = id, .stocked = true});
}

/** Now and then with a total that is none of its lines'. A transfer has no closing call: a line makes it. */
void document_clerk::close(const std::string& remark) {
    const auto& one = m_memory.papers[remark];
    if (one.module == 4) return add_transfer_line(remark);
    const auto& where = book_of(one.module);
    std::int64_t total = below(12) == 0 ? 100'000 : 0;
    std::int64_t difference = 0;
    for (const auto& [name, line] : one.lines) {
        total += one.module == 3 ? truncated(line.amount) : line.amount * g_price;
        difference += line.amount;
    }
    const auto sums = one.module == 3 ? "&profitloss_amount=" + std::to_string(difference) +
                                            "&profitloss_total=" + money(total)
                                      : "&total=" + money(total);
    do_it({where.module + "/" + where.closing,
           "id=" + m_drafts[remark].id + sums,
           [remark, tokens = m_named[remark]](picture& in, const std::string& got) {
               if (!is_success(got)) {
                   in.papers.erase(remark);
                   return;
               }
               auto& made = in.papers[remark];
               made.state = paper_state::live;
               for (const auto& [line, token] : tokens) {
                   if (!made.lines.contains(line)) continue;
                   if (auto& claim = in.claims[token]; claim.state == 1) claim.state = 2;
               }
           },
           {"1", "0"}});
}

void document_clerk::delete_document() {
    const auto live = papers_in(paper_state::live);
    if (live.empty()) return;
    const auto remark = live[static_cast<std::size_t>(below(static_cast<std::int64_t>(live.size())))];
    const auto& where = book_of(m_memory.papers[remark].module);
    const auto rows = boost::json::parse(
        read(where.module + "/get_page", where.criteria + remark + where.more + "&page_num=1&page_size=20"));
    const auto& list = rows.at("list").as_array();
    EXPECT_EQ(list.size(), 1u) << "an acknowledged document is listed once: " << remark;
    if (list.size() != 1) return;
    do_it({where.module + "/do_delete",
           "id=" + std::string(list[0].at("id").as_string()),
           [remark](picture& in, const std::string& got) {
               if (is_success(got)) in.papers[remark].state = paper_state::deleted;
           },
           {"1"}});
}

} // namespace tavrok::test
