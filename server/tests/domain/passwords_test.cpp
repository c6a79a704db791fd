#include "domain/passwords.h"

#include <gtest/gtest.h>

namespace tavrok::domain {
namespace {

TEST(md5_hex, is_what_the_client_makes_of_a_typed_password) {
    EXPECT_EQ(md5_hex(""), "d41d8cd98f00b204e9800998ecf8427e");
    EXPECT_EQ(md5_hex("abc"), "900150983cd24fb0d6963f7d28e17f72");
}

TEST(md5_hex, takes_latin1_bytes_and_question_marks_for_the_rest) {
    EXPECT_EQ(md5_hex("仓"), md5_hex("?"));
    EXPECT_EQ(md5_hex("😀"), md5_hex("??"));
    EXPECT_EQ(md5_hex("é"), "3406877694691ddd1dfb0aca54681407");
}

TEST(passwords, verify_against_their_own_hash_only) {
    const auto hash = hash_password("pepper", md5_hex("secret"));
    EXPECT_TRUE(hash.starts_with("$argon2id$v=19$m=19456,t=2,p=1$")) << hash;
    EXPECT_TRUE(verify_password("pepper", md5_hex("secret"), hash));
    EXPECT_FALSE(verify_password("pepper", md5_hex("Secret"), hash));
    EXPECT_FALSE(verify_password("salt", md5_hex("secret"), hash));
    EXPECT_NE(hash, hash_password("pepper", md5_hex("secret")));
}

TEST(passwords, a_hash_that_is_none_verifies_nothing) {
    EXPECT_FALSE(verify_password("pepper", md5_hex("secret"), ""));
    EXPECT_FALSE(verify_password("pepper", md5_hex("secret"), "$argon2id$nonsense"));
}

TEST(passwords, the_dummy_costs_as_much_and_fits_nothing) {
    const auto cost = std::string("$argon2id$v=19$m=19456,t=2,p=1$");
    EXPECT_TRUE(dummy_hash().starts_with(cost));
    EXPECT_EQ(dummy_hash().size(), hash_password("p", "x").size());
    EXPECT_FALSE(verify_password("", md5_hex(""), dummy_hash()));
}

TEST(body_hashes, are_worth_nothing_without_the_pepper) {
    // HMAC-SHA-256 as RFC 4231 has it, second case
    EXPECT_EQ(body_hash("Jefe", "what do ya want for nothing?"),
              "5bdcc146bf60754e6a042426089575c75a003f089d2739839dec58b964ec3843");
    EXPECT_NE(body_hash("a", "body"), body_hash("b", "body"));
}

} // namespace
} // namespace tavrok::domain
