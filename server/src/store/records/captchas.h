#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "store/connection.h"

namespace tavrok::store {

/** The picture that a visitor was shown last. */
struct captcha_record {
    std::string code_hash;
    std::int64_t made_at{0};
    std::int64_t attempts{0};
    std::string used_for; /**< hash of the request that signed up with it; empty: none has */
    std::int64_t used_at{0};
    std::string fitted_for; /**< hash of the last sign-up that had read it; empty: none has */
};

/** Takes the place of an older picture of the visitor, with attempts and use anew. */
void keep_captcha(connection& with, const std::string& visitor_hash, const std::string& code_hash,
                  std::int64_t now);
/** Adds to the attempts, unless `request_hash` is that of the sign-up that had read it last, and gives the
 * picture as it is then; its row is locked from here to the commit. */
std::optional<captcha_record> count_captcha(connection& with, const std::string& visitor_hash,
                                            const std::string& request_hash, std::int64_t attempts);
/** Notes the sign-up that has read it. */
void fit_captcha(connection& with, const std::string& visitor_hash, const std::string& request_hash);
void use_captcha(connection& with, const std::string& visitor_hash, const std::string& request_hash,
                 std::int64_t now);
/** Pictures that were made before. */
void delete_old_captchas(connection& with, std::int64_t made);

} // namespace tavrok::store
