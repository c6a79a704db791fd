#pragma once

#include <functional>
#include <string>
#include <utility>

namespace tavrok::http {

/** One request as the layers above see it: whole, within the limits, its text not yet understood. */
struct request {
    std::string method; /**< "GET" or "POST" */
    std::string path;   /**< without leading slash and without query: "wms_company/get_page" */
    std::string body;   /**< raw bytes, at most the configured limit */
    std::string cookie; /**< value of the session cookie, empty if none came */
    std::string peer;   /**< address of the client, as text; behind a listed proxy the forwarded one */
    std::string id;     /**< request id, stands in every log line of this request */
};

/** The answer to one request. */
struct response {
    unsigned status{200};
    std::string body;
    std::string content_type{"text/plain; charset=utf-8"};
    std::string set_cookie; /**< value of a new session cookie; empty: none is set */
    /** Called once, on a network thread: true when the answer was handed to the peer whole, else false. */
    std::function<void(bool sent)> on_sent;
};

/** Gives the answer; may be called from any thread, exactly once. */
using respond = std::function<void(response)>;

/** Why the server answers a request in the handler's place. */
enum class rejection {
    body_too_large,    /**< the body was thrown away unread; request::body is empty */
    too_many_requests, /**< the address sent more than its share */
    timed_out,         /**< the handler did not answer in time; its late answer ends in on_sent(false) */
    failed             /**< the handler threw */
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
