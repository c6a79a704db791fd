#include <gtest/gtest.h>

#include <atomic>
#include <thread>

#include "api/dispatcher.h"
#include "api/harness.h"
#include "api/registry.h"
#include "domain/refused.h"

namespace tavrok::test {
namespace {

/** A dispatcher of its own with one endpoint that hashes, and a hashing thread that can be held. */
class hashed_work_test : public testing::TestWithParam<std::string> {
protected:
    void SetUp() override {
        SKIP_WITHOUT(GetParam());
        world = std::make_unique<harness>(GetParam());
        cookie = world->administrator("owner");
        m_options.pepper = "pepper";
        m_routes.add({.module = "m",
                      .action = "change",
                      .keys = {api::text_key("word"), api::text_key("password")},
                      .answer = api::form::count,
                      .allowed = {.needs = api::access::who::administrator},
                      .work = api::hashed_work{[this](const api::fields& form) { return password(form); },
                                               [this](api::context& request) { run(request); }}});
        m_figures.emplace(m_routes);
        m_with.emplace(api::services{*world->database, m_options, [this] { return world->now.load(); },
                                     [](std::chrono::milliseconds, std::function<void()>) {},
                                     m_hashing.emplace(1, 2), *m_hashing, m_counts});
        m_dispatcher.emplace(*m_with, *m_figures);
    }
    void TearDown() override {
        if (!m_dispatcher) return;
        release();
        m_dispatcher->drain();
    }

    std::future<reply> begin(const std::string& body, const std::string& as) {
        auto promise = std::make_shared<std::promise<reply>>();
        auto future = promise->get_future();
        m_dispatcher->handle(
            *m_routes.find("m/change"), {"POST", "m/change", body, as, "192.0.2.1", "1"},
            [promise](http::response out) {
                promise->set_value({out.status, std::move(out.body), "", "", std::move(out.on_sent)});
            });
        return future;
    }
    std::string ask(const std::string& body, const std::string& as) {
        auto got = begin(body, as).get();
        if (got.sent) got.sent(true);
        return got.body;
    }
    /** Keeps the hashing thread busy until release(). */
    void hold() {
        auto busy = std::make_shared<std::promise<void>>();
        auto running = busy->get_future();
        ASSERT_TRUE(m_hashing->submit([this, busy, free = m_held.get_future().share()] {
            m_hashing_thread = std::this_thread::get_id();
            busy->set_value();
            free.wait();
        }));
        running.wait();
    }
    void release() {
        if (!m_released.exchange(true)) m_held.set_value();
    }
    void wait_for_reads(int count) {
        while (reads < count)
            std::this_thread::yield();
    }

    std::unique_ptr<harness> world;
    std::string cookie;
    std::atomic<int> reads{0};
    std::atomic<int> runs{0};
    std::string hash;

private:
    std::optional<std::string> password(const api::fields& form) {
        ++reads;
        EXPECT_NE(std::this_thread::get_id(), m_network_thread);
        if (form.text("password") == "bad") throw domain::refused("no password");
        if (!form.has("password")) return std::nullopt;
        return std::string(form.text("password"));
    }
    void run(api::context& request) {
        ++runs;
        EXPECT_NE(std::this_thread::get_id(), m_network_thread);
        hash = request.password_hash;
        request.answer = "1";
    }

    const std::thread::id m_network_thread{std::this_thread::get_id()};
    std::thread::id m_hashing_thread;
    api::settings m_options;
    domain::count_cache m_counts;
    std::optional<api::work_queue> m_hashing;
    std::optional<api::services> m_with;
    api::registry m_routes;
    std::optional<api::metrics> m_figures;
    std::optional<api::dispatcher> m_dispatcher;
    std::promise<void> m_held;
    std::atomic<bool> m_released{false};
};

TEST_P(hashed_work_test, the_work_gets_the_hash_of_the_password) {
    EXPECT_EQ(ask("word=a&password=secret", cookie), "1");
    EXPECT_TRUE(domain::verify_password("pepper", "secret", hash));
    EXPECT_EQ(ask("word=a", cookie), "1");
    EXPECT_EQ(hash, "") << "nothing to hash";
    EXPECT_EQ(runs, 2);
}

TEST_P(hashed_work_test, who_is_not_let_in_costs_no_hash) {
    const auto nobody = world->session_of(world->make_user(world->principal_of(cookie).company, "n", 2));
    hold();
    EXPECT_EQ(ask("password=secret", ""), "7");
    EXPECT_EQ(ask("password=secret", std::string(64, 'a')), "7");
    EXPECT_EQ(ask("password=secret", nobody), "0");
    EXPECT_EQ(ask("password=\xFF", cookie), "0");
    EXPECT_EQ(reads, 0);
    EXPECT_EQ(ask("password=bad", cookie), "0");
    EXPECT_EQ(runs, 0);
}

TEST_P(hashed_work_test, a_network_thread_never_waits_for_a_hash) {
    hold();
    auto pending = begin("password=secret", cookie);
    wait_for_reads(1);
    EXPECT_EQ(ask("word=other", cookie), "1") << "what needs no hash overtakes";
    EXPECT_NE(pending.wait_for(std::chrono::seconds(0)), std::future_status::ready);
    EXPECT_EQ(runs, 1);
    release();
    EXPECT_EQ(pending.get().body, "1");
    EXPECT_EQ(runs, 2);
}

TEST_P(hashed_work_test, a_full_queue_is_a_refusal) {
    hold();
    std::vector<std::future<reply>> pending;
    for (int i = 0; i < 3; ++i) {
        pending.push_back(begin("word=" + std::to_string(i) + "&password=secret", cookie));
        if (i < 2) wait_for_reads(i + 1);
    }
    std::size_t refused = 0;
    while (refused == 0) {
        for (auto& one : pending)
            if (one.valid() && one.wait_for(std::chrono::seconds(0)) == std::future_status::ready) {
                EXPECT_EQ(one.get().body, "0");
                ++refused;
            }
        std::this_thread::yield();
    }
    release();
    for (auto& one : pending)
        if (one.valid()) {
            EXPECT_EQ(one.get().body, "1");
        }
    EXPECT_EQ(refused, 1u);
    EXPECT_EQ(runs, 2);
    EXPECT_EQ(ask("word=9&password=secret", cookie), "1") << "the next one goes through";
}

TEST_P(hashed_work_test, the_session_is_looked_at_again_before_the_write) {
    hold();
    auto pending = begin("password=secret", cookie);
    wait_for_reads(1);
    const auto who = world->principal_of(cookie);
    store::write_now(*world->database,
                     [&](store::connection& db) { domain::void_access(db, who.company, who.user); });
    release();
    EXPECT_EQ(pending.get().body, "7");
    EXPECT_EQ(runs, 0);
}

TEST_P(hashed_work_test, a_repeat_gets_the_same_answer_and_takes_effect_once) {
    auto one = begin("password=secret", cookie);
    auto two = begin("password=secret", cookie);
    auto first = one.get();
    first.sent(false);
    auto second = two.get();
    EXPECT_EQ(second.body, "1");
    if (second.sent) second.sent(false);
    auto third = begin("password=secret", cookie).get();
    EXPECT_EQ(third.body, "1");
    EXPECT_EQ(runs, 1);
    third.sent(true);
    EXPECT_EQ(ask("password=secret", cookie), "1");
    EXPECT_EQ(runs, 2) << "a new wish";
}

INSTANTIATE_TEST_SUITE_P(engines, hashed_work_test, testing::ValuesIn(engines()));

} // namespace
} // namespace tavrok::test
