#include "api/dispatcher.h"

#include <spdlog/spdlog.h>

#include <chrono>

#include "api/second_look.h"
#include "domain/passwords.h"
#include "domain/refused.h"
#include "domain/repeat.h"
#include "domain/sessions.h"

namespace tavrok::api {

/** One request under way. What a store job sets, each run of the job sets anew. */
struct dispatcher::call {
    const endpoint* what{nullptr};
    http::request origin;
    http::respond answer;
    std::chrono::steady_clock::time_point begun{std::chrono::steady_clock::now()};
    parsed_form form;
    std::string body_hash; /**< writes only, as the next */
    std::string key;       /**< of the repeat gate */
    int looks{0};          /**< after a failure that did not say what took place */
    bool ran{false};       /**< the job was begun at least once */
    bool unknown{false};   /**< it may have taken place, or take place elsewhere */
    bool returned{false};  /**< the job noted that its user came back, and nothing else */
    /** The kept answer that stood there at the first look, 0 for none. One that comes later is to these bytes
     * as well, from another service. */
    std::optional<std::int64_t> former;

    outcome how{outcome::failed};
    std::string body;
    std::string cookie;
    std::string reason;
    std::optional<domain::principal> who;
    std::int64_t now{0};
    std::int64_t record{0}; /**< of the stored answer */
    std::optional<std::string> password;
    std::string password_hash;

    void refuse(std::string why) {
        how = outcome::refused;
        reason = std::move(why);
    }
};

namespace {

constexpr int most_looks = 5;
/** So much later than the one before is each further look. */
constexpr std::chrono::milliseconds look_pause{500};
/** No look begins later than that: the peer is not kept waiting much longer. */
constexpr std::chrono::seconds look_patience{8};

void demand_wanted(bool wanted) {
    if (!wanted) throw domain::refused("given up: it took too long");
}

/** Session, path and body in one key, without keeping a body in memory. */
std::string repeat_key(const http::request& of, const std::string& body_hash) {
    return of.cookie + '\n' + of.path + '\n' + body_hash;
}

/** A reason may quote what a peer sent: keep it on one line. */
std::string one_line(std::string text) {
    for (auto& c : text)
        if (static_cast<unsigned char>(c) < 0x20 || c == 0x7F) c = ' ';
    return text;
}

bool needs_session(const endpoint& what) {
    return what.allowed.needs != access::who::open;
}

} // namespace

dispatcher::dispatcher(const services& with, metrics& figures)
    : m_with(with),
      m_figures(figures),
      m_house(std::make_shared<housekeeping>(with)),
      m_gate(std::make_shared<repeat_gate>()) {}

dispatcher::shared_call dispatcher::begin(const endpoint& what, http::request incoming,
                                          http::respond answer) {
    {
        const std::lock_guard lock(m_mutex);
        ++m_open;
    }
    auto one = std::make_shared<call>();
    one->what = &what;
    one->origin = std::move(incoming);
    one->answer = std::move(answer);
    return one;
}

void dispatcher::reject(const endpoint& what, http::request incoming, std::string reason,
                        http::respond answer) {
    const auto one = begin(what, std::move(incoming), std::move(answer));
    one->refuse(std::move(reason));
    end(one);
}

void dispatcher::handle(const endpoint& what, http::request incoming, http::respond answer) {
    const auto one = begin(what, std::move(incoming), std::move(answer));
    try {
        start(one);
    } catch (...) {
        settle(*one, std::current_exception());
        end(one);
    }
}

void dispatcher::start(const shared_call& one) {
    const auto& what = *one->what;
    one->form = parse_form(one->origin.body, what.keys);
    if (!one->form.ok() && !what.other_keys.empty())
        one->form = parse_form(one->origin.body, what.other_keys);
    if (one->origin.method != what.method) one->form.refusal = "wrong method";
    if (needs_session(what) && one->origin.cookie.empty()) {
        one->how = outcome::no_session;
        return end(one);
    }
    if (!needs_session(what) && !one->form.ok()) {
        one->refuse(one->form.refusal);
        return end(one);
    }
    if (const auto* staged = std::get_if<staged_work>(&what.work)) return run_staged(one, *staged);
    if (std::holds_alternative<read_work>(what.work)) return run_read(one);
    if (writes(what)) return enter_write(one);
    run_plain(one);
}

void dispatcher::run_plain(const shared_call& one) {
    context with{one->form.values, one->origin, m_with.clock(), nullptr, nullptr, one->body};
    std::get<plain_work>(one->what->work).run(with);
    one->how = outcome::answered;
    end(one);
}

void dispatcher::run_staged(const shared_call& one, const staged_work& work) {
    auto request = std::make_shared<staged_request>();
    request->origin = one->origin;
    request->values = parse_form(request->origin.body, one->what->keys).values;
    request->finish = [this, one](staged_answer result) {
        one->how = result.reason.empty() ? outcome::answered : outcome::refused;
        one->body = std::move(result.body);
        one->cookie = std::move(result.cookie);
        one->reason = std::move(result.reason);
        end(one);
    };
    work.run(std::move(request));
}

/** Session, form and rights; false when the request ends here. Runs inside the job that does the work. */
bool dispatcher::admit(call& one, store::connection& db) {
    one.now = m_with.clock();
    one.body.clear();
    one.reason.clear();
    one.record = 0;
    one.how = outcome::no_session;
    one.who = domain::resume(db, one.origin.cookie, one.now, m_with.options.sessions);
    if (!one.who) return false;
    if (!one.form.ok()) {
        one.refuse(one.form.refusal);
        return false;
    }
    const context with{one.form.values, one.origin, one.now, &db, &*one.who, one.body};
    if (permitted(one.what->allowed, with)) return true;
    one.refuse("no right");
    return false;
}

void dispatcher::run_read(const shared_call& one) {
    m_with.database.read(
        [this, one](store::connection& db) {
            if (!admit(*one, db)) return;
            context with{one->form.values, one->origin, one->now, &db, &*one->who, one->body};
            std::get<read_work>(one->what->work).run(with);
            one->how = outcome::answered;
        },
        [this, one](std::exception_ptr failure) {
            settle(*one, failure);
            end(one);
        });
}

void dispatcher::enter_write(const shared_call& one) {
    one->body_hash = domain::body_hash(m_with.options.pepper, one->origin.body);
    one->key = repeat_key(one->origin, one->body_hash);
    // While it waits for another with its bytes, what that one does is what becomes of it.
    one->origin.outcome->bind();
    m_gate->enter(one->key,
                  {[this, one] {
                       one->origin.outcome->release();
                       const auto* hashed = std::get_if<hashed_work>(&one->what->work);
                       hashed != nullptr ? run_hashed(one, *hashed) : run_write(one);
                   },
                   [this, one](http::response same) {
                       one->how = outcome::replayed;
                       m_figures.count(*one->what, one->how, std::chrono::steady_clock::now() - one->begun);
                       spdlog::info("[{}] {} waited for the same request", one->origin.id, one->origin.path);
                       one->answer(std::move(same));
                       leave();
                   }});
}

/** Nobody's password is hashed before he is let in: hashing is dear. */
void dispatcher::run_hashed(const shared_call& one, const hashed_work& work) {
    m_with.database.read(
        [this, one, &work](store::connection& db) {
            if (!admit(*one, db)) return;
            one->password = work.password(one->form.values);
            one->how = outcome::answered;
        },
        [this, one](std::exception_ptr failure) {
            settle(*one, failure);
            if (one->how != outcome::answered) return end(one);
            one->password ? hash(one) : run_write(one);
        });
}

void dispatcher::hash(const shared_call& one) {
    const bool taken = m_with.hashing.submit([this, one] {
        try {
            one->password_hash = domain::hash_password(m_with.options.pepper, *one->password);
            run_write(one);
        } catch (...) {
            settle(*one, std::current_exception());
            end(one);
        }
    });
    if (taken) return;
    one->refuse("too many passwords at once");
    end(one);
}

void dispatcher::run_write(const shared_call& one) {
    m_with.database.write([this, one](store::connection& db) { work_once(*one, db); },
                          [this, one](std::exception_ptr failure) { written(one, failure); });
}

void dispatcher::written(const shared_call& one, const std::exception_ptr& failure) {
    if (!failure && one->returned) return run_write(one);
    if (look_again(*one, failure)) {
        if (one->looks == 1) return run_write(one);
        return m_with.later((one->looks - 1) * look_pause, [this, one] { run_write(one); });
    }
    settle(*one, failure);
    end(one);
}

/** Whether the records may tell what the failure does not: the job runs once more and finds out. */
bool dispatcher::look_again(call& one, const std::exception_ptr& failure) {
    using kind = store::error_kind;
    const auto what = store_failure(failure);
    if (!what) {
        one.unknown = false;
        return false;
    }
    auto& outcome = *one.origin.outcome;
    const bool lost_in_commit = what == kind::lost && outcome.bound();
    // Another service may be at it: then it holds the locks that this one waited for.
    const bool held_up = what == kind::busy && one.ran && one.what->once && outcome.bind();
    one.unknown = one.unknown || lost_in_commit || held_up;
    const bool telling =
        worth_a_second_look(failure) || (one.unknown && (what == kind::busy || what == kind::conflict));
    const auto spent = std::chrono::steady_clock::now() - one.begun;
    return telling && ++one.looks <= (one.unknown ? most_looks : 1) && spent < look_patience;
}

/** The answer of an earlier run whose answer may not have arrived, or the work and its answer's record. */
void dispatcher::work_once(call& one, store::connection& db) {
    one.ran = true;
    one.returned = false;
    demand_wanted(!one.origin.outcome->given_up());
    if (!admit(one, db)) return;
    one.returned = domain::come_back(db, *one.who, one.now, m_with.options.sessions);
    if (one.returned) return;
    if (const auto unwritten = m_house->unwritten_arrival(one.key))
        domain::delivered(db, *one.who, *unwritten);
    const auto path = scoped_path(one, db);
    const auto known = domain::recall(db, *one.who, path, one.body_hash, one.now);
    if (!one.former) one.former = known.id;
    if (known.id != 0 && (one.what->once || !known.delivered || known.id != *one.former)) {
        one.body = known.answer;
        one.how = outcome::replayed;
    } else {
        run_work(one, db, path, known.id);
    }
    // A repeated answer is kept anew, so that its own arrival can be noted.
    one.record = domain::remember(db, *one.who, path, one.body_hash, one.body, one.now, known.id);
    // The last word before the commit.
    demand_wanted(one.origin.outcome->bind());
}

context dispatcher::context_of(call& one, store::connection& db) {
    return {one.form.values, one.origin, one.now, &db, &*one.who, one.body, one.password_hash, &one.reason};
}

/** What the answer is kept under beside its bytes. */
std::string dispatcher::scoped_path(call& one, store::connection& db) {
    if (!one.what->scope) return one.origin.path;
    auto with = context_of(one, db);
    return one.origin.path + ' ' + one.what->scope(with);
}

void dispatcher::run_work(call& one, store::connection& db, const std::string& path, std::int64_t known) {
    auto with = context_of(one, db);
    try {
        const auto* hashed = std::get_if<hashed_work>(&one.what->work);
        hashed != nullptr ? hashed->run(with) : std::get<write_work>(one.what->work).run(with);
    } catch (const domain::refused&) {
        if (domain::recall(db, *one.who, path, one.body_hash, one.now).id == known) throw;
        // It cannot be done because another service has just done it: the second look finds its answer.
        throw store::error(store::error_kind::unique, "the same request was done elsewhere");
    }
    one.how = one.reason.empty() ? outcome::answered : outcome::refused;
}

void dispatcher::settle(call& one, std::exception_ptr failure) {
    if (!failure) return;
    one.record = 0;
    one.body.clear();
    try {
        std::rethrow_exception(failure);
    } catch (const domain::refused& refusal) {
        one.refuse(refusal.what());
    } catch (const std::exception& error) {
        one.how = outcome::failed;
        one.reason = error.what();
    }
}

/** Puts the answer into its form and leaves a line in the log where it is not the plain success. */
http::response dispatcher::close(call& one) {
    const auto& what = *one.what;
    http::response out;
    if (one.how == outcome::no_session) {
        out.body = session_code;
    } else if (one.how == outcome::failed || (one.how == outcome::refused && one.body.empty())) {
        out.body = failure_of(what);
    } else {
        out.body = std::move(one.body);
        out.set_cookie = std::move(one.cookie);
    }
    if (one.how != outcome::no_session && reads_as_session_code(out.body)) {
        one.how = outcome::failed;
        one.reason = "the answer would read as the session code";
        out.body = failure_of(what);
    }
    out.unknown = one.unknown && one.how == outcome::failed;
    out.content_type = content_type_of(what.answer);
    m_figures.count(what, one.how, std::chrono::steady_clock::now() - one.begun);
    const auto level = one.how == outcome::failed     ? spdlog::level::err
                       : one.how == outcome::answered ? spdlog::level::debug
                                                      : spdlog::level::info;
    spdlog::log(level, "[{}] {} {} {}", one.origin.id, one.origin.path, word_of(one.how),
                one_line(one.reason));
    return out;
}

void dispatcher::end(const shared_call& one) {
    auto out = close(*one);
    if (one->who && domain::needs_touch(*one->who, one->now)) m_house->note_use(*one->who);
    if (one->key.empty()) {
        one->answer(std::move(out));
    } else {
        auto arrived = [house = m_house, key = one->key, who = one->who, record = one->record] {
            house->note_arrival(key, *who, record);
        };
        m_gate->finish(one->key, one->answer, std::move(out),
                       one->record != 0 ? arrived : repeat_gate::delivered());
    }
    leave();
}

void dispatcher::leave() {
    const std::lock_guard lock(m_mutex);
    if (--m_open == 0) m_idle.notify_all();
}

void dispatcher::drain() {
    {
        std::unique_lock lock(m_mutex);
        m_idle.wait(lock, [this] { return m_open == 0; });
    }
    m_house->close();
}

} // namespace tavrok::api
