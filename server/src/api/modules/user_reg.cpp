#include <limits>
#include <memory>

#include "api/brake.h"
#include "api/captcha_picture.h"
#include "api/json_writer.h"
#include "api/modules/modules.h"
#include "api/second_look.h"
#include "domain/passwords.h"
#include "domain/sessions.h"
#include "domain/sign_up.h"

namespace tavrok::api {

namespace {

constexpr std::string_view g_no_marks = R"({"company":0,"username":0,"mobile":0,"email":0,"captcha":0})";
constexpr std::string_view g_failed = R"({"state":6})";

using request = std::shared_ptr<staged_request>;
using domain::sign_up_state;

std::string reason_of(const std::exception_ptr& failure) {
    try {
        std::rethrow_exception(failure);
    } catch (const std::exception& error) {
        return error.what();
    }
}

domain::sign_up_form form_of(const fields& values) {
    domain::sign_up_form form;
    form.company = values.text("company");
    form.phone = values.text("phone");
    form.address = values.text("address");
    form.username = values.text("username");
    form.password = values.text("password");
    form.realname = values.text("realname");
    form.mobile = values.text("mobile");
    form.email = values.text("email");
    form.captcha = values.text("captcha");
    return form;
}

/** One sign-up under way: begin (writing) - hash (hashing thread) - complete (writing). */
class sign_up_flow : public std::enable_shared_from_this<sign_up_flow> {
public:
    sign_up_flow(const services& with, request one)
        : m_with(with),
          m_one(std::move(one)),
          m_request(domain::body_hash(m_with.options.pepper, m_one->origin.body)),
          m_form(form_of(m_one->values)) {}

    void start() {
        try {
            domain::check_form(m_form);
        } catch (...) {
            return fail(reason_of(std::current_exception()));
        }
        m_with.database.write(
            [self = shared_from_this()](store::connection& db) {
                self->m_state = domain::begin_sign_up(db, self->m_one->origin.cookie, self->m_request,
                                                      self->m_form, self->m_with.clock());
            },
            [self = shared_from_this()](std::exception_ptr failure) {
                if (failure) return self->fail(reason_of(failure));
                self->m_state ? self->finish() : self->hash();
            });
    }

private:
    void hash() {
        const bool taken = m_with.hashing.submit([self = shared_from_this()] {
            try {
                self->m_hash = domain::hash_password(self->m_with.options.pepper, self->m_form.password);
                self->complete(true);
            } catch (...) {
                self->fail(reason_of(std::current_exception()));
            }
        });
        if (!taken) fail("too many passwords at once");
    }

    void complete(bool first) {
        m_with.database.write(
            [self = shared_from_this()](store::connection& db) {
                self->m_state = domain::complete_sign_up(db, self->m_one->origin.cookie, self->m_request,
                                                         self->m_form, self->m_hash, self->m_with.clock());
            },
            [self = shared_from_this(), first](std::exception_ptr failure) {
                if (first && worth_a_second_look(failure)) return self->complete(false);
                if (failure) return self->fail(reason_of(failure));
                self->finish();
            });
    }

    void finish() {
        const auto number = static_cast<int>(*m_state);
        std::string body;
        json_writer(body).open_object().integer("state", number).close_object();
        const bool done = *m_state == sign_up_state::done;
        m_one->finish({std::move(body), {}, done ? "" : "sign-up ends in state " + std::to_string(number)});
    }
    void fail(std::string reason) { m_one->finish({std::string(g_failed), {}, std::move(reason)}); }

    const services& m_with;
    request m_one;
    std::string m_request;
    domain::sign_up_form m_form;
    std::string m_hash;
    std::optional<sign_up_state> m_state; /**< set anew by each run of a stage */
};

void question(const services& with, const request& one) {
    auto found = std::make_shared<domain::sign_up_marks>();
    with.database.write(
        [&with, one, found](store::connection& db) {
            *found = domain::question_sign_up(db, one->origin.cookie, form_of(one->values), with.clock());
        },
        [one, found](std::exception_ptr failure) {
            if (failure) return one->finish({std::string(g_no_marks), {}, reason_of(failure)});
            std::string body;
            json_writer json(body);
            json.open_object().integer("company", found->company).integer("username", found->username);
            json.integer("mobile", found->mobile).integer("email", found->email);
            json.integer("captcha", found->captcha).close_object();
            one->finish({std::move(body), {}, {}});
        });
}

/** Draws and keeps a picture. Who has no cookie gets one, which is no session. */
void show_picture(const services& with, const request& one) {
    const bool taken = with.pictures.submit([&with, one] {
        try {
            const std::string fresh = one->origin.cookie.empty() ? domain::new_token() : std::string();
            const auto visitor = fresh.empty() ? one->origin.cookie : fresh;
            const auto code = domain::new_captcha_code();
            auto picture = std::make_shared<std::string>(draw_captcha(code));
            with.database.write(
                [&with, visitor, code](store::connection& db) {
                    domain::keep_captcha(db, visitor, code, with.clock());
                },
                [one, fresh, picture](std::exception_ptr failure) {
                    if (failure) return one->finish({{}, {}, reason_of(failure)});
                    one->finish({std::move(*picture), fresh, {}});
                });
        } catch (...) {
            one->finish({{}, {}, reason_of(std::current_exception())});
        }
    });
    if (!taken) one->finish({{}, {}, "too many pictures at once"});
}

std::vector<key> form_keys() {
    constexpr auto any = std::numeric_limits<std::int64_t>::max();
    std::vector<key> keys;
    for (const auto* name :
         {"company", "phone", "address", "username", "password", "realname", "mobile", "email"})
        keys.push_back(text_key(name, presence::always));
    keys.push_back(integer_key("reg_time", -any, any));
    keys.push_back(text_key("captcha", presence::always));
    return keys;
}

/** Lets `run` go on as long as the address does not come too often, and else gives `refusal`. */
staged_work braked(const services& with, std::shared_ptr<brake> held, std::string_view refusal,
                   std::function<void(const request&)> run) {
    return {[&with, held = std::move(held), refusal, run = std::move(run)](const request& one) {
        if (held->allow(one->origin.peer, with.clock())) return run(one);
        one->finish({std::string(refusal), {}, "too many requests from the address"});
    }};
}

} // namespace

void add_user_reg(registry& to, const services& with) {
    const auto pictures = std::make_shared<brake>(20, 3);
    const auto attempts = std::make_shared<brake>(30, 2);
    to.add({.module = "user_reg",
            .action = "captcha_data",
            .method = "GET",
            .keys = {},
            .answer = form::image,
            .allowed = {.needs = access::who::open},
            .work = braked(with, pictures, {}, [&with](const request& one) { show_picture(with, one); })});
    to.add({.module = "user_reg",
            .action = "check_reg_exist",
            .keys = form_keys(),
            .answer = form::object,
            .allowed = {.needs = access::who::open},
            .work = braked(with, attempts, g_no_marks, [&with](const request& one) { question(with, one); }),
            .failure = g_no_marks});
    to.add(
        {.module = "user_reg",
         .action = "do_reg",
         .keys = form_keys(),
         .answer = form::object,
         .allowed = {.needs = access::who::open},
         .work = braked(with, attempts, g_failed,
                        [&with](const request& one) { std::make_shared<sign_up_flow>(with, one)->start(); }),
         .failure = g_failed});
}

} // namespace tavrok::api
