#include "store/postgresql/database.h"

#include <algorithm>
#include <atomic>
#include <random>
#include <thread>
#include <utility>
#include <vector>

#include "store/postgresql/connection.h"
#include "store/postgresql/monitor.h"
#include "store/task_queue.h"

namespace tavrok::store {

namespace {

constexpr int g_tries = 5;
constexpr int g_first_pause_ms = 5; // doubles with each try, plus as much again by chance

// Readers see one moment through all their statements, as on SQLite.
const std::string g_begin_read = "BEGIN ISOLATION LEVEL REPEATABLE READ READ ONLY";
const std::string g_begin_write = "BEGIN READ WRITE";

class pg_database final : public database {
public:
    explicit pg_database(const options& how);
    ~pg_database() override { stop(); }

    void read(job work, completion done) override {
        m_tasks.push({task::kind::read, std::move(work), std::move(done)});
    }
    void write(job work, completion done) override {
        m_tasks.push({task::kind::write, std::move(work), std::move(done)});
    }
    bool ready() const override { return !m_stopped && m_monitor->answers(); }
    void stop() override;
    activity figures() const override;

private:
    /** How a try ended. */
    struct outcome {
        std::exception_ptr failure;
        bool try_again{false}; /**< nothing took place, and another try may do better */
    };
    /** A thread of the pool with its connection. */
    struct worker {
        std::unique_ptr<pg_connection> link;
        std::minstd_rand chance{std::random_device()()};
        std::thread thread;
    };

    void work_loop(worker& self);
    std::exception_ptr run(worker& self, const task& what);
    outcome attempt(worker& self, const task& what);
    void connect(worker& self);

    const options m_how;
    std::shared_ptr<meter> m_figures{std::make_shared<meter>()};
    task_queue m_tasks;
    std::atomic<bool> m_stopped{false};
    std::mutex m_stopping;
    std::unique_ptr<pg_monitor> m_monitor;
    std::vector<worker> m_workers;
};

pg_database::pg_database(const options& how)
    : m_how(how), m_tasks(how), m_workers(std::max(1U, how.readers)) {
    auto first = std::make_unique<pg_connection>(m_how, m_figures);
    const auto now =
        std::chrono::duration_cast<std::chrono::seconds>(std::chrono::system_clock::now().time_since_epoch());
    migrate(*first, known_migrations(), now.count());
    m_workers.front().link = std::move(first);
    m_monitor = std::make_unique<pg_monitor>(m_how);
    for (auto& one : m_workers) {
        one.thread = std::thread([this, &one] { work_loop(one); });
    }
}

void pg_database::stop() {
    const std::lock_guard hold(m_stopping);
    if (m_stopped.exchange(true)) return;
    m_tasks.close();
    for (auto& one : m_workers) {
        one.thread.join();
        one.link.reset();
    }
}

activity pg_database::figures() const {
    auto now = m_figures->read();
    now.waiting_writes = m_tasks.waiting(task::kind::write);
    now.waiting_reads = m_tasks.waiting(task::kind::read);
    return now;
}

void pg_database::work_loop(worker& self) {
    while (auto next = m_tasks.pop()) {
        next->tell(run(self, *next));
    }
}

std::exception_ptr pg_database::run(worker& self, const task& what) {
    for (int tried = 1;; ++tried) {
        const auto ended = attempt(self, what);
        if (!ended.try_again || tried == g_tries) return ended.failure;
        // Two that got in each other's way must not meet again in step.
        const int longest = g_first_pause_ms << tried;
        const int pause = longest / 2 + std::uniform_int_distribution<int>(0, longest)(self.chance);
        std::this_thread::sleep_for(std::chrono::milliseconds(pause));
    }
}

/** True when the error stands for a transaction that left nothing behind and may go through next time. */
bool worth_another_try(const std::exception_ptr& failure) {
    if (!failure) return false;
    try {
        std::rethrow_exception(failure);
    } catch (const error& failed) {
        return failed.kind() == error_kind::conflict || failed.kind() == error_kind::lost;
    } catch (...) {
        return false;
    }
}

pg_database::outcome pg_database::attempt(worker& self, const task& what) {
    bool committing = false;
    try {
        connect(self);
        self.link->begin(what.what == task::kind::write ? g_begin_write : g_begin_read);
        what.work(*self.link);
        if (self.link->failure()) std::rethrow_exception(self.link->failure());
        committing = true;
        self.link->commit();
        if (what.what == task::kind::write) m_figures->commit_made(1);
        return {};
    } catch (...) {
        outcome ended{std::current_exception(), false};
        if (self.link) {
            // The job may have put words of its own over the error; the link knows what really happened.
            ended.try_again = worth_another_try(self.link->failure());
            // Lost while it was committing: it may have taken place. Only a repeat-safe caller can find out.
            if (committing && !self.link->usable()) ended.try_again = what.what == task::kind::read;
            self.link->rollback();
            if (!self.link->usable()) self.link.reset();
        }
        return ended;
    }
}

/** Makes sure of a connection: one that met any trouble was dropped, and is opened anew here. */
void pg_database::connect(worker& self) {
    if (self.link && self.link->usable()) return;
    self.link.reset();
    self.link = std::make_unique<pg_connection>(m_how, m_figures);
}

} // namespace

std::unique_ptr<database> open_postgresql(const options& how) {
    return std::make_unique<pg_database>(how);
}

} // namespace tavrok::store
