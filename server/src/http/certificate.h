#pragma once

#include <memory>
#include <string>

struct ssl_ctx_st;

namespace tavrok::http {

/** Where the certificate chain and its private key are, both PEM. */
struct certificate_files {
    std::string certificate;
    std::string private_key;
};

/**
 * Makes a self-signed EC P-256 certificate, good for ten years for localhost, the loopback addresses and this
 * machine's name, where neither file is there. The key's file is readable by its owner only. Gives whether it
 * made one; throws std::runtime_error where one of the two is missing or nothing can be written.
 */
bool make_certificate_if_absent(const certificate_files& files);

/** TLS 1.2 and 1.3 with the certificate in `files`. Throws std::runtime_error that says what is wrong with
 * them. */
std::shared_ptr<ssl_ctx_st> load_tls(const certificate_files& files);

} // namespace tavrok::http
