#include "http/certificate.h"

#include <gtest/gtest.h>
#include <openssl/ssl.h>
#include <openssl/x509v3.h>
#include <sys/stat.h>

#include <filesystem>
#include <fstream>

#include "scene.h"

namespace tavrok::test {

namespace {

std::shared_ptr<X509> read_certificate(const std::string& path) {
    BIO* file = BIO_new_file(path.c_str(), "r");
    std::shared_ptr<X509> read(PEM_read_bio_X509(file, nullptr, nullptr, nullptr), X509_free);
    BIO_free(file);
    return read;
}

unsigned mode_of(const std::string& path) {
    struct stat about {};
    ::stat(path.c_str(), &about);
    return about.st_mode & 0777;
}

} // namespace

TEST(certificate, is_made_once_and_fits_this_machine) {
    const scratch_directory files;
    const http::certificate_files where{files.file("c.pem"), files.file("k.pem")};
    EXPECT_TRUE(http::make_certificate_if_absent(where));
    EXPECT_EQ(mode_of(where.private_key), 0600u);
    const auto made = read_certificate(where.certificate);
    ASSERT_TRUE(made);
    EXPECT_EQ(X509_check_host(made.get(), "localhost", 0, 0, nullptr), 1);
    EXPECT_EQ(X509_check_ip_asc(made.get(), "127.0.0.1", 0), 1);
    EXPECT_EQ(X509_check_ip_asc(made.get(), "::1", 0), 1);
    EXPECT_EQ(X509_check_host(made.get(), "example.org", 0, 0, nullptr), 0);
    EXPECT_EQ(X509_verify(made.get(), X509_get0_pubkey(made.get())), 1);
    EXPECT_EQ(EVP_PKEY_get_bits(X509_get0_pubkey(made.get())), 256);
    int days = 0;
    int seconds = 0;
    ASN1_TIME_diff(&days, &seconds, nullptr, X509_get0_notAfter(made.get()));
    EXPECT_GE(days, 3650);

    EXPECT_FALSE(http::make_certificate_if_absent(where));
    EXPECT_EQ(X509_cmp(made.get(), read_certificate(where.certificate).get()), 0);
}

TEST(certificate, half_a_pair_is_an_error_and_stays_as_it_is) {
    const scratch_directory files;
    const http::certificate_files where{files.file("c.pem"), files.file("k.pem")};
    http::make_certificate_if_absent(where);
    std::filesystem::remove(where.certificate);
    EXPECT_THROW(http::make_certificate_if_absent(where), std::runtime_error);
    EXPECT_TRUE(std::filesystem::exists(where.private_key));
    EXPECT_FALSE(std::filesystem::exists(where.certificate));
}

TEST(certificate, a_key_of_another_certificate_is_refused) {
    const scratch_directory files;
    http::make_certificate_if_absent({files.file("c1.pem"), files.file("k1.pem")});
    http::make_certificate_if_absent({files.file("c2.pem"), files.file("k2.pem")});
    EXPECT_THROW(http::load_tls({files.file("c1.pem"), files.file("k2.pem")}), std::runtime_error);
    EXPECT_THROW(http::load_tls({files.file("none.pem"), files.file("k2.pem")}), std::runtime_error);
    EXPECT_TRUE(http::load_tls({files.file("c1.pem"), files.file("k1.pem")}));
}

TEST(certificate, old_versions_of_tls_are_refused) {
    scene stage;
    EXPECT_FALSE(tls_client(stage.port(), TLS1_VERSION).connected());
    EXPECT_FALSE(tls_client(stage.port(), TLS1_1_VERSION).connected());
    tls_client older(stage.port(), TLS1_2_VERSION);
    EXPECT_TRUE(older.connected());
    EXPECT_EQ(older.protocol(), "TLSv1.2");
    EXPECT_EQ(older.ask(get("x"))->body, "x|");
    tls_client newer(stage.port(), TLS1_3_VERSION);
    EXPECT_EQ(newer.protocol(), "TLSv1.3");
    EXPECT_EQ(newer.ask(get("x"))->body, "x|");
    EXPECT_TRUE(stage.reaches(stage.server->figures().handshakes_failed, 2));
}

TEST(certificate, reloading_serves_new_connections_and_keeps_old_ones) {
    scene stage;
    tls_client before(stage.port());
    ASSERT_TRUE(before.ask(get("x")));
    std::filesystem::remove(stage.certificate.certificate);
    std::filesystem::remove(stage.certificate.private_key);
    http::make_certificate_if_absent(stage.certificate);
    EXPECT_EQ(tls_client(stage.port()).serial(), before.serial());
    EXPECT_TRUE(stage.server->reload_certificate());
    tls_client after(stage.port());
    ASSERT_TRUE(after.connected());
    EXPECT_NE(after.serial(), before.serial());
    EXPECT_EQ(before.ask(get("y"))->body, "y|");
}

TEST(certificate, a_bad_file_leaves_the_former_certificate_in_use) {
    scene stage;
    const std::string serial = tls_client(stage.port()).serial();
    std::ofstream(stage.certificate.certificate) << "no certificate";
    EXPECT_FALSE(stage.server->reload_certificate());
    EXPECT_NE(stage.log_lines(1).at(0).find("the former certificate stays in use"), std::string::npos);
    tls_client after(stage.port());
    EXPECT_EQ(after.serial(), serial);
    EXPECT_TRUE(after.ask(get("x")));
}

} // namespace tavrok::test
