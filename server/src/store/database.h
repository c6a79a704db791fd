#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <exception>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "store/connection.h"

namespace tavrok::store {

/** What runs inside a transaction. It may run more than once (PostgreSQL retries), so it changes nothing but
 * the database and variables that it sets anew at each run. An exception rolls this job back, and only this
 * one. */
using job = std::function<void(connection&)>;
/** Told once how the job ended: null after success (a write is durable by then), else what failed. Runs on a
 * thread of the store and must be short and not throw. Work that is refused at the door (queue full, stopped)
 * is told so by the calling thread, before the call returns. */
using completion = std::function<void(std::exception_ptr)>;

/** How often a statement ran, and for how long in all. */
struct statement_figures {
    std::uint64_t count{0};
    std::chrono::nanoseconds time{0};
};

/** What a database did since it was opened, and what waits now. */
struct activity {
    std::map<std::string, statement_figures> statements; /**< by name */
    std::uint64_t commits{0};                            /**< write transactions made durable */
    std::uint64_t committed_jobs{0};                     /**< writes in them */
    std::size_t waiting_writes{0};
    std::size_t waiting_reads{0};
};

/** A database with its threads. All calls are safe from any thread and return at once. */
class database {
public:
    virtual ~database() = default;
    /** Runs `work` in a read-only transaction. */
    virtual void read(job work, completion done) = 0;
    /** Runs `work` in a write transaction; `done` comes after the commit is durable. A full queue ends in
     *  error_kind::busy without running `work`. */
    virtual void write(job work, completion done) = 0;
    /** True while the database answers; never blocks: the state is at most five seconds old. */
    virtual bool ready() const = 0;
    /** Runs what was accepted, refuses new work, joins the threads. Never call it from a job or a completion.
     */
    virtual void stop() = 0;
    /** Figures for the metrics page. */
    virtual activity figures() const { return {}; }
};

struct options {
    /** A file path for SQLite, or a connection string that starts with "postgresql://" or "postgres://". */
    std::string location;
    unsigned readers{3};       /**< SQLite: reader threads; PostgreSQL: size of the pool */
    unsigned queue_limit{256}; /**< writes that may wait */
    std::chrono::milliseconds lock_timeout{3000};
    std::chrono::milliseconds statement_timeout{10000};
    unsigned read_limit{1024}; /**< reads that may wait */
    /** SQLite: with less free disk than this the database is read only; writes end in error_kind::full. */
    std::uint64_t minimum_free_bytes{200ULL << 20};
    std::string isolation{"READ COMMITTED"}; /**< PostgreSQL: of write transactions */
    /** Called once, from a thread of the store, when what is on disk can no longer be trusted (a sync failed,
     * a page is corrupt). From then on everything is refused; the process should end with a failure. */
    std::function<void(const std::string& why)> on_doubt{};
};

/** Opens the database, creates it where that is possible (SQLite) and brings its schema up to date. Throws
 * `error`. */
std::unique_ptr<database> open(const options& how);

/** Blocking forms for tools and tests: they wait and rethrow what the job threw. */
void read_now(database& where, const job& work);
/** Runs the jobs at the same time, as far as there are readers for them, each in a transaction of its own.
 * All have ended when it returns or throws what the first of them in their order threw. */
void read_all_now(database& where, const std::vector<job>& work);
void write_now(database& where, const job& work);

} // namespace tavrok::store
