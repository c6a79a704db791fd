#pragma once

#include <openssl/ssl.h>

#include <cstdint>
#include <map>
#include <string>

namespace bench {

/** The figures of the service's metrics page, by name and labels as they stand there. */
using metrics = std::map<std::string, double>;

metrics read_metrics(SSL_CTX* context, std::uint16_t port);

/** What the service did between two looks at its figures. */
class work_done {
public:
    work_done(metrics before, metrics after) : m_before(std::move(before)), m_after(std::move(after)) {}

    /** Requests of a path, and the seconds from their arrival to their answers. */
    double requests(const std::string& path) const;
    double request_seconds(const std::string& path) const;
    /** How often a statement ran. */
    double runs(const std::string& statement) const;
    /** All statements, the seconds in them, and the commits. */
    double statements() const;
    double statement_seconds() const;
    double commits() const;

private:
    double grown(const std::string& name) const;
    double all_grown(const std::string& family) const;

    metrics m_before;
    metrics m_after;
};

} // namespace bench
