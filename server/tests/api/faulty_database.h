#pragma once

#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <functional>
#include <mutex>
#include <vector>

#include "store/database.h"

namespace tavrok::test {

/** Passes everything on to a database, but for writes or reads that fail or wait as they are told. */
class faulty_database final : public store::database {
public:
    enum class fault {
        none,
        refuse_write,
        refuse_busy, /**< at the door */
        lose_after_commit,
        lose_before_commit,
        clash,        /**< somebody else wrote the same; does not run */
        busy_in_job,  /**< runs, then a lock is not to be had */
        hold_job,     /**< does not run before let_go() */
        hold_outcome, /**< runs, and tells so at let_go() */
        refuse_read
    };

    explicit faulty_database(store::database& real) : m_real(real) {}
    std::atomic<fault> next{fault::none};
    std::vector<fault> then;                /**< of the writes after it */
    std::atomic<fault> always{fault::none}; /**< of those after them */
    std::atomic<int> writes{0};

    void read(store::job work, store::completion done) override {
        if (next == fault::refuse_read) return fail(done, store::error_kind::busy);
        m_real.read(std::move(work), std::move(done));
    }
    void write(store::job work, store::completion done) override {
        using kind = store::error_kind;
        ++writes;
        switch (take()) {
            case fault::refuse_write:
                return fail(done, kind::full);
            case fault::refuse_busy:
                return fail(done, kind::busy);
            case fault::lose_before_commit:
                return fail(done, kind::lost);
            case fault::clash:
                return fail(done, kind::unique);
            case fault::lose_after_commit:
                return m_real.write(std::move(work), [done](std::exception_ptr failure) {
                    EXPECT_FALSE(failure);
                    fail(done, kind::lost);
                });
            case fault::busy_in_job:
                return m_real.write(
                    [work](store::connection& db) {
                        work(db);
                        throw store::error(kind::busy, "told to wait in vain");
                    },
                    std::move(done));
            case fault::hold_job:
                return hold([this, work, done] { m_real.write(work, done); });
            case fault::hold_outcome:
                return m_real.write(std::move(work), [this, done](std::exception_ptr failure) {
                    hold([done, failure] { done(failure); });
                });
            default:
                m_real.write(std::move(work), std::move(done));
        }
    }
    bool ready() const override { return next != fault::refuse_read && m_real.ready(); }
    void stop() override { m_real.stop(); }

    /** Waits until something is held. */
    void wait_held() {
        std::unique_lock lock(m_mutex);
        const bool held = m_changed.wait_for(lock, std::chrono::seconds(60), [this] { return bool(m_held); });
        if (!held) ADD_FAILURE() << "nothing is held";
    }
    void let_go() {
        wait_held();
        std::function<void()> held;
        {
            const std::lock_guard lock(m_mutex);
            held = std::exchange(m_held, nullptr);
        }
        if (held) held();
    }

private:
    fault take() {
        const auto told = next.exchange(then.empty() ? fault::none : then.front());
        if (!then.empty()) then.erase(then.begin());
        return told == fault::none ? always.load() : told;
    }
    void hold(std::function<void()> what) {
        const std::lock_guard lock(m_mutex);
        m_held = std::move(what);
        m_changed.notify_all();
    }
    static void fail(const store::completion& done, store::error_kind kind) {
        done(std::make_exception_ptr(store::error(kind, "told to fail")));
    }

    store::database& m_real;
    std::mutex m_mutex;
    std::condition_variable m_changed;
    std::function<void()> m_held;
};

} // namespace tavrok::test
