#pragma once

#include <chrono>
#include <memory>
#include <string>
#include <vector>

#include "store/database.h"

namespace tavrok::test {

/** The engines that a test of the service runs on: values for a parameterised test. */
inline std::vector<std::string> engines() {
    return {"sqlite", "postgresql"};
}

/** A fresh, migrated database that goes when the object goes. SQLite: a file in a folder of its own.
 * PostgreSQL: a database of its own on the server that TAVROK_TEST_POSTGRESQL names. */
class scratch_database {
public:
    /** `engine` is "sqlite", "postgresql" or "postgresql_serializable". */
    explicit scratch_database(const std::string& engine);
    ~scratch_database();
    scratch_database(const scratch_database&) = delete;
    scratch_database& operator=(const scratch_database&) = delete;

    /** Empty when the engine can be tested here, else why not: words for GTEST_SKIP. */
    static std::string missing(const std::string& engine);

    /** What open() takes; change it before the first get(). */
    store::options& options() { return m_options; }
    /** The database, opened at the first call. */
    store::database& get();
    store::database* operator->() { return &get(); }
    store::database& operator*() { return get(); }
    /** Closes it; the next get() opens it again. */
    void close();
    /** True as soon as nobody is connected any more. PostgreSQL: what a killed client had begun may still be
     * ended by then. Close the database first. */
    bool left_within(std::chrono::milliseconds time) const;
    /** Folder for files beside the database. */
    const std::string& folder() const { return m_folder; }

private:
    std::string m_folder;
    std::string m_name; /**< of the database on the PostgreSQL server; empty for SQLite */
    store::options m_options;
    std::unique_ptr<store::database> m_open;
};

} // namespace tavrok::test

/** Ends the test as skipped when `engine` cannot be tested here. */
#define SKIP_WITHOUT(engine) \
    if (const auto why = tavrok::test::scratch_database::missing(engine); !why.empty()) GTEST_SKIP() << why
