#include "store/postgresql/monitor.h"

#include <spdlog/spdlog.h>

namespace tavrok::store {

namespace {

constexpr std::chrono::seconds g_interval{1};
constexpr std::chrono::seconds g_patience{2};
constexpr std::chrono::seconds g_stale_after{4};

} // namespace

pg_monitor::pg_monitor(const options& how)
    : m_how(how), m_last_answer(std::chrono::steady_clock::now()), m_thread([this] { watch(); }) {}

pg_monitor::~pg_monitor() {
    {
        const std::lock_guard hold(m_guard);
        m_stopping = true;
    }
    m_changed.notify_all();
    m_thread.join();
}

bool pg_monitor::answers() const {
    return std::chrono::steady_clock::now() - m_last_answer.load() < g_stale_after;
}

void pg_monitor::watch() {
    std::unique_lock hold(m_guard);
    while (!m_stopping) {
        hold.unlock();
        ask();
        hold.lock();
        m_changed.wait_for(hold, g_interval, [this] { return m_stopping; });
    }
}

void pg_monitor::ask() {
    try {
        const auto deadline = pg_session::clock::now() + g_patience;
        if (!m_session || !m_session->usable()) m_session = std::make_unique<pg_session>(m_how, deadline);
        m_session->run("SELECT 1", deadline);
        m_last_answer = std::chrono::steady_clock::now();
    } catch (const error& failure) {
        spdlog::warn("store: the database server does not answer: {}", failure.what());
        m_session.reset();
    }
}

} // namespace tavrok::store
