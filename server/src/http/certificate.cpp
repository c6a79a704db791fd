#include "http/certificate.h"

#include <openssl/bio.h>
#include <openssl/ec.h>
#include <openssl/err.h>
#include <openssl/evp.h>
#include <openssl/pem.h>
#include <openssl/rand.h>
#include <openssl/ssl.h>
#include <openssl/x509v3.h>
#include <unistd.h>

#include <filesystem>
#include <stdexcept>

#include "http/private_file.h"

namespace tavrok::http {

namespace {

constexpr long ten_years_in_seconds = 3652L * 24 * 3600;

template <auto release>
struct releaser {
    template <typename thing>
    void operator()(thing* what) const {
        release(what);
    }
};
using key_ptr = std::unique_ptr<EVP_PKEY, releaser<EVP_PKEY_free>>;
using certificate_ptr = std::unique_ptr<X509, releaser<X509_free>>;
using extension_ptr = std::unique_ptr<X509_EXTENSION, releaser<X509_EXTENSION_free>>;
using bio_ptr = std::unique_ptr<BIO, releaser<BIO_free_all>>;

[[noreturn]] void fail(const std::string& what) {
    char reason[256] = "";
    if (const unsigned long code = ERR_get_error()) ERR_error_string_n(code, reason, sizeof reason);
    ERR_clear_error();
    throw std::runtime_error(what + (reason[0] != '\0' ? ": " + std::string(reason) : std::string{}));
}

void need(bool done, const char* what) {
    if (!done) fail(what);
}

std::string machine_name() {
    char name[256] = "";
    if (::gethostname(name, sizeof name - 1) != 0) return {};
    return name;
}

void extend(X509* certificate, int which, const std::string& value) {
    X509V3_CTX context;
    X509V3_set_ctx_nodb(&context);
    X509V3_set_ctx(&context, certificate, certificate, nullptr, nullptr, 0);
    const extension_ptr extension(X509V3_EXT_conf_nid(nullptr, &context, which, value.c_str()));
    need(extension && X509_add_ext(certificate, extension.get(), -1) == 1, "cannot extend the certificate");
}

std::string alternative_names() {
    std::string names = "DNS:localhost,IP:127.0.0.1,IP:::1";
    const std::string machine = machine_name();
    if (!machine.empty() && machine != "localhost" &&
        machine.find_first_not_of("abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789.-") ==
            std::string::npos) {
        names += ",DNS:" + machine;
    }
    return names;
}

certificate_ptr self_signed(EVP_PKEY* key) {
    certificate_ptr made(X509_new());
    need(made && X509_set_version(made.get(), X509_VERSION_3) == 1, "cannot make a certificate");
    unsigned char serial[8];
    need(RAND_bytes(serial, sizeof serial) == 1, "no random numbers");
    std::uint64_t number = 1;
    for (const unsigned char byte : serial)
        number = number << 8 | byte;
    ASN1_INTEGER_set_uint64(X509_get_serialNumber(made.get()), number >> 1);
    // An hour back, for clients whose clocks run behind.
    X509_gmtime_adj(X509_getm_notBefore(made.get()), -3600);
    X509_gmtime_adj(X509_getm_notAfter(made.get()), ten_years_in_seconds);
    X509_set_pubkey(made.get(), key);
    X509_NAME* name = X509_get_subject_name(made.get());
    const auto* text = reinterpret_cast<const unsigned char*>("tavrok_wmsd");
    X509_NAME_add_entry_by_txt(name, "CN", MBSTRING_ASC, text, -1, -1, 0);
    X509_set_issuer_name(made.get(), name);
    extend(made.get(), NID_basic_constraints, "critical,CA:TRUE,pathlen:0");
    extend(made.get(), NID_key_usage, "critical,digitalSignature,keyCertSign");
    extend(made.get(), NID_ext_key_usage, "serverAuth");
    extend(made.get(), NID_subject_key_identifier, "hash");
    extend(made.get(), NID_subject_alt_name, alternative_names());
    need(X509_sign(made.get(), key, EVP_sha256()) > 0, "cannot sign the certificate");
    return made;
}

std::string text_of(BIO* memory) {
    char* data = nullptr;
    const long size = BIO_get_mem_data(memory, &data);
    return std::string(data, static_cast<std::size_t>(size));
}

void allow_only_what_is_safe(SSL_CTX* tls) {
    SSL_CTX_set_min_proto_version(tls, TLS1_2_VERSION);
    SSL_CTX_set_options(tls,
                        SSL_OP_NO_COMPRESSION | SSL_OP_NO_RENEGOTIATION | SSL_OP_CIPHER_SERVER_PREFERENCE);
    need(SSL_CTX_set_cipher_list(tls, "ECDHE+AESGCM:ECDHE+CHACHA20") == 1, "no cipher is left");
    // Resumption goes by tickets: the service keeps nothing for clients that have gone.
    SSL_CTX_set_session_cache_mode(tls, SSL_SESS_CACHE_OFF);
    SSL_CTX_set_num_tickets(tls, 1);
    // Idle connections hold no record buffers; the reader always empties what was read ahead.
    SSL_CTX_set_mode(tls, SSL_MODE_RELEASE_BUFFERS | SSL_MODE_ACCEPT_MOVING_WRITE_BUFFER);
    SSL_CTX_set_read_ahead(tls, 1);
}

} // namespace

bool make_certificate_if_absent(const certificate_files& files) {
    const bool has_certificate = std::filesystem::exists(files.certificate);
    const bool has_key = std::filesystem::exists(files.private_key);
    if (has_certificate && has_key) return false;
    if (has_certificate != has_key) {
        throw std::runtime_error((has_key ? files.certificate : files.private_key) + " is missing beside " +
                                 (has_key ? files.private_key : files.certificate));
    }
    const key_ptr key(EVP_EC_gen("P-256"));
    need(key != nullptr, "cannot make a private key");
    const certificate_ptr certificate = self_signed(key.get());
    const bio_ptr key_text(BIO_new(BIO_s_mem()));
    const bio_ptr certificate_text(BIO_new(BIO_s_mem()));
    need(PEM_write_bio_PKCS8PrivateKey(key_text.get(), key.get(), nullptr, nullptr, 0, nullptr, nullptr) ==
                 1 &&
             PEM_write_bio_X509(certificate_text.get(), certificate.get()) == 1,
         "cannot write the certificate as text");
    write_file(files.private_key, text_of(key_text.get()), 0600);
    write_file(files.certificate, text_of(certificate_text.get()), 0644);
    return true;
}

std::shared_ptr<ssl_ctx_st> load_tls(const certificate_files& files) {
    ERR_clear_error();
    std::shared_ptr<SSL_CTX> tls(SSL_CTX_new(TLS_server_method()), SSL_CTX_free);
    need(tls != nullptr, "TLS is not available");
    allow_only_what_is_safe(tls.get());
    if (SSL_CTX_use_certificate_chain_file(tls.get(), files.certificate.c_str()) != 1) {
        fail("cannot use the certificate " + files.certificate);
    }
    if (SSL_CTX_use_PrivateKey_file(tls.get(), files.private_key.c_str(), SSL_FILETYPE_PEM) != 1) {
        fail("cannot use the private key " + files.private_key);
    }
    if (SSL_CTX_check_private_key(tls.get()) != 1) {
        fail("the private key " + files.private_key + " does not belong to " + files.certificate);
    }
    return tls;
}

} // namespace tavrok::http
