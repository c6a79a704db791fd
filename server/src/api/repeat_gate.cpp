#include "api/repeat_gate.h"

#include <atomic>
#include <utility>

namespace tavrok::api {

namespace {

/** Reports once; an answer that is dropped unsent counts as not sent. */
class delivery {
public:
    explicit delivery(std::function<void(bool)> report) : m_report(std::move(report)) {}
    delivery(const delivery&) = delete;
    delivery& operator=(const delivery&) = delete;
    ~delivery() { tell(false); }
    void tell(bool sent) {
        if (!m_told.exchange(true)) m_report(sent);
    }

private:
    std::function<void(bool)> m_report;
    std::atomic<bool> m_told{false};
};

} // namespace

void repeat_gate::enter(const std::string& key, waiting request) {
    {
        const std::lock_guard lock(m_mutex);
        const auto [at, fresh] = m_entries.try_emplace(key);
        if (!fresh) {
            (at->second.told ? at->second.later : at->second.same).push_back(std::move(request));
            return;
        }
    }
    request.start();
}

void repeat_gate::finish(const std::string& key, const http::respond& first, http::response answer,
                         delivered arrived) {
    const bool matters = static_cast<bool>(arrived);
    std::vector<waiting> same;
    {
        const std::lock_guard lock(m_mutex);
        const auto at = m_entries.find(key);
        same = std::move(at->second.same);
        at->second.told = std::move(arrived);
        at->second.open_answers = same.size() + 1;
        if (!matters) m_entries.erase(at);
    }
    if (!matters) {
        for (const auto& other : same)
            other.answer(answer);
        first(std::move(answer));
        return;
    }
    for (const auto& other : same)
        send(key, other.answer, answer);
    send(key, first, std::move(answer));
}

void repeat_gate::send(const std::string& key, const http::respond& to, http::response answer) {
    auto watch = std::make_shared<delivery>(
        [self = shared_from_this(), key](bool sent) { self->reported(key, sent); });
    answer.on_sent = [watch](bool sent) { watch->tell(sent); };
    watch.reset();
    to(std::move(answer));
}

void repeat_gate::reported(const std::string& key, bool sent) {
    std::vector<waiting> later;
    {
        const std::lock_guard lock(m_mutex);
        const auto at = m_entries.find(key);
        at->second.arrived = at->second.arrived || sent;
        if (--at->second.open_answers > 0) return;
        later = std::move(at->second.later);
        if (at->second.arrived) at->second.told();
        m_entries.erase(at);
    }
    for (auto& request : later)
        enter(key, std::move(request));
}

} // namespace tavrok::api
