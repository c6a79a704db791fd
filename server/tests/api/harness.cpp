#include "api/harness.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <sstream>

#include "domain/passwords.h"
#include "domain/sessions.h"

namespace tavrok::test {

namespace {

const std::string& stored_password() {
    static const std::string hash = domain::hash_password(harness::pepper, password_on_the_wire());
    return hash;
}

} // namespace

std::string password_on_the_wire() {
    return domain::md5_hex(harness::password);
}

void hand_timer::after(std::chrono::milliseconds delay, std::function<void()> task) {
    const std::lock_guard lock(m_mutex);
    m_tasks.emplace(m_now + delay, std::move(task));
}

void hand_timer::turn(std::chrono::milliseconds passed) {
    std::unique_lock lock(m_mutex);
    m_now += passed;
    while (!m_tasks.empty() && m_tasks.begin()->first <= m_now) {
        auto task = std::move(m_tasks.extract(m_tasks.begin()).mapped());
        lock.unlock();
        task();
        lock.lock();
    }
}

std::size_t hand_timer::waiting() const {
    const std::lock_guard lock(m_mutex);
    return m_tasks.size();
}

harness::harness(const std::string& engine, api::settings options)
    : database(engine), m_options(std::move(options)) {
    m_options.pepper = pepper;
    m_options.sweep_every = std::chrono::minutes(0);
    store::read_now(*database, [&](store::connection& db) { m_menu = domain::whole_menu(db); });
    start();
}

harness::~harness() {
    service.reset();
}

void harness::start() {
    service = api::service::make(
        *database, m_options, [this] { return now.load(); },
        [this](std::chrono::milliseconds delay, std::function<void()> task) {
            timer.after(delay, std::move(task));
        });
}

void harness::replace_service() {
    service.reset();
    start();
}

std::future<reply> harness::begin(const wish& what) {
    static std::atomic<int> counter{0};
    auto promise = std::make_shared<std::promise<reply>>();
    auto future = promise->get_future();
    http::request request{what.method, what.path, what.body,
                          what.cookie, what.peer, std::to_string(++counter)};
    service->handle(std::move(request), [promise](http::response answer) {
        promise->set_value({answer.status, std::move(answer.body), std::move(answer.set_cookie),
                            std::move(answer.content_type), std::move(answer.on_sent)});
    });
    return future;
}

reply harness::ask(const wish& what) {
    auto future = begin(what);
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(60);
    while (future.wait_for(std::chrono::milliseconds(10)) != std::future_status::ready) {
        timer.turn(std::chrono::milliseconds(0));
        if (std::chrono::steady_clock::now() > deadline) {
            ADD_FAILURE() << "no answer to " << what.path;
            return {};
        }
    }
    auto got = future.get();
    if (got.sent) got.sent(true);
    return got;
}

std::map<std::pair<std::string, std::string>, std::int64_t> harness::figures() {
    static const std::string before = "tavrok_requests_total{path=\"";
    static const std::string between = "\",outcome=\"";
    std::map<std::pair<std::string, std::string>, std::int64_t> all;
    std::istringstream text(ask({"metrics", "", "", "127.0.0.1", "GET"}).body);
    for (std::string line; std::getline(text, line);) {
        if (!line.starts_with(before)) continue;
        const auto path_end = line.find(between);
        const auto outcome = path_end + between.size();
        const auto outcome_end = line.find("\"} ", outcome);
        all[{line.substr(before.size(), path_end - before.size()),
             line.substr(outcome, outcome_end - outcome)}] = std::stoll(line.substr(outcome_end + 3));
    }
    return all;
}

std::int64_t harness::counted(const std::string& path, const std::string& outcome) {
    const auto all = figures();
    const auto at = all.find({path, outcome});
    if (at != all.end()) return at->second;
    ADD_FAILURE() << "no such figure: " << path << " " << outcome;
    return -1;
}

std::int64_t harness::make_company(const std::string& name, bool operator_company) {
    std::int64_t id = 0;
    store::write_now(*database, [&](store::connection& db) {
        id = domain::create_company(db, name, operator_company, now);
    });
    return id;
}

domain::user_key harness::make_user(std::int64_t company, const std::string& name, int type,
                                    const std::vector<grant>& grants) {
    domain::user_key key{company, 0};
    store::write_now(*database, [&](store::connection& db) {
        key.user =
            domain::create_user(db, {company, name, name + " real", stored_password(), type, "", ""}, now);
        for (const auto& group : m_menu) {
            for (const auto& page : group.child) {
                for (const auto& right : page.child) {
                    if (std::find(grants.begin(), grants.end(), grant(page.action, right.action)) ==
                        grants.end())
                        continue;
                    for (const auto row : {group.id, page.id, right.id})
                        domain::grant_row(db, key, row, now);
                }
            }
        }
    });
    return key;
}

std::string harness::session_of(const domain::user_key& user) {
    std::string token;
    store::write_now(*database, [&](store::connection& db) {
        token = domain::open_session(db, user.company, user.user, "192.0.2.9", now);
    });
    return token;
}

std::string harness::administrator(const std::string& name, bool operator_company) {
    return session_of(make_user(make_company(name + " company", operator_company), name, 1));
}

const std::string& harness::operators_session() {
    if (m_operators_session.empty()) m_operators_session = administrator("operators administrator", true);
    return m_operators_session;
}

std::vector<grant> harness::all_grants() {
    std::vector<grant> all;
    for (const auto& group : m_menu)
        for (const auto& page : group.child)
            for (const auto& right : page.child)
                all.emplace_back(page.action, right.action);
    return all;
}

domain::principal harness::principal_of(const std::string& cookie) {
    domain::principal who;
    store::read_now(*database, [&](store::connection& db) {
        who = domain::resume(db, cookie, now).value_or(domain::principal{});
    });
    EXPECT_NE(who.user, 0);
    return who;
}

std::int64_t harness::add_partner(const std::string& cookie, int type, const std::string& name) {
    const auto who = principal_of(cookie);
    std::int64_t id = 0;
    store::write_now(*database, [&](store::connection& db) {
        domain::partner one;
        one.type = type;
        one.name = name;
        one.phone = "010";
        one.address = "here";
        id = domain::add_partner(db, who, one, now).id;
    });
    return id;
}

std::int64_t harness::partners_of(const std::string& cookie) {
    const auto who = principal_of(cookie);
    domain::count_cache counts;
    std::int64_t total = 0;
    store::read_now(*database, [&](store::connection& db) {
        total = domain::list_partners(db, who, {}, 1, 1, counts).total;
    });
    return total;
}

} // namespace tavrok::test
