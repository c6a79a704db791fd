#pragma once

#include <openssl/ssl.h>

#include <optional>
#include <string>

#include "support/figures.h"
#include "support/service.h"

namespace bench {

/** What the measures of one database share. */
struct scene {
    std::string label; /**< "SQLite" or "PostgreSQL", stands at the front of every figure */
    bool limits_apply; /**< the limits are stated for SQLite; the other database is reported */
    service_place place;
    SSL_CTX* context;
    figures* found;
};

/** Process start to the first answer of version/wms_check, on a database that exists. */
void measure_start(const scene& where);
/** A list that is paged through. */
struct paged_list {
    std::string name; /**< in the figures */
    std::string path;
    std::string criteria; /**< what its requests begin with; empty, or ends with '&' */
    std::int64_t least;   /**< rows that it must have, so that the figures are those of a large list */
    std::optional<double> first_rate{}; /**< what the first page must reach, requests a second */
    std::optional<double> first_ms{};   /**< 99 of 100 answers to the first page */
    std::optional<double> any_ms{};     /**< and to every page */
    double seconds{5};                  /**< for each page */
};
/** Pages of 20 on 8 connections: the first, the middle and the last. */
void measure_pages(const scene& where, const service& running, const std::string& session,
                   const paged_list& list);
/** Products by name and by category, and the answers that are whole lists: tree and options. */
void measure_masters(const scene& where, const service& running, const std::string& session);
/** Logins on 32 connections with one and with two hashing threads, beside the bare verification. Starts
 * services of its own. */
void measure_logins(const scene& where);
/** Search of the name by two characters: the service beside its own statements run in this process (SQLite).
 * Starts a service of its own. */
void measure_search(const scene& where);
/** Resident memory with a thousand connections that have nothing to say. */
void measure_idle_memory(const scene& where, const service& running);
/** Durable adds on 1 and on 32 connections, beside what the disk can sync. */
void measure_adds(const scene& where, const service& running, const std::string& session);

} // namespace bench
