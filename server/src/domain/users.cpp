#include "domain/users.h"

#include "domain/audit.h"
#include "domain/fold.h"
#include "domain/refused.h"
#include "domain/text_rules.h"
#include "store/records/companies.h"
#include "store/records/grants.h"
#include "store/records/users.h"

namespace tavrok::domain {

namespace {

// A user's row is locked before the company's: who adds something holds his own row by its key and changes
// the company last.

/** Locks the company's row and looks who asks: he may have been disabled since his session was found. */
void demand_administrator(store::connection& with, const principal& who) {
    store::bump_data_version(with, who.company);
    const auto self = store::user_by_id(with, who.company, who.user);
    if (!self || self->type != 1 || self->state != 1) throw refused("no administrator any more");
}

store::user_record known(store::connection& with, const principal& who, std::int64_t id) {
    auto found = store::user_by_id(with, who.company, id);
    if (!found) throw refused("unknown user " + std::to_string(id));
    return *std::move(found);
}

std::string compared(user_mark what, const std::string& text) {
    return what == user_mark::mobile ? text : fold(text);
}

void check_change(const user_change& change) {
    check_text("real name", change.realname, 100);
    check_dialable("mobile", change.mobile, 40);
    check_email("e-mail", change.email, 200);
    if (change.state != 1 && change.state != 2) throw refused("user state is neither 1 nor 2");
}

void change_state(store::connection& with, const principal& who, const store::user_record& user,
                  std::int64_t state, std::int64_t now) {
    if (state == user.state) return;
    if (state == 2) {
        if (user.id == who.user) throw refused("nobody disables himself");
        demand_other_administrator(with, {who.company, user.id});
    }
    store::set_user_state(with, who.company, user.id, state);
    if (state == 2) void_access(with, who.company, user.id);
    note(with, who, state == 2 ? "user_disable" : "user_enable", user.id, now);
}

} // namespace

user_page list_users(store::connection& with, const principal& who, const user_search& search,
                     const page_wish& wish, count_cache& counts) {
    store::list_filter filter{who.company, {}};
    store::like(filter, "username_folded", criterion_pattern(search.username));
    store::like(filter, "realname_folded", criterion_pattern(search.realname));
    if (search.type != 0) store::equal(filter, "type", search.type);
    if (search.state != 0) store::equal(filter, "state", search.state);
    return read_page<user>(with, store::g_user_list, filter,
                           list_total(with, store::g_user_list, filter, counts), wish,
                           [](const store::row& one) {
                               auto record = store::user_of_row(one);
                               return user{record.id,
                                           std::move(record.username),
                                           std::move(record.realname),
                                           static_cast<int>(record.type),
                                           std::move(record.mobile),
                                           std::move(record.email),
                                           static_cast<int>(record.state),
                                           record.last_login_at,
                                           record.registered_at};
                           });
}

added add_user(store::connection& with, const principal& who, new_user user, std::int64_t now) {
    check_email("e-mail", user.email, 200);
    demand_administrator(with, who);
    user.company = who.company;
    user.type = 2;
    return {create_user(with, user, now, who.user), now};
}

void edit_user(store::connection& with, const principal& who, const user_change& change, std::int64_t now) {
    check_change(change);
    store::hold_user(with, who.company, change.id);
    demand_administrator(with, who);
    auto user = known(with, who, change.id);
    if (taken(with, who, user_mark::mobile, change.mobile, change.id) ||
        taken(with, who, user_mark::email, change.email, change.id)) {
        throw refused("mobile or e-mail is taken");
    }
    user.realname = change.realname;
    user.realname_folded = fold(change.realname);
    user.mobile = change.mobile;
    user.email = change.email;
    user.email_folded = fold(change.email);
    store::set_user_details(with, user);
    change_state(with, who, user, change.state, now);
    if (!change.password_hash.empty()) {
        store::set_user_hash(with, who.company, change.id, change.password_hash);
        void_access(with, who.company, change.id, change.id == who.user ? who.session : 0);
        note(with, who, "user_password", change.id, now);
    }
    note(with, who, "user_edit", change.id, now);
}

void remove_user(store::connection& with, const principal& who, std::int64_t id, std::int64_t now) {
    if (id == who.user) throw refused("nobody removes himself");
    const auto user = known(with, who, id);
    // Before it is known whether he may go: a refusal takes it back.
    if (store::remove_user(with, who.company, id, now) == 0) throw refused("removed meanwhile");
    demand_administrator(with, who);
    if (user.type == 1) demand_administrators_beside(with, {who.company, id});
    store::change_list_counter(with, who.company, store::g_user_list, -1);
    void_access(with, who.company, id);
    store::delete_grants(with, who.company, id);
    note(with, who, "user_delete", id, now);
}

bool taken(store::connection& with, const principal& who, user_mark what, const std::string& text,
           std::int64_t except) {
    if (except != 0) known(with, who, except);
    return store::user_mark_taken(with, what, compared(what, text), except);
}

} // namespace tavrok::domain
