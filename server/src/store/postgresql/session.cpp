#include "store/postgresql/session.h"

#include <libpq-fe.h>
#include <poll.h>

#include <algorithm>
#include <array>
#include <limits>

#include "store/postgresql/errors.h"

namespace tavrok::store {

namespace {

std::string milliseconds(std::chrono::milliseconds time) {
    return std::to_string(time.count());
}

} // namespace

void free_pg_result::operator()(pg_result* result) const {
    PQclear(result);
}

pg_session::pg_session(const options& how, clock::time_point deadline) {
    try {
        connect(how, deadline);
        set_up(how, deadline);
    } catch (...) {
        PQfinish(m_link);
        throw;
    }
}

pg_session::~pg_session() {
    PQfinish(m_link);
}

void pg_session::connect(const options& how, clock::time_point deadline) {
    // What stands in the connection string comes later in the list and wins, except for the encoding.
    const std::array<const char*, 6> keys{"application_name", "tcp_user_timeout", "keepalives_idle",
                                          "dbname",           "client_encoding",  nullptr};
    const std::array<const char*, 6> values{"tavrok_wmsd",        "15000", "30",
                                            how.location.c_str(), "UTF8",  nullptr};
    m_link = PQconnectStartParams(keys.data(), values.data(), 1);
    if (!m_link || PQstatus(m_link) == CONNECTION_BAD) fail_link("connect");
    PQsetNoticeReceiver(
        m_link, [](void*, const PGresult*) {}, nullptr);
    auto state = PGRES_POLLING_WRITING;
    while (state != PGRES_POLLING_OK) {
        wait(state == PGRES_POLLING_WRITING ? POLLOUT : POLLIN, deadline);
        state = PQconnectPoll(m_link);
        if (state == PGRES_POLLING_FAILED) fail_link("connect");
    }
    if (PQsetnonblocking(m_link, 1) != 0) fail_link("connect");
}

void pg_session::set_up(const options& how, clock::time_point deadline) {
    const std::string encoding = PQparameterStatus(m_link, "server_encoding");
    if (encoding != "UTF8")
        throw error(error_kind::other, "the database is encoded in " + encoding + ", not UTF8");
    run("SET statement_timeout = " + milliseconds(how.statement_timeout) +
            "; SET lock_timeout = " + milliseconds(how.lock_timeout) +
            "; SET idle_in_transaction_session_timeout = 60000" + "; SET standard_conforming_strings = on" +
            "; SET SESSION CHARACTERISTICS AS TRANSACTION ISOLATION LEVEL " + how.isolation +
            // An answer of success promises that the row is on disk, whatever the server is set to.
            "; SELECT set_config('synchronous_commit', 'on', false)"
            " WHERE current_setting('synchronous_commit') = 'off'",
        deadline);
}

void pg_session::wait(short events, clock::time_point deadline) {
    while (true) {
        int patience = -1;
        if (deadline != no_deadline) {
            const auto left =
                std::chrono::duration_cast<std::chrono::milliseconds>(deadline - clock::now()).count();
            patience = static_cast<int>(std::clamp<std::int64_t>(left, 0, std::numeric_limits<int>::max()));
        }
        pollfd socket{PQsocket(m_link), events, 0};
        const int count = ::poll(&socket, 1, patience);
        if (count > 0) return;
        if (count == 0) fail_link("no answer in time");
        if (errno != EINTR) fail_link("poll");
    }
}

pg_result_ptr pg_session::run(const std::string& sql, clock::time_point deadline) {
    return collect(PQsendQuery(m_link, sql.c_str()), deadline);
}

void pg_session::prepare(const std::string& name, const std::string& sql, const std::vector<unsigned>& types,
                         clock::time_point deadline) {
    collect(PQsendPrepare(m_link, name.c_str(), sql.c_str(), static_cast<int>(types.size()), types.data()),
            deadline);
}

pg_result_ptr pg_session::run_prepared(const std::string& name, const std::vector<const char*>& values,
                                       clock::time_point deadline) {
    return collect(PQsendQueryPrepared(m_link, name.c_str(), static_cast<int>(values.size()), values.data(),
                                       nullptr, nullptr, 0),
                   deadline);
}

pg_result_ptr pg_session::collect(int sent, clock::time_point deadline) {
    if (sent != 1) fail_link("send");
    for (int left = PQflush(m_link); left != 0; left = PQflush(m_link)) {
        if (left < 0) fail_link("send");
        wait(POLLIN | POLLOUT, deadline);
        if (PQconsumeInput(m_link) != 1) fail_link("receive");
    }
    pg_result_ptr last;
    while (true) {
        while (PQisBusy(m_link) == 1) {
            wait(POLLIN, deadline);
            if (PQconsumeInput(m_link) != 1) fail_link("receive");
        }
        pg_result_ptr next(PQgetResult(m_link));
        if (!next) break;
        // Of several statements the first failure counts; the server skips the rest.
        if (!last || PQresultStatus(last.get()) != PGRES_FATAL_ERROR) last = std::move(next);
    }
    if (!last) fail_link("no result");
    const auto status = PQresultStatus(last.get());
    if (status != PGRES_COMMAND_OK && status != PGRES_TUPLES_OK) fail(last.get());
    return last;
}

void pg_session::fail_link(const std::string& what) {
    m_usable = false;
    throw error(error_kind::lost, what + ": " + (m_link ? PQerrorMessage(m_link) : "out of memory"));
}

void pg_session::fail(const pg_result* result) {
    const auto field = [result](int which) {
        const char* text = PQresultErrorField(result, which);
        return std::string(text ? text : "");
    };
    const auto state = field(PG_DIAG_SQLSTATE);
    if (ends_connection(state) || PQstatus(m_link) == CONNECTION_BAD) m_usable = false;
    // Not the detail: it shows values of rows, and this goes into the log.
    auto text = state + " " + field(PG_DIAG_MESSAGE_PRIMARY);
    const auto constraint = field(PG_DIAG_CONSTRAINT_NAME);
    if (!constraint.empty()) text += " [" + constraint + "]";
    throw error(classify_postgresql(state), text);
}

} // namespace tavrok::store
