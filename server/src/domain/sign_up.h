#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "store/connection.h"

namespace tavrok::domain {

/** What a visitor fills in to become a customer: a company and its first administrator. */
struct sign_up_form {
    std::string company;
    std::string phone;   /**< of the company, may be empty */
    std::string address; /**< may be empty */
    std::string username;
    std::string password; /**< MD5 text */
    std::string realname;
    std::string mobile;
    std::string email;
    std::string captcha; /**< what he read in the picture */
};

/** How a sign-up ends; the numbers go out. */
enum class sign_up_state : int {
    username_taken = 2,
    captcha_wrong = 3, /**< or used up, or too old */
    data_taken = 4,    /**< the company's name, the mobile or the e-mail */
    done = 5,
    failed = 6
};

/** What of a form is somebody's already. All false where the picture was read wrongly, so that nobody finds
 * out who is a customer without reading pictures. */
struct sign_up_marks {
    bool company{false};
    bool username{false};
    bool mobile{false};
    bool email{false};
    bool captcha{false}; /**< read rightly */
};

/** A visitor is known by the token in his cookie, whether or not it is a session's. The picture that he was
 * shown last holds for five minutes and for six attempts, of which each question and each sign-up is one, and
 * for one sign-up. */

/** The text of a new picture: five letters and digits that cannot be mistaken for each other. */
std::string new_captcha_code();
/** Keeps the text of the picture that the visitor is shown, as a hash that is worth nothing without his token
 * (writes). */
void keep_captcha(store::connection& with, const std::string& visitor, const std::string& code,
                  std::int64_t now);

/** Refuses a form that the client's fields would not let through. */
void check_form(const sign_up_form& form);
/** Tells what is taken (writes: it is an attempt). */
sign_up_marks question_sign_up(store::connection& with, const std::string& visitor, const sign_up_form& form,
                               std::int64_t now);

/** First stage of a sign-up (writes: it is an attempt). `request` is the hash of the request's bytes: one
 * that has succeeded within 120 s is told so again. Nothing: it goes on, with the hash of the password. */
std::optional<sign_up_state> begin_sign_up(store::connection& with, const std::string& visitor,
                                           const std::string& request, const sign_up_form& form,
                                           std::int64_t now);
/** Second stage (writes): company and administrator, or why not. An error of the kind unique means that
 * somebody else took a name at this moment: the stage, run again, tells which. */
sign_up_state complete_sign_up(store::connection& with, const std::string& visitor,
                               const std::string& request, const sign_up_form& form,
                               const std::string& password_hash, std::int64_t now);

} // namespace tavrok::domain
