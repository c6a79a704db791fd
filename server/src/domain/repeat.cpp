#include "domain/repeat.h"

namespace tavrok::domain {

kept_answer recall(store::connection& with, const principal& who, const std::string& path,
                   const std::string& body_hash, std::int64_t now) {
    return store::answer_kept(with, {who.company, who.session, path, body_hash}, now - g_repeat_window);
}

std::int64_t remember(store::connection& with, const principal& who, const std::string& path,
                      const std::string& body_hash, const std::string& answer, std::int64_t now,
                      std::int64_t former) {
    return store::keep_answer(with, {who.company, who.session, path, body_hash}, answer, now,
                              now - g_repeat_window, former);
}

void forget(store::connection& with, const principal& who, const std::string& path) {
    store::drop_answers(with, who.company, who.session, path);
}

void delivered(store::connection& with, const principal& who, std::int64_t repeat) {
    store::mark_delivered(with, who.company, who.session, repeat);
}

} // namespace tavrok::domain
