#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "api/form_parser.h"
#include "domain/principal.h"
#include "http/message.h"
#include "store/connection.h"

namespace tavrok::api {

/** The forms of an answer; each has a failure form of its own. `id`: the id or token of a new row as the
 * whole body. */
enum class form { count, result, page, array, object, id, image, none };

/** What a handler works on and writes to. `db` and `who` are null where the endpoint declares no such need.
 */
struct context {
    const fields& form;
    const http::request& origin;
    std::int64_t now{0};
    store::connection* db{nullptr};
    const domain::principal* who{nullptr};
    std::string& answer;
    /** Of the password that hashed_work found in the form; empty where there was none. */
    std::string_view password_hash{};
    /** For writes that answer a refusal and keep what they did: why, for the log. */
    std::string* refusal{nullptr};
};

struct page_right {
    std::string_view page;
    std::string_view right;
};

/** The pages whose right counts depend on the value of a key: all that stand beside the value are needed. */
struct pages_by_value {
    std::string_view key;
    std::string_view right;
    std::vector<std::pair<std::int64_t, std::vector<std::string_view>>> pages;
};

/** Who may call an endpoint. Where the right hangs on the record that is named (a partner's kind), the rules
 * here let in whoever could have it, and the domain judges the record. */
struct access {
    enum class who {
        undeclared,
        open,                   /**< anybody, session or not */
        session,                /**< any live session */
        administrator,          /**< administrators, in their own company */
        operator_administrator, /**< administrators of the operator's own company */
        rights                  /**< whoever one of the rules below lets in */
    };
    who needs{who::undeclared};
    std::vector<page_right> any_of{};
    std::optional<pages_by_value> by_value{};
    /** Pages whose screens show this list in a picker: any right on one of them suffices. */
    std::span<const std::string_view> picker_pages{};
};

/** How a staged request ends. */
struct staged_answer {
    std::string body;
    std::string cookie; /**< of a new session; may be empty */
    std::string reason; /**< for the log, when the request is refused */
};

/** One request under way, for endpoints that answer in several steps of their own. */
struct staged_request {
    http::request origin;
    fields values; /**< views into origin.body */
    /** Ends the request; exactly once, on any thread. */
    std::function<void(staged_answer)> finish;
};

/** Answers from the request alone. */
struct plain_work {
    std::function<void(context&)> run;
};
/** Answers inside one read transaction. */
struct read_work {
    std::function<void(context&)> run;
};
/** Answers inside one write transaction, once however often the network repeats the request. */
struct write_work {
    std::function<void(context&)> run;
};
/** As write_work, for requests that bring a password: its hash is made before the write transaction, on the
 * hashing queue, once a read transaction has let the request in. */
struct hashed_work {
    /** The MD5 text to hash, if there is any; may throw domain::refused. */
    std::function<std::optional<std::string>(const fields&)> password;
    std::function<void(context&)> run;
};
/** Starts something that calls finish later, on any thread. */
struct staged_work {
    std::function<void(std::shared_ptr<staged_request>)> run;
};

/** An endpoint, declared. */
struct endpoint {
    std::string_view module;
    std::string_view action;
    std::string_view method{"POST"};
    std::vector<key> keys;
    /** The same keys in a second order, or with fewer that must be there: tried when the first does not fit.
     */
    std::vector<key> other_keys{};
    form answer{form::count};
    access allowed;
    std::variant<plain_work, read_work, write_work, hashed_work, staged_work> work;
    /** What the bytes of a changing request leave open, where that makes it another wish: only of the same
     * scope is it a repeat. */
    std::function<std::string(context&)> scope{};
    /** What the bytes name is given once and ended by the request, so the same bytes are never a new wish:
     * they get the same answer even where it is known to have arrived. */
    bool once{false};
    /** Replaces the failure form of `answer` where an endpoint has its own. */
    std::string_view failure{};
    std::string path() const { return std::string(module) + "/" + std::string(action); }
};

/** What goes out when an endpoint refuses. */
std::string_view failure_of(const endpoint& what);
std::string_view content_type_of(form answer);
/** True for work in a write transaction that is safe to repeat. */
bool writes(const endpoint& what);

/** The body that says that the session has ended. */
inline constexpr std::string_view session_code = "7";

/** True when the client would take this body for the session code. */
bool reads_as_session_code(std::string_view body);

} // namespace tavrok::api
