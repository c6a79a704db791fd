#include "document_clerk.h"

#include <algorithm>

namespace tavrok::test {

namespace {

constexpr std::size_t g_most_drafts = 12; /**< a session may leave a few */
constexpr std::size_t g_most_claims = 8;
/** Stands for a token that nobody was told. */
constexpr const char* g_unknown_token = "an unknown token";

} // namespace

bool is_success(const std::string& answer) {
    return answer != "0" && answer != R"({"http_state":0})";
}

document_clerk::document_clerk(const stock_control_world& world, const actor& who, std::uint32_t seed)
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
    if (const auto drafts = papers_in(paper_state::draft); drafts.size() > g_most_drafts)
        return close(drafts[static_cast<std::size_t>(below(static_cast<std::int64_t>(drafts.size())))]);
    const auto active = std::count_if(m_memory.claims.begin(), m_memory.claims.end(),
                                      [](const auto& one) { return one.second.state == 1; });
    if (static_cast<std::size_t>(active) > g_most_claims) return give_back();
    const auto choice = below(100);
    if (choice < 20) return write_inbound();
    if (choice < 45) return take_claim();
    if (choice < 57) return write_outbound();
    if (choice < 68) return write_taking();
    if (choice < 83) return write_transfer();
    if (choice < 93) return delete_document();
    give_back();
}

void document_clerk::take_claim() {
    const auto stock = any_stock();
    if (!stock) return;
    const auto chance = below(20);
    const int use = chance < 3 ? 2 : chance < 9 ? 1 : 3;
    const auto amount = 1 + below(4);
    // Of the total nothing hangs; it makes the bytes unique.
    do_it({"wms_stock_detail/lock_stock",
           "lock_type=" + std::to_string(use) + "&id=" + std::to_string(stock->id) +
               "&amount=" + std::to_string(amount) + "&total=" + std::to_string(++m_words),
           [use, amount, id = stock->id](picture& in, const std::string& got) {
               if (is_success(got)) in.claims[got] = {id, use == 2 ? 0 : amount, use, 1};
           },
           {g_unknown_token}});
}

void document_clerk::give_back() {
    const auto token = any_claim(0);
    if (!token) return;
    do_it({"wms_stock_detail/unlock_stock",
           "locked_id=" + *token + "&lock_type=" + std::to_string(m_memory.claims[*token].use),
           [token = *token](picture& in, const std::string& got) {
               if (auto& claim = in.claims[token]; is_success(got) && claim.state == 1) claim.state = 3;
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
    return told(*answer);
}

std::string document_clerk::told(const std::string& answer) {
    EXPECT_NE(answer, "7") << "the session is gone";
    ++(is_success(answer) ? m_figures.acknowledged : m_figures.refused);
    m_open->apply(m_memory, answer);
    if (!m_open->opens.empty() && is_success(answer)) {
        m_drafts[m_open->opens] = {boost::json::parse(answer).at("insert_id").as_string().c_str(),
                                   m_open->warehouse};
    }
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

std::optional<document_clerk::row> document_clerk::any_stock(const std::string& warehouse) {
    const auto criteria = warehouse.empty() ? "" : "warehouse=" + warehouse + "&";
    const auto page =
        boost::json::parse(read("wms_stock_detail/get_page", criteria + "page_num=1&page_size=20"));
    const auto& rows = page.at("list").as_array();
    if (rows.empty()) return std::nullopt;
    const auto& one = rows[static_cast<std::size_t>(below(static_cast<std::int64_t>(rows.size())))];
    const auto text = [&](const char* key) { return std::string(one.at(key).as_string()); };
    row found{std::stoll(text("id")), text("warehouse"), std::stoll(text("amount"))};
    m_warehouse[found.id] = found.warehouse;
    return found;
}

std::optional<std::string> document_clerk::any_claim(int use, const std::string& warehouse) {
    std::vector<std::string> active;
    for (const auto& [token, one] : m_memory.claims) {
        if (one.state == 1 && (use == 0 || one.use == use) &&
            (warehouse.empty() || m_warehouse[one.stock] == warehouse)) {
            active.push_back(token);
        }
    }
    if (active.empty()) return std::nullopt;
    return active[static_cast<std::size_t>(below(static_cast<std::int64_t>(active.size())))];
}

std::int64_t document_clerk::documents(int module) const {
    return std::count_if(m_memory.papers.begin(), m_memory.papers.end(), [module](const auto& one) {
        return one.second.module == module && one.second.state != paper_state::draft;
    });
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
