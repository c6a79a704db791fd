#pragma once

#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <functional>
#include <future>
#include <memory>
#include <optional>
#include <string>
#include <thread>

#include "store/database.h"
#include "store/migrations.h"
#include "support/scratch_database.h"

namespace tavrok::test {

/** Starts a write; the future holds its outcome. */
inline std::future<void> start_write(store::database& where, store::job work) {
    auto ended = std::make_shared<std::promise<void>>();
    auto outcome = ended->get_future();
    where.write(std::move(work), [ended](const std::exception_ptr& failure) {
        failure ? ended->set_exception(failure) : ended->set_value();
    });
    return outcome;
}

/** The class of the store's error that `act` throws; none when it throws nothing. */
inline std::optional<store::error_kind> kind_of(const std::function<void()>& act) {
    try {
        act();
    } catch (const store::error& failure) {
        return failure.kind();
    }
    return std::nullopt;
}

inline std::optional<store::error_kind> kind_of(std::future<void>& outcome) {
    return kind_of([&outcome] { outcome.get(); });
}

inline store::statement unnamed(const std::string& sql) {
    return {"", sql};
}

inline store::dialect dialect_of(const std::string& engine) {
    return engine == "sqlite" ? store::dialect::sqlite : store::dialect::postgresql;
}

/** Makes tables; `sql` is one statement with the tokens of a migration. */
inline void define(scratch_database& where, const std::string& engine, const std::string& sql) {
    store::write_now(*where, [&](store::connection& with) {
        with.execute(unnamed(store::in_dialect(sql, dialect_of(engine))), {});
    });
}

/** What a query of one integer gives. */
inline std::int64_t number(store::database& where, const std::string& sql) {
    std::int64_t result = 0;
    store::read_now(where, [&](store::connection& with) {
        with.query(unnamed(sql), {}, [&](const store::row& one) { result = one.integer(0); });
    });
    return result;
}

inline void write(store::database& where, const std::string& sql,
                  std::initializer_list<store::value> bound = {}) {
    store::write_now(where, [&](store::connection& with) { with.execute(unnamed(sql), bound); });
}

/** Looks again and again until `holds` or ten seconds are over. */
inline bool comes_true(const std::function<bool()>& holds) {
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(10);
    while (!holds()) {
        if (std::chrono::steady_clock::now() > deadline) return false;
        std::this_thread::sleep_for(std::chrono::milliseconds(5));
    }
    return true;
}

/** A job that keeps a thread of the store busy until it is let go. */
class held_job {
public:
    explicit held_job(store::database& where)
        : m_outcome(start_write(where, [this, go = m_go.get_future().share()](store::connection&) {
              if (!m_told.exchange(true)) m_started.set_value();
              go.wait();
          })) {
        m_started.get_future().wait();
    }
    ~held_job() { release(); }
    void release() {
        if (m_outcome.valid()) {
            m_go.set_value();
            m_outcome.get();
        }
    }

private:
    std::promise<void> m_go;
    std::promise<void> m_started;
    std::atomic<bool> m_told{false};
    std::future<void> m_outcome;
};

/** Every test of the contract runs on each of these. */
class on_each_engine : public ::testing::TestWithParam<std::string> {
protected:
    void SetUp() override {
        SKIP_WITHOUT(GetParam());
        m_scratch = std::make_unique<scratch_database>(GetParam());
    }
    scratch_database& scratch() { return *m_scratch; }
    store::database& db() { return **m_scratch; }
    void define(const std::string& sql) { test::define(*m_scratch, GetParam(), sql); }

private:
    std::unique_ptr<scratch_database> m_scratch;
};

inline std::string engine_name(const ::testing::TestParamInfo<std::string>& about) {
    return about.param;
}

} // namespace tavrok::test

#define ON_EACH_ENGINE(suite)                                                                      \
    INSTANTIATE_TEST_SUITE_P(engines, suite,                                                       \
                             ::testing::Values("sqlite", "postgresql", "postgresql_serializable"), \
                             tavrok::test::engine_name)
