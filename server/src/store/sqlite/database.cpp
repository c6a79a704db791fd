#include "store/sqlite/database.h"

#include <spdlog/spdlog.h>

#include <algorithm>
#include <atomic>
#include <thread>
#include <utility>
#include <vector>

#include "store/sqlite/connection.h"
#include "store/sqlite/files.h"
#include "store/task_queue.h"

namespace tavrok::store {

namespace {

using std::chrono::steady_clock;

constexpr std::chrono::milliseconds g_idle_after{1000};
constexpr std::chrono::seconds g_stale_after{5};
constexpr int g_frames_before_checkpoint = 1000;
constexpr std::int64_t g_log_limit = 64LL << 20;
constexpr std::chrono::milliseconds g_patience_with_readers{500};
constexpr int g_frame_header = 24;

const statement g_probe{"probe", "SELECT count(*) FROM schema_version"};

class sqlite_database final : public database {
public:
    explicit sqlite_database(const options& how);
    ~sqlite_database() override { stop(); }

    void read(job work, completion done) override {
        m_reads.push({task::kind::read, std::move(work), std::move(done)});
    }
    void write(job work, completion done) override {
        m_writes.push({task::kind::write, std::move(work), std::move(done)});
    }
    bool ready() const override;
    void stop() override;
    activity figures() const override;

private:
    /** A write of the group under way, and how it went so far. */
    struct entry {
        const task* what;
        std::exception_ptr failure;
    };

    std::unique_ptr<sqlite_connection> connect(sqlite_connection::access rights);
    void write_loop();
    void read_loop(sqlite_connection& with);
    void run_group(const std::vector<task>& group);
    void attempt(std::vector<entry>& group);
    bool run_one(entry& one);
    void rest(sqlite_connection& with);
    void checkpoint_when_due();
    void idle();
    /** Throws when nothing may be written now. */
    void check_writable() const;
    void doubt(const std::string& why);
    void beat() { m_last_beat = steady_clock::now(); }

    const options m_how;
    const std::string m_path;
    file_lock m_lock;
    std::shared_ptr<meter> m_figures{std::make_shared<meter>()};
    task_queue m_writes;
    task_queue m_reads;
    std::atomic<bool> m_doubtful{false};
    std::atomic<bool> m_stopped{false};
    std::atomic<steady_clock::time_point> m_last_beat{};
    std::unique_ptr<sqlite_connection> m_writer;
    std::vector<std::unique_ptr<sqlite_connection>> m_readers;
    std::vector<std::thread> m_threads;
    std::mutex m_stopping;
    int m_checkpointed_frames{0};
};

std::string usable_path(const std::string& location) {
    auto path = resolved_path(location);
    check_folder(path);
    return path;
}

sqlite_database::sqlite_database(const options& how)
    : m_how(how), m_path(usable_path(how.location)), m_lock(m_path), m_writes(how), m_reads(how) {
    create_private_file(m_path);
    m_writer = connect(sqlite_connection::access::write);
    const auto now =
        std::chrono::duration_cast<std::chrono::seconds>(std::chrono::system_clock::now().time_since_epoch());
    migrate(*m_writer, known_migrations(), now.count());
    m_writer->limit_statements(how.statement_timeout);
    for (unsigned i = 0; i < std::max(1U, how.readers); ++i) {
        m_readers.push_back(connect(sqlite_connection::access::read));
        m_readers.back()->limit_statements(how.statement_timeout);
    }
    beat();
    m_threads.emplace_back([this] { write_loop(); });
    for (auto& reader : m_readers) {
        m_threads.emplace_back([this, with = reader.get()] { read_loop(*with); });
    }
}

std::unique_ptr<sqlite_connection> sqlite_database::connect(sqlite_connection::access rights) {
    return std::make_unique<sqlite_connection>(sqlite_connection::setup{
        m_path, rights, m_how.lock_timeout, m_figures, [this](const std::string& why) { doubt(why); }});
}

bool sqlite_database::ready() const {
    return !m_doubtful && !m_stopped && steady_clock::now() - m_last_beat.load() < g_stale_after;
}

activity sqlite_database::figures() const {
    auto now = m_figures->read();
    now.waiting_writes = m_writes.waiting(task::kind::write);
    now.waiting_reads = m_reads.waiting(task::kind::read);
    return now;
}

void sqlite_database::stop() {
    const std::lock_guard hold(m_stopping);
    if (m_stopped.exchange(true)) return;
    m_writes.close();
    m_reads.close();
    for (auto& one : m_threads) {
        one.join();
    }
    m_readers.clear();
    try {
        if (!m_doubtful) m_writer->truncate_log(std::chrono::milliseconds(0));
    } catch (const error& failure) {
        // Nothing is lost by it: the log is read again at the next start.
        spdlog::warn("store: the last checkpoint failed: {}", failure.what());
    }
    m_writer.reset();
}

void sqlite_database::write_loop() {
    while (auto group = m_writes.take_all(g_idle_after)) {
        if (group->empty()) {
            idle();
        } else {
            run_group(*group);
            checkpoint_when_due();
        }
    }
}

void sqlite_database::read_loop(sqlite_connection& with) {
    while (auto next = m_reads.pop()) {
        std::exception_ptr failure;
        with.start_job();
        try {
            if (m_doubtful) throw error(error_kind::other, "the database is not to be trusted");
            with.control("BEGIN");
            next->work(with);
            with.finish_job();
        } catch (...) {
            failure = std::current_exception();
        }
        rest(with);
        next->tell(failure);
    }
}

/** Ends a transaction whose outcome does not matter any more. */
void sqlite_database::rest(sqlite_connection& with) {
    try {
        if (with.transaction_open()) with.control("ROLLBACK");
    } catch (const error& failure) {
        spdlog::error("store: a rollback failed: {}", failure.what());
    }
}

void sqlite_database::run_group(const std::vector<task>& group) {
    std::vector<entry> pending;
    for (const auto& one : group) {
        pending.push_back({&one, nullptr});
    }
    // A serious error (no space, a time-out in a write) makes SQLite roll back the whole group. The job that
    // met it has failed by then and the others run again without it, so the group gets smaller each time.
    while (!pending.empty()) {
        attempt(pending);
        std::vector<entry> again;
        for (const auto& one : pending) {
            if (!one.what) continue;
            again.push_back(one);
        }
        pending = std::move(again);
    }
}

/** Runs the group once. Entries that came to an end are told and lose their task; the others must run again.
 */
void sqlite_database::attempt(std::vector<entry>& group) {
    bool whole = true;
    std::size_t succeeded = 0;
    std::exception_ptr all_failed;
    try {
        check_writable();
        m_writer->start_job();
        m_writer->control("BEGIN IMMEDIATE");
        for (auto& one : group) {
            one.failure = nullptr;
            whole = run_one(one);
            if (!whole) break;
            if (!one.failure) ++succeeded;
        }
        m_writer->start_job();
        if (m_doubtful) check_writable();
        if (whole) m_writer->control("COMMIT");
    } catch (...) {
        all_failed = std::current_exception();
        rest(*m_writer);
    }
    beat();
    if (whole && !all_failed && succeeded > 0) m_figures->commit_made(succeeded);
    for (auto& one : group) {
        const bool ended = whole || one.failure;
        if (!ended) continue;
        one.what->tell(one.failure ? one.failure : all_failed);
        one.what = nullptr;
    }
}

/** False when the transaction of the group is gone. */
bool sqlite_database::run_one(entry& one) {
    m_writer->start_job();
    m_writer->control("SAVEPOINT job");
    try {
        one.what->work(*m_writer);
        m_writer->finish_job();
    } catch (...) {
        one.failure = std::current_exception();
    }
    if (!m_writer->transaction_open()) {
        if (!one.failure) {
            one.failure = std::make_exception_ptr(error(error_kind::other, "a job ended the transaction"));
        }
        return false;
    }
    if (one.failure) m_writer->control("ROLLBACK TO job");
    m_writer->control("RELEASE job");
    beat();
    return true;
}

void sqlite_database::check_writable() const {
    if (m_doubtful) throw error(error_kind::other, "the database is not to be trusted");
    const auto left = free_bytes(m_path);
    if (left < m_how.minimum_free_bytes) {
        throw error(error_kind::full, "read only: " + std::to_string(left >> 20) + " MiB of disk are left");
    }
}

void sqlite_database::checkpoint_when_due() {
    const int frames = m_writer->wal_frames();
    if (frames < m_checkpointed_frames) m_checkpointed_frames = 0; // the log began anew
    const bool much = frames - m_checkpointed_frames >= g_frames_before_checkpoint;
    if (m_doubtful || !much) return;
    try {
        const auto bytes = static_cast<std::int64_t>(frames) * (m_writer->page_size() + g_frame_header);
        if (bytes > g_log_limit && m_writer->truncate_log(g_patience_with_readers)) {
            m_checkpointed_frames = 0;
            return;
        }
        m_writer->checkpoint();
        m_checkpointed_frames = frames;
    } catch (const error& failure) {
        spdlog::error("store: a checkpoint failed: {}", failure.what());
    }
}

void sqlite_database::idle() {
    if (m_doubtful) return;
    try {
        if (m_writer->wal_frames() > 0 && m_writer->truncate_log(std::chrono::milliseconds(0))) {
            m_checkpointed_frames = 0;
        }
        m_writer->start_job();
        m_writer->query(g_probe, {}, [](const row&) {});
        beat();
    } catch (const error& failure) {
        spdlog::error("store: the database does not answer: {}", failure.what());
    }
}

void sqlite_database::doubt(const std::string& why) {
    if (m_doubtful.exchange(true)) return;
    spdlog::critical("store: the database is not to be trusted any more: {}", why);
    if (m_how.on_doubt) m_how.on_doubt(why);
}

} // namespace

std::unique_ptr<database> open_sqlite(const options& how) {
    return std::make_unique<sqlite_database>(how);
}

} // namespace tavrok::store
