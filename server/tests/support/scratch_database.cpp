#include "support/scratch_database.h"

#include <libpq-fe.h>
#include <unistd.h>

#include <atomic>
#include <cstdlib>
#include <filesystem>
#include <stdexcept>

namespace tavrok::test {

namespace {

constexpr const char* g_variable = "TAVROK_TEST_POSTGRESQL";

std::string server() {
    const char* set = std::getenv(g_variable);
    return set ? set : "";
}

std::string new_folder() {
    auto pattern = (std::filesystem::temp_directory_path() / "tavrok_test_XXXXXX").string();
    if (!::mkdtemp(pattern.data())) throw std::runtime_error("cannot make " + pattern);
    return pattern;
}

std::string percent_encoded(const std::string& text) {
    static constexpr char digits[] = "0123456789ABCDEF";
    std::string result;
    for (const char one : text) {
        const auto byte = static_cast<unsigned char>(one);
        result += '%';
        result += digits[byte >> 4U];
        result += digits[byte & 15U];
    }
    return result;
}

/** The connection string of the server with another database in it, as a URI. */
std::string location_of(const std::string& name) {
    char* message = nullptr;
    PQconninfoOption* all = PQconninfoParse(server().c_str(), &message);
    if (!all) {
        const std::string text = message ? message : "unreadable";
        PQfreemem(message);
        throw std::runtime_error(std::string(g_variable) + ": " + text);
    }
    std::string uri = "postgresql:///" + name + "?";
    for (const auto* one = all; one->keyword; ++one) {
        if (!one->val || std::string(one->keyword) == "dbname") continue;
        if (uri.back() != '?') uri += '&';
        uri += std::string(one->keyword) + "=" + percent_encoded(one->val);
    }
    PQconninfoFree(all);
    return uri;
}

/** Runs one statement on the server itself. */
void on_server(const std::string& sql) {
    PGconn* link = PQconnectdb(server().c_str());
    PGresult* result = PQexec(link, sql.c_str());
    const bool done = PQresultStatus(result) == PGRES_COMMAND_OK;
    const std::string text = PQerrorMessage(link);
    PQclear(result);
    PQfinish(link);
    if (!done) throw std::runtime_error(sql + ": " + text);
}

std::string new_name() {
    static std::atomic<int> count{0};
    return "scratch_" + std::to_string(::getpid()) + "_" + std::to_string(++count);
}

} // namespace

scratch_database::scratch_database(const std::string& engine) : m_folder(new_folder()) {
    if (engine == "sqlite") {
        m_options.location = m_folder + "/scratch.db";
        m_options.minimum_free_bytes = 0; // a test is not about the disk of the machine it runs on
        return;
    }
    if (engine == "postgresql_serializable") {
        m_options.isolation = "SERIALIZABLE";
    } else if (engine != "postgresql") {
        throw std::runtime_error("no such engine: " + engine);
    }
    m_name = new_name();
    on_server("CREATE DATABASE " + m_name +
              " TEMPLATE template0 ENCODING 'UTF8' LC_COLLATE 'C' LC_CTYPE 'C'");
    m_options.location = location_of(m_name);
}

scratch_database::~scratch_database() {
    close();
    std::error_code ignored;
    std::filesystem::remove_all(m_folder, ignored);
    if (m_name.empty()) return;
    try {
        on_server("DROP DATABASE IF EXISTS " + m_name + " WITH (FORCE)");
    } catch (const std::exception&) {
        // The server is thrown away as a whole; one database that stays there costs nothing.
    }
}

std::string scratch_database::missing(const std::string& engine) {
    if (engine == "sqlite" || !server().empty()) return {};
    return std::string("no PostgreSQL to test on: set ") + g_variable +
           " or run under server/tests/with_postgresql";
}

store::database& scratch_database::get() {
    if (!m_open) m_open = store::open(m_options);
    return *m_open;
}

void scratch_database::close() {
    m_open.reset();
}

bool scratch_database::left_within(std::chrono::milliseconds time) const {
    if (m_name.empty()) return true;
    const auto until = std::chrono::steady_clock::now() + time;
    PGconn* link = PQconnectdb(server().c_str());
    const std::string sql = "SELECT 1 FROM pg_stat_activity WHERE datname = '" + m_name + "'";
    bool left = false;
    while (!left && std::chrono::steady_clock::now() < until) {
        PGresult* result = PQexec(link, sql.c_str());
        left = PQresultStatus(result) == PGRES_TUPLES_OK && PQntuples(result) == 0;
        PQclear(result);
    }
    PQfinish(link);
    return left;
}

} // namespace tavrok::test
