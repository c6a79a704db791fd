#include <gtest/gtest.h>

#include <algorithm>
#include <csignal>
#include <cstdlib>
#include <iostream>
#include <thread>

#include "document_clerk.h"

namespace tavrok::test {

namespace {

constexpr int g_clerks = 6;

int kills() {
    return std::getenv("TAVROK_NIGHTLY") != nullptr ? 50 : 10;
}

/** A new one each time; TAVROK_SEED repeats a run's choices. */
std::uint32_t chosen_seed() {
    const char* given = std::getenv("TAVROK_SEED");
    return given != nullptr ? static_cast<std::uint32_t>(std::stoul(given)) : std::random_device{}();
}

class crash : public testing::TestWithParam<std::string> {
protected:
    void SetUp() override {
        SKIP_WITHOUT(GetParam());
        m_seed = chosen_seed();
        m_chance.seed(m_seed);
        m_site = std::make_unique<documents_site>(GetParam(), g_clerks);
        const auto service = m_site->start();
        m_world = std::make_unique<stock_control_world>(m_site->furnish(service->port()));
        ASSERT_EQ(service->stop(), 0);
        for (const auto& one : m_site->actors())
            m_clerks.push_back(std::make_unique<document_clerk>(*m_world, one, m_chance()));
    }

    std::int64_t below(std::int64_t end) {
        return std::uniform_int_distribution<std::int64_t>(0, end - 1)(m_chance);
    }

    /** All clerks work on a new service; it gets the signal once they were told so many answers and a random
     * moment has passed. They stop when their connections end. */
    std::unique_ptr<running_service> burst(std::int64_t answers, int signal) {
        auto service = m_site->start();
        std::atomic<std::int64_t> told{0};
        const std::atomic<bool> enough{false};
        std::vector<std::thread> at_work;
        for (const auto& one : m_clerks)
            at_work.emplace_back([&, clerk = one.get()] { clerk->work(service->port(), told, enough); });
        const auto until = std::chrono::steady_clock::now() + patience;
        const auto glance = std::chrono::milliseconds(1);
        while (told < answers && std::chrono::steady_clock::now() < until &&
               !service->program().exit_code(glance)) {
        }
        std::this_thread::sleep_for(std::chrono::microseconds(below(20'000)));
        service->program().signal(signal);
        for (auto& one : at_work)
            one.join();
        EXPECT_GE(told, answers);
        return service;
    }

    void kill_in_burst() {
        const auto service = burst(below(250), SIGKILL);
        EXPECT_EQ(service->program().exit_code(patience), 128 + SIGKILL) << service->program().said();
    }

    void prove() {
        EXPECT_EQ(m_site->faults(), "");
        for (const auto& one : m_clerks)
            EXPECT_EQ(one->judge(*m_site->database()), "");
        m_site->database().close();
    }

    tally sum() const {
        tally all;
        for (const auto& one : m_clerks) {
            all.acknowledged += one->figures().acknowledged;
            all.refused += one->figures().refused;
            all.unknown += one->figures().unknown;
            all.resent += one->figures().resent;
            all.replays += one->figures().replays;
        }
        return all;
    }

    std::int64_t documents(int module) const {
        std::int64_t all = 0;
        for (const auto& one : m_clerks)
            all += one->documents(module);
        return all;
    }

    std::uint32_t m_seed{0};
    std::mt19937 m_chance;
    std::unique_ptr<documents_site> m_site;
    std::unique_ptr<stock_control_world> m_world;
    std::vector<std::unique_ptr<document_clerk>> m_clerks;
};

} // namespace

TEST_P(crash, a_killed_service_lost_nothing_that_it_acknowledged_and_left_nothing_half) {
    SCOPED_TRACE("TAVROK_SEED=" + std::to_string(m_seed));
    for (int kill = 1; kill <= kills() && !HasFailure(); ++kill) {
        SCOPED_TRACE("kill " + std::to_string(kill));
        kill_in_burst();
        // Every third time the next service begins at once, while the database may still be busy with the
        // last requests of the killed one.
        if (kill % 3 != 0) prove();
    }
    const auto service = m_site->start();
    for (const auto& one : m_clerks)
        EXPECT_TRUE(one->settle(service->port()));
    EXPECT_EQ(service->stop(), 0);
    prove();
    const auto all = sum();
    std::cout << GetParam() << ": inbound " << documents(1) << ", outbound " << documents(2)
              << ", stocktakings " << documents(3) << ", transfers " << documents(4) << "\n";
    std::cout << GetParam() << ": " << kills() << " kills, " << all.acknowledged << " deeds acknowledged, "
              << all.refused << " refused, " << all.unknown << " unknown, " << all.resent
              << " of them resent and answered, " << all.replays
              << " found to have taken effect before (TAVROK_SEED=" << m_seed << ")\n";
    EXPECT_GT(all.acknowledged, kills() * 10);
    EXPECT_GT(all.unknown, 0);
    for (const int module : {1, 2, 3, 4})
        EXPECT_GT(documents(module), 0) << "module " << module;
}

TEST_P(crash, a_service_that_is_told_to_stop_answers_what_it_has_taken) {
    SCOPED_TRACE("TAVROK_SEED=" + std::to_string(m_seed));
    for (int stop = 1; stop <= 3; ++stop) {
        const auto service = burst(100 + below(200), SIGTERM);
        EXPECT_EQ(service->program().exit_code(patience), 0) << service->program().said();
        prove();
        for (const auto& one : m_clerks)
            EXPECT_FALSE(one->had_effect()) << "a request took effect and was not answered";
    }
}

INSTANTIATE_TEST_SUITE_P(engine, crash, testing::ValuesIn(engines()),
                         [](const auto& chosen) { return chosen.param; });

} // namespace tavrok::test
