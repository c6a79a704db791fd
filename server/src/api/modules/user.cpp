#include "api/answers.h"
#include "api/modules/modules.h"
#include "domain/passwords.h"
#include "domain/refused.h"
#include "domain/text_rules.h"
#include "domain/users.h"

namespace tavrok::api {

namespace {

constexpr std::size_t g_password_limit = 1000;
const access g_administrators{.needs = access::who::administrator};

void write_user(json_writer& json, const domain::user& one) {
    json.open_object().number_text("id", one.id).text("username", one.username);
    json.text("realname", one.realname).number_text("type", one.type).text("mobile", one.mobile);
    json.text("email", one.email).number_text("state", one.state);
    json.integer("last_login_time", one.last_login_at).integer("reg_time", one.registered_at);
    json.close_object();
}

void get_page(context& request, domain::count_cache& counts) {
    const auto& form = request.form;
    const domain::user_search search{std::string(form.text("username")), std::string(form.text("realname")),
                                     form.integer("type"), form.integer("state")};
    const auto page = domain::list_users(*request.db, *request.who, search, page_wish_of(form), counts);
    write_page(request.answer, page, write_user);
}

/** An addition brings the MD5 text itself. */
std::optional<std::string> password_of_addition(const fields& form) {
    if (!domain::is_password_md5(form.text("password"))) {
        throw domain::refused("the password is no MD5 of one");
    }
    return std::string(form.text("password"));
}

/** An edit brings the password as it was typed, or none that stays as it is. */
std::optional<std::string> password_of_edit(const fields& form) {
    const auto typed = form.text("password");
    if (typed.empty()) return std::nullopt;
    domain::check_text("password", typed, g_password_limit);
    return domain::md5_hex(typed);
}

void do_add(context& request) {
    const auto& form = request.form;
    domain::new_user user;
    user.username = form.text("username");
    user.realname = form.text("realname");
    user.password_hash = request.password_hash;
    user.mobile = form.text("mobile");
    user.email = form.text("email");
    user.state = static_cast<int>(form.integer("state"));
    write_added(request.answer, domain::add_user(*request.db, *request.who, std::move(user), request.now));
}

void do_edit(context& request) {
    const auto& form = request.form;
    domain::user_change change;
    change.id = form.integer("id");
    change.realname = form.text("realname");
    change.mobile = form.text("mobile");
    change.email = form.text("email");
    change.state = static_cast<int>(form.integer("state"));
    change.password_hash = request.password_hash;
    domain::edit_user(*request.db, *request.who, change, request.now);
    request.answer = "1";
}

void do_delete(context& request) {
    domain::remove_user(*request.db, *request.who, request.form.integer("id"), request.now);
    request.answer = "1";
}

/** Tells whether another user has this name, mobile or e-mail. */
void add_check(registry& to, std::string_view action, std::string_view key, domain::user_mark what) {
    const auto run = [key, what](context& request) {
        const auto& form = request.form;
        const bool taken =
            domain::taken(*request.db, *request.who, what, std::string(form.text(key)), form.integer("id"));
        request.answer = taken ? "1" : "0";
    };
    to.add({.module = "user",
            .action = action,
            .keys = {text_key(key, presence::always), id_key("id", presence::optional)},
            .answer = form::count,
            .allowed = g_administrators,
            .work = read_work{run}});
}

} // namespace

void add_user(registry& to, const services& with) {
    auto& counts = with.counts;
    to.add(
        {.module = "user",
         .action = "get_page",
         .keys = {text_key("username"), text_key("realname"), integer_key("type", 0, 2, presence::optional),
                  integer_key("state", 0, 2, presence::optional), page_num_key(), page_size_key()},
         .answer = form::page,
         .allowed = {.needs = access::who::rights,
                     .any_of = {{"user", "search"}},
                     .picker_pages = domain::g_user_picker_pages},
         .work = read_work{[&counts](context& request) { get_page(request, counts); }}});
    to.add(
        {.module = "user",
         .action = "do_add",
         .keys = {text_key("username", presence::always), text_key("realname", presence::always),
                  text_key("password", presence::always), text_key("mobile", presence::always),
                  text_key("email", presence::always), integer_key("type", 2, 2), integer_key("state", 1, 2)},
         .answer = form::result,
         .allowed = g_administrators,
         .work = hashed_work{password_of_addition, do_add}});
    to.add({.module = "user",
            .action = "do_edit",
            .keys = {text_key("realname", presence::always), text_key("password"),
                     text_key("mobile", presence::always), text_key("email", presence::always),
                     integer_key("state", 1, 2), id_key("id")},
            .answer = form::count,
            .allowed = g_administrators,
            .work = hashed_work{password_of_edit, do_edit}});
    to.add({.module = "user",
            .action = "do_delete",
            .keys = {id_key("id")},
            .answer = form::count,
            .allowed = g_administrators,
            .work = write_work{do_delete}});
    add_check(to, "check_username", "username", domain::user_mark::username);
    add_check(to, "check_mobile", "mobile", domain::user_mark::mobile);
    add_check(to, "check_email", "email", domain::user_mark::email);
}

} // namespace tavrok::api
