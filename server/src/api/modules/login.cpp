#include <atomic>
#include <memory>

#include "api/json_writer.h"
#include "api/modules/modules.h"
#include "domain/accounts.h"

namespace tavrok::api {

namespace {

/** Not empty, as an empty object means 'no network' to the client, and without a name that anybody can type.
 */
constexpr std::string_view refusal = R"({"user":{"username":""},"wms_permission":[]})";

using request = std::shared_ptr<staged_request>;

/** Logins under way. Each goes: look up (reading) - verify (hashing thread) - complete (writing). */
class login_flow : public std::enable_shared_from_this<login_flow> {
public:
    explicit login_flow(const services& with) : m_with(with) {}

    void start(const request& one) {
        auto found = std::make_shared<domain::login_candidate>();
        m_with.database.read(
            [this, one, found](store::connection& db) {
                *found = domain::find_candidate(db, std::string(one->values.text("username")),
                                                one->origin.peer, m_with.clock(), m_with.options.throttle);
            },
            [self = shared_from_this(), one, found](std::exception_ptr failure) {
                if (failure) return refuse(one, failure);
                if (found->throttled) return self->hold_back(one);
                self->verify(one, found);
            });
    }

private:
    static void refuse(const request& one, std::string reason) {
        one->finish({std::string(refusal), {}, std::move(reason)});
    }
    static void refuse(const request& one, std::exception_ptr failure) {
        try {
            std::rethrow_exception(failure);
        } catch (const std::exception& error) {
            refuse(one, error.what());
        }
    }

    /** Refuses a name or an address that is slowed down, a while later; no thread waits. */
    void hold_back(const request& one) {
        if (m_held.fetch_add(1) >= m_with.options.hashing_limit) {
            --m_held;
            return refuse(one, "slowed down, too many wait");
        }
        m_with.later(m_with.options.throttled_answer, [self = shared_from_this(), one] {
            --self->m_held;
            refuse(one, "slowed down");
        });
    }

    void verify(const request& one, const std::shared_ptr<domain::login_candidate>& found) {
        const bool taken = m_with.hashing.submit([self = shared_from_this(), one, found] {
            try {
                const bool fits = domain::verify_password(self->m_with.options.pepper,
                                                          one->values.text("password"), found->hash);
                self->complete(one, found, fits);
            } catch (...) {
                refuse(one, std::current_exception());
            }
        });
        if (!taken) refuse(one, "too many logins at once");
    }

    void complete(const request& one, const std::shared_ptr<domain::login_candidate>& found, bool fits) {
        auto result = std::make_shared<domain::login_result>();
        m_with.database.write(
            [this, one, found, fits, result](store::connection& db) {
                *result = domain::complete_login(db, *found, fits, one->origin.peer, m_with.clock(),
                                                 m_with.options.sessions, m_with.options.throttle);
            },
            [one, result](std::exception_ptr failure) {
                if (failure) return refuse(one, failure);
                if (!result->accepted) return refuse(one, result->reason);
                one->finish({answer_of(*result), result->token, {}});
            });
    }

    static std::string answer_of(const domain::login_result& result) {
        std::string body;
        body.reserve(256 + result.rows.size() * 40);
        json_writer json(body);
        json.open_object().name("user").open_object();
        json.text("username", result.username).text("password", result.relogin_secret);
        json.number_text("user_id", result.user).text("realname", result.realname);
        json.number_text("type", result.type).close_object();
        json.name("wms_permission").open_array();
        for (const auto& row : result.rows)
            json.open_object().number_text("id", row.id).text("action", row.action).close_object();
        json.close_array().close_object();
        return body;
    }

    const services& m_with;
    std::atomic<std::size_t> m_held{0};
};

} // namespace

void add_login(registry& to, const services& with) {
    auto flow = std::make_shared<login_flow>(with);
    to.add({.module = "login",
            .action = "check_login",
            .keys = {text_key("username", presence::always), text_key("password", presence::always)},
            .answer = form::object,
            .allowed = {.needs = access::who::open},
            .work = staged_work{[flow](const request& one) { flow->start(one); }},
            .failure = refusal});
}

} // namespace tavrok::api
