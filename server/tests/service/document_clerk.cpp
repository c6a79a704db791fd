#include "document_clerk.h"

#include <algorithm>

namespace tavrok::test {

namespace {

constexpr std::size_t g_most_drafts = 12; /**< a session may leave a few */
constexpr std::size_t g_most_claims = 8;
constexpr std::int64_t g_price = 250; /**< of every line, in hundredths */
/** Stands for a token that nobody was told. */
constexpr const char* g_unknown_token = "an unknown token";

std::string money(std::int64_t hundredths) {
    const auto rest = hundredths % 100;
    return std::to_string(hundredths / 100) + (rest < 10 ? ".0" : ".") + std::to_string(rest);
}

bool is_success(const std::string& answer) {
    return answer != "0" && answer != R"({"http_state":0})";
}

} // namespace

document_clerk::document_clerk(const documents_world& world, const actor& who, std::uint32_t seed)
    : m_world(world), m_who(who), m_chance(seed) {}

void document_clerk::work(unsigned short port, std::atomic<std::int64_t>& told,
                          const std::atomic<bool>& enough) {
    wire link(port, m_who.cookie);
    m_link = &link;
    m_told = &told;
    try {
        if (m_open) resend();
        while (!enough)
            step();
    } catch (const cut&) {
    }
    m_told = nullptr;
    m_link = nullptr;
}

bool document_clerk::settle(unsigned short port) {
    std::atomic<std::int64_t> told{0};
    work(port, told, true);
    return !m_open;
}

void document_clerk::step() {
    if (papers_in(paper_state::draft).size() > g_most_drafts)
        return close(papers_in(paper_state::draft).front());
    const auto active = std::count_if(m_memory.claims.begin(), m_memory.claims.end(),
                                      [](const auto& one) { return one.second.state == 1; });
    if (static_cast<std::size_t>(active) > g_most_claims) return give_back();
    const auto choice = below(100);
    if (choice < 30) return write_inbound();
    if (choice < 60) return take_claim();
    if (choice < 80) return write_outbound();
    if (choice < 90) return delete_document();
    give_back();
}

void document_clerk::write_inbound() {
    const auto remark = open(1, m_world.inbound_header(1));
    if (remark.empty()) return;
    for (auto lines = 1 + below(3); lines > 0; --lines)
        add_line(remark, 1 + below(20), 0, "");
    if (below(10) != 0) close(remark);
}

void document_clerk::write_outbound() {
    const auto remark = open(2, m_world.outbound_header(2));
    if (remark.empty()) return;
    std::vector<std::string> used;
    for (auto lines = 1 + below(2); lines > 0; --lines) {
        const auto token = any_claim(true);
        if (token && std::find(used.begin(), used.end(), *token) == used.end()) {
            const auto& claim = m_memory.claims[*token];
            used.push_back(*token);
            add_line(remark, std::max<std::int64_t>(1, claim.amount - below(2)), claim.stock, *token);
        } else if (const auto stock = any_stock(); !stock.empty()) {
            add_line(remark, 1 + below(3), std::stoll(stock), "");
        }
    }
    if (below(10) != 0) close(remark);
}

/** Opens a draft and gives the remark that it is known by; "" where it was refused. `header` ends with what
 * the remark follows, or the remark may stand anywhere. */
std::string document_clerk::open(int module, const std::string& header) {
    const auto remark = word("p");
    const auto body = module == 1 ? header + "&remark=" + remark : header + remark;
    const auto answer = do_it({module == 1 ? "wms_instore/do_add" : "wms_outstore/do_add",
                               body,
                               [remark, module](picture& in, const std::string& got) {
                                   if (is_success(got)) in.papers[remark].module = module;
                               },
                               {"the id of a draft"}});
    if (!is_success(answer)) return "";
    m_drafts[remark] = boost::json::parse(answer).at("insert_id").as_string().c_str();
    return remark;
}

void document_clerk::add_line(const std::string& paper, std::int64_t amount, std::int64_t stock,
                              const std::string& token) {
    const auto remark = word("l");
    const bool inbound = stock == 0;
    const auto main = "main_id=" + m_drafts[paper] + "&";
    auto line = m_world.line(std::to_string(amount), money(g_price), money(amount * g_price), remark);
    if (!inbound) line += "&stock_id=" + std::to_string(stock);
    line += "&place=A-1";
    if (!token.empty()) m_named[paper][remark] = token;
    const auto answer = do_it({inbound ? "wms_instore_detail/do_add" : "wms_outstore_detail/do_add",
                               main + line + (inbound ? "" : "&locked_id=" + token),
                               [=](picture& in, const std::string& got) {
                                   if (is_success(got))
                                       in.papers[paper].lines[remark] = {amount, stock, false};
                               },
                               {"1"}});
    if (!inbound || !is_success(answer)) return;
    do_it({"wms_stock_detail/do_add",
           line,
           [=](picture& in, const std::string& got) {
               if (is_success(got)) in.papers[paper].lines[remark].stocked = true;
           },
           {"1"}});
}

/** Now and then with a total that is none of its lines'. */
void document_clerk::close(const std::string& remark) {
    const auto& one = m_memory.papers[remark];
    const bool inbound = one.module == 1;
    std::int64_t total = below(12) == 0 ? 100'000 : 0;
    for (const auto& [name, line] : one.lines)
        total += line.amount * g_price;
    const auto tokens = m_named[remark];
    do_it({inbound ? "wms_instore/update_total" : "wms_outstore/update_total",
           "id=" + m_drafts[remark] + "&total=" + money(total),
           [remark, tokens](picture& in, const std::string& got) {
               if (!is_success(got)) {
                   in.papers.erase(remark);
                   return;
               }
               auto& made = in.papers[remark];
               made.state = paper_state::live;
               for (const auto& [line, token] : tokens)
                   if (auto& claim = in.claims[token]; claim.state == 1) claim.state = 2;
           },
           {"1", "0"}});
}

void document_clerk::take_claim() {
    const auto stock = any_stock();
    if (stock.empty()) return;
    const auto chance = below(20);
    const int use = chance == 0 ? 2 : chance < 3 ? 1 : 3;
    const auto amount = 1 + below(4);
    // Of the total nothing hangs; it makes the bytes unique.
    do_it({"wms_stock_detail/lock_stock",
           "lock_type=" + std::to_string(use) + "&id=" + stock + "&amount=" + std::to_string(amount) +
               "&total=" + std::to_string(++m_words),
           [=](picture& in, const std::string& got) {
               if (is_success(got)) in.claims[got] = {std::stoll(stock), use == 2 ? 0 : amount, use, 1};
           },
           {g_unknown_token}});
}

void document_clerk::give_back() {
    const auto token = any_claim(false);
    if (!token) return;
    do_it({"wms_stock_detail/unlock_stock",
           "locked_id=" + *token + "&lock_type=" + std::to_string(m_memory.claims[*token].use),
           [token = *token](picture& in, const std::string& got) {
               if (auto& claim = in.claims[token]; is_success(got) && claim.state == 1) claim.state = 3;
           },
           {"1"}});
}

void document_clerk::delete_document() {
    const auto live = papers_in(paper_state::live);
    if (live.empty()) return;
    const auto remark = live[static_cast<std::size_t>(below(static_cast<std::int64_t>(live.size())))];
    const bool inbound = m_memory.papers[remark].module == 1;
    const std::string module = inbound ? "wms_instore" : "wms_outstore";
    const auto criteria =
        inbound ? "remark=" + remark + "&instore_type=1" : "outstore_type=2&remark=" + remark;
    const auto rows = boost::json::parse(read(module + "/get_page", criteria + "&page_num=1&page_size=20"));
    const auto& list = rows.at("list").as_array();
    EXPECT_EQ(list.size(), 1u) << "an acknowledged document is listed once: " << remark;
    if (list.size() != 1) return;
    do_it({module + "/do_delete",
           "id=" + std::string(list[0].at("id").as_string()),
           [remark](picture& in, const std::string& got) {
               if (is_success(got)) in.papers[remark].state = paper_state::deleted;
           },
           {"1"}});
}

std::string document_clerk::do_it(deed what) {
    const auto answer = m_link->ask(what.path, what.body);
    m_open = std::move(what);
    if (!answer) {
        ++m_figures.unknown;
        throw cut{};
    }
    return told(*answer);
}

/** The same bytes in the same session, as the network library brings them. */
std::string document_clerk::resend() {
    const auto answer = m_link->ask(m_open->path, m_open->body);
    if (!answer) throw cut{};
    ++m_figures.resent;
    if (m_had_effect) ++m_figures.replays;
    // A draft that was opened is one to be closed.
    if (m_open->path.ends_with("store/do_add") && is_success(*answer)) {
        const auto at = m_open->body.find("&remark=");
        m_drafts[m_open->body.substr(at + 8)] =
            boost::json::parse(*answer).at("insert_id").as_string().c_str();
    }
    return told(*answer);
}

std::string document_clerk::told(const std::string& answer) {
    EXPECT_NE(answer, "7") << "the session is gone";
    ++(is_success(answer) ? m_figures.acknowledged : m_figures.refused);
    m_open->apply(m_memory, answer);
    m_open.reset();
    m_had_effect = false;
    ++*m_told;
    return answer;
}

std::string document_clerk::read(const std::string& path, const std::string& body) {
    auto answer = m_link->ask(path, body);
    if (!answer) throw cut{};
    return std::move(*answer);
}

std::string document_clerk::any_stock() {
    const auto page = boost::json::parse(read("wms_stock_detail/get_page", "page_num=1&page_size=20"));
    const auto& rows = page.at("list").as_array();
    if (rows.empty()) return "";
    const auto which = static_cast<std::size_t>(below(static_cast<std::int64_t>(rows.size())));
    return std::string(rows[which].at("id").as_string());
}

std::optional<std::string> document_clerk::any_claim(bool outbound_only) {
    std::vector<std::string> active;
    for (const auto& [token, one] : m_memory.claims)
        if (one.state == 1 && (!outbound_only || one.use == 3)) active.push_back(token);
    if (active.empty()) return std::nullopt;
    return active[static_cast<std::size_t>(below(static_cast<std::int64_t>(active.size())))];
}

std::vector<std::string> document_clerk::papers_in(paper_state state) const {
    std::vector<std::string> found;
    for (const auto& [remark, one] : m_memory.papers)
        if (one.state == state) found.push_back(remark);
    return found;
}

std::string document_clerk::judge(store::database& where) {
    auto found = picture_of(where, m_who.user);
    if (m_open && !m_open->answers.empty() && m_open->answers.front() == g_unknown_token) {
        for (const auto& [token, claim] : picture(found).claims) {
            if (m_memory.claims.contains(token) || found.claims.contains(g_unknown_token)) continue;
            found.claims.erase(token);
            found.claims[g_unknown_token] = claim;
        }
    }
    m_had_effect = false;
    if (found == m_memory) return "";
    if (!m_open) return difference(m_memory, found);
    for (const auto& answer : m_open->answers) {
        auto after = m_memory;
        m_open->apply(after, answer);
        m_had_effect = after == found;
        if (m_had_effect) return "";
    }
    return "after " + m_open->path + " " + m_open->body + ":\n" + difference(m_memory, found);
}

std::int64_t document_clerk::below(std::int64_t end) {
    return std::uniform_int_distribution<std::int64_t>(0, end - 1)(m_chance);
}

/** Of one width, so that none is a part of another. */
std::string document_clerk::word(const char* kind) {
    const auto number = std::to_string(1'000'000 + ++m_words);
    return kind + std::to_string(m_who.user) + "x" + number;
}

} // namespace tavrok::test
