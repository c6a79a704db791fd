#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "api/stock_control_world.h"
#include "running_service.h"
#include "support/scratch_database.h"

namespace tavrok::test {

/** A user with a session; `cookie` is the header line of his requests. */
struct actor {
    std::int64_t user{0};
    std::string cookie;
};

/** A keep-alive connection of one user. It is opened at the first request, and anew before a connection has
 * had as many as the service takes. */
class wire {
public:
    wire(unsigned short port, std::string cookie) : m_port(port), m_cookie(std::move(cookie)) {}
    /** The body of the answer; nothing where the connection ended before it came. */
    std::optional<std::string> ask(const std::string& path, const std::string& body);
    /** The two halves of ask(). */
    bool send(const std::string& path, const std::string& body);
    std::optional<std::string> read();
    /** The same in one word for tests where nothing breaks: "" and a failure of the test instead of nothing.
     */
    std::string answer(const std::string& path, const std::string& body);

private:
    unsigned short m_port;
    std::string m_cookie;
    std::unique_ptr<tls_client> m_client;
    int m_asked{0};
};

/** A company with users on a database of its own; services on it come and go. */
class documents_site {
public:
    /** All users are administrators, each with a session. */
    documents_site(const std::string& engine, int users);

    std::unique_ptr<running_service> start();
    /** Makes what documents name, over the wire; the first user does it. */
    stock_control_world furnish(unsigned short port) const;
    /** A world whose requests go through that connection. */
    static documents_world::way through(wire& link);
    /** What is wrong once no service runs any more: the findings of `tavrok_wmsd check` and of the books, ""
     * where everything holds. */
    std::string faults();

    const std::vector<actor>& actors() const { return m_actors; }
    scratch_database& database() { return m_database; }

private:
    scratch_database m_database;
    std::vector<actor> m_actors;
};

/** One number out of the database. */
std::int64_t number_in(store::database& where, const std::string& sql);

} // namespace tavrok::test
