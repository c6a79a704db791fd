#include "domain/sessions.h"

#include <sodium.h>

#include <algorithm>
#include <array>
#include <stdexcept>

#include "domain/claims.h"
#include "store/records/captchas.h"
#include "store/records/drafts.h"
#include "store/records/grants.h"
#include "store/records/login_failures.h"
#include "store/records/sessions.h"

namespace tavrok::domain {

namespace {

constexpr std::int64_t g_touch_after = 60;
constexpr std::int64_t g_keep_failures = 24 * 3600;
constexpr std::int64_t g_keep_captchas = 15 * 60;
constexpr std::int64_t g_keep_drafts = 3600;

void load_grants(store::connection& with, principal& who) {
    store::each_grant(with, who.company, who.user, [&](const store::grant_record& one) {
        who.menu_rows.insert(one.menu);
        if (!one.page.empty()) who.rights.emplace(one.page, one.action);
    });
}

void ready() {
    if (sodium_init() < 0) throw std::runtime_error("the cryptographic library does not start");
}

std::string hex(const unsigned char* bytes, std::size_t count) {
    std::string text(count * 2 + 1, '\0');
    sodium_bin2hex(text.data(), text.size(), bytes, count);
    text.pop_back();
    return text;
}

} // namespace

std::string new_token() {
    ready();
    std::array<unsigned char, 32> bytes{};
    randombytes_buf(bytes.data(), bytes.size());
    return hex(bytes.data(), bytes.size());
}

std::uint32_t random_below(std::uint32_t end) {
    ready();
    return randombytes_uniform(end);
}

std::string token_hash(const std::string& token) {
    std::array<unsigned char, crypto_hash_sha256_BYTES> digest{};
    crypto_hash_sha256(digest.data(), reinterpret_cast<const unsigned char*>(token.data()), token.size());
    return hex(digest.data(), digest.size());
}

std::optional<principal> resume(store::connection& with, const std::string& token, std::int64_t now,
                                const session_limits& limits) {
    if (token.empty()) return std::nullopt;
    const auto found = store::session_by_token(with, token_hash(token));
    if (!found || found->user_state != 1) return std::nullopt;
    if (now - found->last_used_at >= limits.idle || now - found->created_at >= limits.total)
        return std::nullopt;
    principal who;
    who.company = found->company;
    who.user = found->user;
    who.session = found->id;
    who.username = found->username;
    who.administrator = found->user_type == 1;
    who.operator_company = found->operator_company;
    who.last_used = found->last_used_at;
    if (!who.administrator) load_grants(with, who);
    return who;
}

bool needs_touch(const principal& who, std::int64_t now) {
    return now - who.last_used > g_touch_after;
}

bool was_gone(const principal& who, std::int64_t now, const session_limits& limits) {
    return now - who.last_used > limits.claim;
}

void touch(store::connection& with, const principal& who, std::int64_t now, const session_limits& limits) {
    if (was_gone(who, now, limits)) lapse_claims_before_use(with, who, now, limits);
    store::touch_session(with, who.company, who.session, now);
}

bool come_back(store::connection& with, const principal& who, std::int64_t now,
               const session_limits& limits) {
    const bool gone = was_gone(who, now, limits);
    if (gone) touch(with, who, now, limits);
    return gone;
}

std::string open_session(store::connection& with, std::int64_t company, std::int64_t user,
                         const std::string& peer, std::int64_t now, const session_limits& limits) {
    principal who;
    who.company = company;
    who.user = user;
    lapse_claims_before_use(with, who, now, limits);
    auto token = new_token();
    store::insert_session(with, company, user, token_hash(token), peer, now);
    return token;
}

void void_access(store::connection& with, std::int64_t company, std::int64_t user, std::int64_t kept) {
    // The secrets first: who is making a session of one holds it, and this waits for him.
    store::delete_relogins(with, company, user);
    store::delete_sessions(with, company, user, kept);
}

std::span<const sweep_part> sweep_parts() {
    static const std::array<sweep_part, 5> parts{{
        {"secrets", [](auto& with, auto now, const auto&) { store::delete_old_relogins(with, now); }},
        {"sessions",
         [](auto& with, auto now, const auto& limits) {
             store::delete_old_sessions(with, now - limits.total, now - limits.idle);
         }},
        {"login failures",
         [](auto& with, auto now, const auto&) { store::delete_old_failures(with, now - g_keep_failures); }},
        {"pictures",
         [](auto& with, auto now, const auto&) { store::delete_old_captchas(with, now - g_keep_captchas); }},
        {"drafts",
         [](auto& with, auto now, const auto&) { store::delete_old_drafts(with, now - g_keep_drafts); }},
    }};
    return parts;
}

void sweep(store::connection& with, std::int64_t now, const session_limits& limits) {
    for (const auto& part : sweep_parts())
        part.run(with, now, limits);
    sweep_claims(with, now, limits);
}

} // namespace tavrok::domain
