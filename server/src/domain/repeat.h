#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "domain/principal.h"
#include "store/connection.h"

namespace tavrok::domain {

/** The network may bring a changing request twice. Its answer is kept in the transaction that it belongs to;
 * a byte-equal request of the session within 120 s gets that answer again, unless it is known to have
 * arrived. Order inside the write transaction: recall, else do the work and remember. When remember() (or the
 * commit) fails with error_kind::unique, the same request ran elsewhere at that moment: recall in a new
 * transaction. The bytes are known by their body_hash(). */

/** So long, in seconds, are the same bytes taken for a repeat. */
inline constexpr std::int64_t g_repeat_window = 120;

/** The answer to give again, if the request is a repeat. */
std::optional<std::string> recall(store::connection& with, const principal& who, const std::string& path,
                                  const std::string& body_hash, std::int64_t now);
/** Keeps the answer, in place of an older one to the same request. Gives the id for delivered(). */
std::int64_t remember(store::connection& with, const principal& who, const std::string& path,
                      const std::string& body_hash, const std::string& answer, std::int64_t now);
/** The answer reached the peer: the same bytes again are a new wish. */
void delivered(store::connection& with, const principal& who, std::int64_t repeat);

} // namespace tavrok::domain
