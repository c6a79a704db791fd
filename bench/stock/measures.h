#pragma once

#include <string>

#include "service/measures.h"

namespace bench {

/** Pages of the stock on 8 connections, with and without criteria, and what the first answer costs before the
 * service knows what fits them. The service must be fresh. */
void measure_stock_pages(const scene& where, const service& running, const std::string& session);
/** Durable claims on 1 and on 32 connections, each with a session of its own, on one row and on a thousand.
 */
void measure_claims(const scene& where, const service& running, const std::string& session);
/** Saves of documents through the client, a hundred lines each and five hundred of a stocktaking, and where
 * their time goes. `probe` is the path
 * of client_probe. */
void measure_documents(const scene& where, const service& running, const std::string& probe);
/** Pages of the summary, and its first page after each of some changes of the data. */
void measure_summary(const scene& where, const service& running, const std::string& session);
/** tavrok_wmsd check over all that was seeded and done; it must find nothing. Nothing serves meanwhile. */
void measure_check(const scene& where);

} // namespace bench
