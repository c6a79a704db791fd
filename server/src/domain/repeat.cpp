#include "domain/repeat.h"

#include "domain/sessions.h"
#include "store/records/repeats.h"

namespace tavrok::domain {

namespace {

constexpr std::int64_t g_repeat_window = 120;

store::repeat_key key_of(const principal& who, const std::string& path, const std::string& body) {
    return {who.company, who.session, path, token_hash(body)};
}

} // namespace

std::optional<std::string> recall(store::connection& with, const principal& who, const std::string& path,
                                  const std::string& body, std::int64_t now) {
    return store::undelivered_answer(with, key_of(who, path, body), now - g_repeat_window);
}

std::int64_t remember(store::connection& with, const principal& who, const std::string& path,
                      const std::string& body, const std::string& answer, std::int64_t now) {
    return store::keep_answer(with, key_of(who, path, body), answer, now, now - g_repeat_window);
}

void delivered(store::connection& with, const principal& who, std::int64_t repeat) {
    store::mark_delivered(with, who.company, who.session, repeat);
}

} // namespace tavrok::domain
