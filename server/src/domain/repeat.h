#pragma once

#include <cstdint>
#include <string>

#include "domain/principal.h"
#include "store/connection.h"
#include "store/records/repeats.h"

namespace tavrok::domain {

/** The network may bring a changing request twice. Its answer is kept in the transaction that it belongs to;
 * a byte-equal request of the session within 120 s gets that answer again, unless it is known to have
 * arrived. Order inside the write transaction: recall, else do the work and remember. When remember() (or the
 * commit) fails with error_kind::unique, the same request ran elsewhere at that moment: recall in a new
 * transaction. So it did when the work was refused and another answer is kept by then. The bytes are known by
 * their body_hash(). */

using store::kept_answer;

/** So long, in seconds, are the same bytes taken for a repeat. */
inline constexpr std::int64_t g_repeat_window = 120;

/** What is kept of the same request. It is a repeat where an answer is kept that was not delivered. */
kept_answer recall(store::connection& with, const principal& who, const std::string& path,
                   const std::string& body_hash, std::int64_t now);
/** Keeps the answer in place of the one with the id `former`, which recall() gave. Gives the id for
 * delivered().
 */
std::int64_t remember(store::connection& with, const principal& who, const std::string& path,
                      const std::string& body_hash, const std::string& answer, std::int64_t now,
                      std::int64_t former);
/** What was answered at that path is undone or known to have arrived: whatever comes there from now on is a
 * new wish. */
void forget(store::connection& with, const principal& who, const std::string& path);
/** The answer reached the peer: the same bytes again are a new wish. */
void delivered(store::connection& with, const principal& who, std::int64_t repeat);

} // namespace tavrok::domain
