#pragma once

#include <functional>
#include <memory>
#include <mutex>
#include <string>
#include <unordered_map>
#include <vector>

#include "http/message.h"

namespace tavrok::api {

/**
 * Holds back the repeats of a changing request in this process. One request of a key runs at a time:
 * - what comes while it runs gets its answer: the peer cannot have seen it yet, so it is the network that
 * repeats;
 * - what comes while its answer is on the way waits until it is known whether that answer arrived, and is
 * then judged anew, by the database record and by what `delivered` was told.
 */
class repeat_gate : public std::enable_shared_from_this<repeat_gate> {
public:
    /** Called when the answer has reached its peer, before any waiting request goes on. Must be short and
     * must not call the gate. */
    using delivered = std::function<void()>;

    struct waiting {
        std::function<void()> start; /**< runs the request; called at once or when its turn comes */
        http::respond answer;        /**< takes the answer of the request that ran instead */
    };
    /** Starts `request` or holds it back. Whoever is started must call finish once. */
    void enter(const std::string& key, waiting request);
    /** Sends the answer of the running request to all that came for it. Nothing is held back any more when
     *  `arrived` is empty: then nothing was changed, and it does not matter whether the answer arrives. */
    void finish(const std::string& key, const http::respond& first, http::response answer, delivered arrived);

private:
    struct entry {
        delivered told; /**< set once its answer is on the way */
        bool arrived{false};
        std::size_t open_answers{0};
        std::vector<waiting> same;  /**< came while it ran */
        std::vector<waiting> later; /**< came while its answer was on the way */
    };
    void send(const std::string& key, const http::respond& to, http::response answer);
    void reported(const std::string& key, bool sent);

    std::mutex m_mutex;
    std::unordered_map<std::string, entry> m_entries;
};

} // namespace tavrok::api
