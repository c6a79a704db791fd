#pragma once

#include <atomic>
#include <functional>
#include <memory>
#include <string>
#include <utility>

namespace tavrok::http {

/** Who has the last word on a request: the server, which gives it up when it has waited too long, or the
 * handler, which binds it before it makes anything lasting. The first of them wins, so failure is never told
 * of what takes place after all. Safe from any thread. */
class fate {
public:
    /** True where failure may be told: nothing of the request takes place from now on. */
    bool give_up() { return reach(state::given_up); }
    /** False where it was given up. What is bound may take place at any time. */
    bool bind() { return reach(state::bound); }
    /** Open again, where it was bound for as long as it waited. */
    void release() {
        auto held = state::bound;
        m_state.compare_exchange_strong(held, state::open);
    }
    bool given_up() const { return m_state == state::given_up; }
    bool bound() const { return m_state == state::bound; }

private:
    enum class state { open, bound, given_up };
    bool reach(state wanted) {
        auto found = state::open;
        return m_state.compare_exchange_strong(found, wanted) || found == wanted;
    }
    std::atomic<state> m_state{state::open};
};

/** One request as the layers above see it: whole, within the limits, its text not yet understood. */
struct request {
    std::string method; /**< "GET" or "POST" */
    std::string path;   /**< without leading slash and without query: "wms_company/get_page" */
    std::string body;   /**< raw bytes, at most the configured limit */
    std::string cookie; /**< value of the session cookie, empty if none came */
    std::string peer;   /**< address of the client, as text; behind a listed proxy the forwarded one */
    std::string id;     /**< request id, stands in every log line of this request */
    /** One for all copies of the request. */
    std::shared_ptr<fate> outcome{std::make_shared<fate>()};
};

/** The answer to one request. */
struct response {
    unsigned status{200};
    std::string body;
    std::string content_type{"text/plain; charset=utf-8"};
    std::string set_cookie; /**< value of a new session cookie; empty: none is set */
    /** Called once, on a network thread: true when the answer was handed to the peer whole, else false. */
    std::function<void(bool sent)> on_sent;
    /** Nobody can tell what became of the request: nothing is sent, and the connection is closed. */
    bool unknown{false};
};

/** Gives the answer; may be called from any thread, exactly once. */
using respond = std::function<void(response)>;

/** Why the server answers a request in the handler's place. */
enum class rejection {
    body_too_large,    /**< the body was thrown away unread; request::body is empty */
    too_many_requests, /**< the address sent more than its share */
    timed_out, /**< given up: the handler did not answer in time; a late answer ends in on_sent(false) */
    failed     /**< the handler threw */
};

/** What stands behind the server. handle() and reject() run on a network thread and must not block. */
class handler {
public:
    virtual ~handler() = default;
    virtual void handle(request incoming, respond answer) = 0;
    /** Gives what the peer is to read where the request could not be handled; by default an empty body. */
    virtual void reject(request, rejection, respond answer) { answer(response{}); }
};

} // namespace tavrok::http
