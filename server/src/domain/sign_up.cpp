#include "domain/sign_up.h"

#include <string_view>

#include "domain/accounts.h"
#include "domain/audit.h"
#include "domain/fold.h"
#include "domain/refused.h"
#include "domain/repeat.h"
#include "domain/sessions.h"
#include "domain/text_rules.h"
#include "store/records/captchas.h"
#include "store/records/companies.h"
#include "store/records/users.h"

namespace tavrok::domain {

namespace {

// Without 0 O Q, 1 I L, 2 Z, 5 S, 6 9 G, 8 B, U V: a person must not have to guess.
constexpr std::string_view g_letters = "ACDEFHJKMNPRTWXY347";
constexpr std::size_t g_code_length = 5;
constexpr std::int64_t g_captcha_life = 5 * 60;
constexpr std::int64_t g_most_attempts = 6;

std::string code_hash(const std::string& visitor, std::string_view code) {
    constexpr std::string_view blank = " \t\r\n";
    const auto from = code.find_first_not_of(blank);
    code = from == std::string_view::npos ? std::string_view{}
                                          : code.substr(from, code.find_last_not_of(blank) - from + 1);
    return token_hash(visitor + '\n' + fold(code));
}

/** Where a visitor stands with his picture. */
enum class standing { fits, wrong, signed_up };

standing judge(store::connection& with, const std::string& visitor, const std::string& request,
               const std::string& typed, std::int64_t attempts, std::int64_t now) {
    const auto seen = store::count_captcha(with, token_hash(visitor), request, attempts);
    if (!seen) return standing::wrong;
    if (seen->used_at != 0) {
        const bool again = seen->used_for == request && now - seen->used_at < g_repeat_window;
        return again ? standing::signed_up : standing::wrong;
    }
    // The second stage comes after the hashing: it looks at no time, only whether the picture is the same.
    // The bytes of a sign-up that has read it are no attempt: they may be the network's repeat.
    const bool again = !request.empty() && seen->fitted_for == request;
    const bool alive = attempts == 0 ||
                       (now - seen->made_at < g_captcha_life && (again || seen->attempts <= g_most_attempts));
    if (!alive || seen->code_hash != code_hash(visitor, typed)) return standing::wrong;
    if (attempts != 0 && !again && !request.empty()) store::fit_captcha(with, token_hash(visitor), request);
    return standing::fits;
}

sign_up_marks marks_of(store::connection& with, const sign_up_form& form) {
    sign_up_marks found;
    found.captcha = true;
    found.company = store::company_taken(with, fold(form.company));
    found.username = store::user_mark_taken(with, store::user_mark::username, fold(form.username));
    found.mobile = store::user_mark_taken(with, store::user_mark::mobile, form.mobile);
    found.email = store::user_mark_taken(with, store::user_mark::email, fold(form.email));
    return found;
}

/** Captcha and names; nothing where all is well. */
std::optional<sign_up_state> objection(store::connection& with, standing captcha, const sign_up_form& form) {
    if (captcha == standing::signed_up) return sign_up_state::done;
    if (captcha == standing::wrong) return sign_up_state::captcha_wrong;
    const auto found = marks_of(with, form);
    if (found.username) return sign_up_state::username_taken;
    if (found.company || found.mobile || found.email) return sign_up_state::data_taken;
    return std::nullopt;
}

bool is_mobile(std::string_view text) {
    constexpr std::string_view second = "345789";
    return text.size() == 11 && text.front() == '1' && second.find(text[1]) != std::string_view::npos &&
           text.find_first_not_of("0123456789") == std::string_view::npos;
}

} // namespace

std::string new_captcha_code() {
    std::string code;
    for (std::size_t i = 0; i < g_code_length; ++i)
        code += g_letters[random_below(static_cast<std::uint32_t>(g_letters.size()))];
    return code;
}

void keep_captcha(store::connection& with, const std::string& visitor, const std::string& code,
                  std::int64_t now) {
    store::keep_captcha(with, token_hash(visitor), code_hash(visitor, code), now);
}

void check_form(const sign_up_form& form) {
    check_required("company name", form.company, 200);
    check_trimmed("company name", form.company);
    check_dialable("company phone", form.phone, 200);
    check_text("company address", form.address, 1000);
    check_required("user name", form.username, 100);
    check_trimmed("user name", form.username);
    check_required("real name", form.realname, 100);
    if (!is_mobile(form.mobile)) throw refused("mobile is no mobile number");
    check_email("e-mail", form.email, 200);
    if (!is_password_md5(form.password)) throw refused("the password is no MD5 of one");
}

sign_up_marks question_sign_up(store::connection& with, const std::string& visitor, const sign_up_form& form,
                               std::int64_t now) {
    return judge(with, visitor, {}, form.captcha, 1, now) == standing::fits ? marks_of(with, form)
                                                                            : sign_up_marks{};
}

std::optional<sign_up_state> begin_sign_up(store::connection& with, const std::string& visitor,
                                           const std::string& request, const sign_up_form& form,
                                           std::int64_t now) {
    return objection(with, judge(with, visitor, request, form.captcha, 1, now), form);
}

sign_up_state complete_sign_up(store::connection& with, const std::string& visitor,
                               const std::string& request, const sign_up_form& form,
                               const std::string& password_hash, std::int64_t now) {
    if (const auto ended = objection(with, judge(with, visitor, request, form.captcha, 0, now), form))
        return *ended;
    const auto company = create_company(with, form.company, false, now, form.phone, form.address);
    const auto user = create_user(
        with, {company, form.username, form.realname, password_hash, 1, form.mobile, form.email}, now);
    store::use_captcha(with, token_hash(visitor), request, now);
    note(with, company, user, "sign_up", company, now);
    return sign_up_state::done;
}

} // namespace tavrok::domain
