#pragma once

#include <string>
#include <string_view>

namespace tavrok::domain {

/** What the client makes of a typed password: lower-case hexadecimal MD5 of its Latin-1 bytes, a character
 * outside Latin-1 standing as '?' (one for each UTF-16 unit). `text` is UTF-8. */
std::string md5_hex(std::string_view text);

/** True for a text that md5_hex() may have given for a password; what it gives for no password is none. */
bool is_password_md5(std::string_view text);

/** Argon2id (19 MiB, two passes) over HMAC-SHA-256 of the MD5 text under the pepper. Slow on purpose (40 ms):
 * never on a network thread. Throws std::runtime_error when memory runs out. */
std::string hash_password(std::string_view pepper, std::string_view md5_hex);
/** The slow test of one login. Compares in constant time; false for a hash that is none. */
bool verify_password(std::string_view pepper, std::string_view md5_hex, const std::string& hash);

/** The form in which the bytes of a request are recognised: HMAC-SHA-256 under the pepper, as they may hold a
 * password, which a plain hash in the database would give away to whoever tries them all. */
std::string body_hash(std::string_view pepper, std::string_view body);

/** A hash that no password fits, of the same cost: unknown names take as long as known ones. */
const std::string& dummy_hash();

} // namespace tavrok::domain
