#include "domain/repeat.h"

#include "store/records/repeats.h"

namespace tavrok::domain {

std::optional<std::string> recall(store::connection& with, const principal& who, const std::string& path,
                                  const std::string& body_hash, std::int64_t now) {
    return store::undelivered_answer(with, {who.company, who.session, path, body_hash},
                                     now - g_repeat_window);
}

std::int64_t remember(store::connection& with, const principal& who, const std::string& path,
                      const std::string& body_hash, const std::string& answer, std::int64_t now) {
    return store::keep_answer(with, {who.company, who.session, path, body_hash}, answer, now,
                              now - g_repeat_window);
}

void delivered(store::connection& with, const principal& who, std::int64_t repeat) {
    store::mark_delivered(with, who.company, who.session, repeat);
}

} // namespace tavrok::domain
