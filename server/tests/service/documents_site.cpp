#include "documents_site.h"

#include <gtest/gtest.h>

#include <ctime>

#include "domain/accounts.h"
#include "domain/sessions.h"
#include "ledger_proofs.h"

namespace tavrok::test {

namespace {

/** Half of what the service takes on one connection. */
constexpr int g_requests_on_one = 500;

} // namespace

bool wire::send(const std::string& path, const std::string& body) {
    if (++m_asked > g_requests_on_one) {
        m_client.reset();
        m_asked = 1;
    }
    try {
        if (!m_client) m_client = std::make_unique<tls_client>(m_port);
    } catch (const std::runtime_error&) {
        return false;
    }
    return m_client->connected() && m_client->send(post(path, body, m_cookie));
}

std::optional<std::string> wire::read() {
    auto answer = m_client->read();
    if (!answer) return std::nullopt;
    return std::move(answer->body);
}

std::optional<std::string> wire::ask(const std::string& path, const std::string& body) {
    return send(path, body) ? read() : std::nullopt;
}

std::string wire::answer(const std::string& path, const std::string& body) {
    auto got = ask(path, body);
    EXPECT_TRUE(got) << path << " " << body << " was not answered";
    return got.value_or("");
}

documents_site::documents_site(const std::string& engine, int users) : m_database(engine) {
    const auto now = static_cast<std::int64_t>(std::time(nullptr));
    store::write_now(*m_database, [&](store::connection& with) {
        m_actors.clear();
        const auto company = domain::create_company(with, "works", true, now);
        for (int number = 1; number <= users; ++number) {
            domain::new_user made;
            made.company = company;
            made.username = made.realname = "user" + std::to_string(number);
            made.password_hash = "nobody logs in";
            made.type = 1;
            const auto id = domain::create_user(with, made, now);
            const auto token = domain::open_session(with, company, id, "192.0.2.9", now);
            m_actors.push_back({id, "Cookie: tavrok_session=" + token + "\r\n"});
        }
    });
    m_database.close();
}

std::unique_ptr<running_service> documents_site::start() {
    return std::make_unique<running_service>(
        m_database.folder(), m_database.options().location,
        std::vector<std::string>{"--requests-per-second", "0", "--log-level", "warning"});
}

documents_world::way documents_site::through(wire& link) {
    return [&link](const std::string& path, const std::string& body) { return link.answer(path, body); };
}

stock_control_world documents_site::furnish(unsigned short port) const {
    const auto link = std::make_shared<wire>(port, m_actors.front().cookie);
    return stock_control_world(
        [link](const std::string& path, const std::string& body) { return link->answer(path, body); });
}

std::string documents_site::faults() {
    m_database.close();
    if (!m_database.left_within(patience)) return "somebody is still connected";
    std::string told;
    const int code = run_command(m_database.folder(), {"check", "--database", m_database.options().location},
                                 {}, "", &told);
    if (!m_database.left_within(patience)) return "the check is still connected";
    std::string found = code == 0 ? "" : "check ended with " + std::to_string(code) + ": " + told;
    found += ledger_faults(*m_database);
    m_database.close();
    return found;
}

std::int64_t number_in(store::database& where, const std::string& sql) {
    std::int64_t found = -1;
    store::read_now(where, [&](store::connection& with) {
        with.query({"", sql}, {}, [&](const store::row& one) { found = one.integer(0); });
    });
    return found;
}

} // namespace tavrok::test
