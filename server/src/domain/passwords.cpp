#include "domain/passwords.h"

#include <openssl/evp.h>
#include <sodium.h>

#include <array>
#include <stdexcept>

#include "domain/fold.h"

namespace tavrok::domain {

namespace {

constexpr unsigned long long g_passes = 2;
constexpr std::size_t g_memory = 19 * 1024 * 1024;

void ready() {
    if (sodium_init() < 0) throw std::runtime_error("the cryptographic library does not start");
}

std::string latin1(std::string_view text) {
    std::string bytes;
    for (std::size_t at = 0; at < text.size();) {
        const auto letter = next_letter(text, at);
        if (letter <= 0xff) {
            bytes += static_cast<char>(letter);
        } else {
            bytes += letter > 0xffff && letter != g_no_letter ? "??" : "?";
        }
    }
    return bytes;
}

std::string hex(const unsigned char* bytes, std::size_t count) {
    std::string text(count * 2 + 1, '\0');
    sodium_bin2hex(text.data(), text.size(), bytes, count);
    text.pop_back();
    return text;
}

/** HMAC-SHA-256: useless without the pepper, which no copy of the database holds. */
std::string peppered(std::string_view pepper, std::string_view text) {
    ready();
    crypto_auth_hmacsha256_state state;
    std::array<unsigned char, crypto_auth_hmacsha256_BYTES> mac{};
    crypto_auth_hmacsha256_init(&state, reinterpret_cast<const unsigned char*>(pepper.data()), pepper.size());
    crypto_auth_hmacsha256_update(&state, reinterpret_cast<const unsigned char*>(text.data()), text.size());
    crypto_auth_hmacsha256_final(&state, mac.data());
    return hex(mac.data(), mac.size());
}

} // namespace

std::string md5_hex(std::string_view text) {
    const auto bytes = latin1(text);
    std::array<unsigned char, EVP_MAX_MD_SIZE> digest{};
    unsigned length = 0;
    if (EVP_Digest(bytes.data(), bytes.size(), digest.data(), &length, EVP_md5(), nullptr) != 1) {
        throw std::runtime_error("MD5 is not available");
    }
    return hex(digest.data(), length);
}

bool is_password_md5(std::string_view text) {
    return text.size() == 32 && text.find_first_not_of("0123456789abcdef") == std::string_view::npos &&
           text != md5_hex({});
}

std::string hash_password(std::string_view pepper, std::string_view md5_hex) {
    const auto secret = peppered(pepper, md5_hex);
    std::array<char, crypto_pwhash_STRBYTES> hash{};
    if (crypto_pwhash_str_alg(hash.data(), secret.data(), secret.size(), g_passes, g_memory,
                              crypto_pwhash_ALG_ARGON2ID13) != 0) {
        throw std::runtime_error("no memory to hash a password");
    }
    return hash.data();
}

bool verify_password(std::string_view pepper, std::string_view md5_hex, const std::string& hash) {
    const auto secret = peppered(pepper, md5_hex);
    return crypto_pwhash_str_verify(hash.c_str(), secret.data(), secret.size()) == 0;
}

std::string body_hash(std::string_view pepper, std::string_view body) {
    return peppered(pepper, body);
}

const std::string& dummy_hash() {
    // random bytes in place of salt and digest: nobody knows a password for them
    static const std::string hash =
        "$argon2id$v=19$m=19456,t=2,p=1$GdsN8L4lUzdaDx+e0itVhQ$WoSUO605VzaOcJ9DRHsWTncmlBrOi5Ui+UzEnaBenKw";
    return hash;
}

} // namespace tavrok::domain
