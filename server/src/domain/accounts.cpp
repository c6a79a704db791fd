#include "domain/accounts.h"

#include "domain/audit.h"
#include "domain/fold.h"
#include "domain/refused.h"
#include "domain/text_rules.h"
#include "store/records/companies.h"
#include "store/records/partners.h"
#include "store/records/users.h"

namespace tavrok::domain {

namespace {

constexpr std::size_t g_name_limit = 100;

void check_user(const new_user& user) {
    check_required("user name", user.username, g_name_limit);
    // The client trims what is typed: such a name could never log in.
    if (user.username.find_first_of("\t\r\n") != std::string::npos || user.username.front() == ' ' ||
        user.username.back() == ' ') {
        throw refused("user name has blanks around it or a line break in it");
    }
    check_text("real name", user.realname, g_name_limit);
    check_dialable("mobile", user.mobile, 40);
    check_text("e-mail", user.email, 200);
    if (user.type != 1 && user.type != 2) throw refused("user type is neither 1 nor 2");
    if (user.state != 1 && user.state != 2) throw refused("user state is neither 1 nor 2");
    if (user.password_hash.empty()) throw refused("no password");
}

store::user_record known_user(store::connection& with, const user_key& whom) {
    auto user = store::user_by_id(with, whom.company, whom.user);
    if (!user) throw refused("unknown user " + std::to_string(whom.user));
    return *std::move(user);
}

} // namespace

std::int64_t create_company(store::connection& with, const std::string& name, bool operator_company,
                            std::int64_t now, const std::string& phone, const std::string& address) {
    check_required("company name", name, 200);
    check_text("company phone", phone, 200);
    check_text("company address", address, 1000);
    if (operator_company && store::operator_exists(with)) {
        throw refused("the database has a company that runs the service already");
    }
    if (store::company_taken(with, fold(name))) throw refused("company name is taken");
    const auto id = store::insert_company(with, {name, fold(name), phone, address, operator_company, now});
    store::create_partner_counters(with, id);
    note(with, id, 0, "company_add", id, now);
    return id;
}

bool no_company(store::connection& with) {
    return !store::any_company(with);
}

std::int64_t create_user(store::connection& with, const new_user& user, std::int64_t now, std::int64_t by) {
    check_user(user);
    store::user_record record;
    record.company = user.company;
    record.username = user.username;
    record.username_folded = fold(user.username);
    record.realname = user.realname;
    record.realname_folded = fold(user.realname);
    record.password_hash = user.password_hash;
    record.type = user.type;
    record.state = user.state;
    record.mobile = user.mobile;
    record.email = user.email;
    record.email_folded = fold(user.email);
    record.registered_at = now;
    if (store::data_version(with, user.company) == 0) throw refused("unknown company");
    if (store::user_mark_taken(with, store::user_mark::username, record.username_folded) ||
        store::user_mark_taken(with, store::user_mark::mobile, record.mobile) ||
        store::user_mark_taken(with, store::user_mark::email, record.email_folded)) {
        throw refused("user name, mobile or e-mail is taken");
    }
    const auto id = store::insert_user(with, record);
    note(with, user.company, by, "user_add", id, now);
    return id;
}

std::optional<user_key> find_user(store::connection& with, const std::string& username) {
    const auto user = store::user_by_name(with, fold(username), username);
    if (!user) return std::nullopt;
    return user_key{user->company, user->id};
}

void set_password(store::connection& with, const user_key& whom, const std::string& password_hash,
                  std::int64_t now) {
    if (store::set_user_hash(with, whom.company, whom.user, password_hash) == 0) {
        throw refused("unknown user " + std::to_string(whom.user));
    }
    void_access(with, whom.company, whom.user);
    note(with, whom.company, 0, "user_password", whom.user, now);
}

void lock_for_adding(store::connection& with, const principal& who) {
    if (!store::hold_user(with, who.company, who.user)) throw refused("removed meanwhile");
    store::bump_data_version(with, who.company);
}

void demand_administrators_beside(store::connection& with, const user_key& whom) {
    if (store::other_administrators(with, whom.company, whom.user) == 0) {
        throw refused("the last administrator stays");
    }
}

void demand_other_administrator(store::connection& with, const user_key& whom) {
    store::bump_data_version(with, whom.company);
    if (known_user(with, whom).type == 1) demand_administrators_beside(with, whom);
}

void disable_user(store::connection& with, const user_key& whom, std::int64_t now) {
    store::set_user_state(with, whom.company, whom.user, 2);
    demand_other_administrator(with, whom);
    void_access(with, whom.company, whom.user);
    note(with, whom.company, 0, "user_disable", whom.user, now);
}

void enable_user(store::connection& with, const user_key& whom, std::int64_t now) {
    if (store::set_user_state(with, whom.company, whom.user, 1) == 0) {
        throw refused("unknown user " + std::to_string(whom.user));
    }
    note(with, whom.company, 0, "user_enable", whom.user, now);
}

} // namespace tavrok::domain
