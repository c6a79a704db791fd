#include "store/postgresql/connection.h"

#include <libpq-fe.h>

#include <charconv>
#include <cstring>
#include <utility>

#include "store/bound_values.h"

namespace tavrok::store {

namespace {

constexpr std::size_t g_cache_limit = 512;
constexpr std::chrono::seconds g_connect_timeout{3};
/** How much longer than the server itself we wait for it to end a statement. */
constexpr std::chrono::seconds g_grace{5};
constexpr const char* g_migration_lock = "SELECT pg_advisory_xact_lock(7305805112043)";

constexpr Oid g_bool = 16;
constexpr Oid g_int8 = 20;
constexpr Oid g_int2 = 21;
constexpr Oid g_int4 = 23;
constexpr Oid g_text = 25;
constexpr Oid g_bpchar = 1042;
constexpr Oid g_varchar = 1043;
constexpr Oid g_numeric = 1700; // what sum() makes of 64-bit integers

class pg_row final : public row {
public:
    pg_row(const pg_result* result, int index, const std::string& name)
        : m_result(result), m_index(index), m_name(name) {}

    bool null(int column) const override {
        if (column < 0 || column >= PQnfields(m_result)) wrong(column, "there");
        return PQgetisnull(m_result, m_index, column) == 1;
    }
    std::int64_t integer(int column) const override {
        const auto bytes = raw(column, "an integer");
        const auto type = PQftype(m_result, column);
        if (type == g_bool) return bytes == "t" ? 1 : 0;
        const bool whole = type == g_int8 || type == g_int4 || type == g_int2 || type == g_numeric;
        std::int64_t number = 0;
        const auto* end = bytes.data() + bytes.size();
        const auto read = std::from_chars(bytes.data(), end, number);
        if (!whole || read.ec != std::errc() || read.ptr != end) wrong(column, "an integer");
        return number;
    }
    std::string_view text(int column) const override {
        const auto bytes = raw(column, "a text");
        const auto type = PQftype(m_result, column);
        if (type != g_text && type != g_varchar && type != g_bpchar) wrong(column, "a text");
        return bytes;
    }

private:
    std::string_view raw(int column, const char* wanted) const {
        if (null(column)) wrong(column, wanted);
        return {PQgetvalue(m_result, m_index, column),
                static_cast<std::size_t>(PQgetlength(m_result, m_index, column))};
    }
    [[noreturn]] void wrong(int column, const char* words) const {
        throw error(error_kind::other, m_name + ": column " + std::to_string(column) + " is not " + words);
    }

    const pg_result* m_result;
    int m_index;
    const std::string& m_name;
};

const std::string& label(const statement& what) {
    return what.name.empty() ? what.sql : what.name;
}

std::string types_of(std::span<const value> bound) {
    std::string types;
    for (const auto& one : bound) {
        types += std::holds_alternative<std::int64_t>(one)  ? 'i'
                 : std::holds_alternative<std::string>(one) ? 't'
                                                            : 'n';
    }
    return types;
}

} // namespace

pg_connection::pg_connection(const options& how, std::shared_ptr<meter> figures)
    : m_statement_timeout(how.statement_timeout),
      m_figures(std::move(figures)),
      m_session(how, pg_session::clock::now() + g_connect_timeout) {}

template <typename Action>
auto pg_connection::guarded(const std::string& name, const Action& action) {
    if (m_failure) std::rethrow_exception(m_failure);
    try {
        return action();
    } catch (const error& failed) {
        m_failure = std::make_exception_ptr(error(failed.kind(), name + ": " + failed.what()));
        std::rethrow_exception(m_failure);
    }
}

pg_session::clock::time_point pg_connection::deadline() const {
    if (m_migrating) return pg_session::no_deadline;
    return pg_session::clock::now() + m_statement_timeout + g_grace;
}

void pg_connection::query(const statement& what, std::span<const value> bound,
                          const std::function<void(const row&)>& each) {
    const measured timed(*m_figures, what.name);
    const auto result = run(what, bound);
    for (int i = 0; i < PQntuples(result.get()); ++i) {
        each(pg_row(result.get(), i, label(what)));
    }
}

std::int64_t pg_connection::execute(const statement& what, std::span<const value> bound) {
    const measured timed(*m_figures, what.name);
    const auto result = run(what, bound);
    const std::string_view tag = PQcmdStatus(result.get());
    const char* changed = PQcmdTuples(result.get());
    if (tag.starts_with("SELECT")) return 0; // counts what it shows, and changes nothing
    std::int64_t count = 0;
    std::from_chars(changed, changed + std::strlen(changed), count);
    return count;
}

pg_result_ptr pg_connection::run(const statement& what, std::span<const value> bound) {
    return guarded(label(what), [&] {
        check_bound(what, bound);
        auto& text = look_up(what);
        if (text.numbered.values != bound.size()) {
            throw error(error_kind::other, "takes " + std::to_string(text.numbered.values) + " values, not " +
                                               std::to_string(bound.size()));
        }
        std::vector<std::string> numbers(bound.size());
        std::vector<const char*> values(bound.size(), nullptr);
        for (std::size_t i = 0; i < bound.size(); ++i) {
            if (const auto* number = std::get_if<std::int64_t>(&bound[i])) {
                numbers[i] = std::to_string(*number);
                values[i] = numbers[i].c_str();
            } else if (const auto* words = std::get_if<std::string>(&bound[i])) {
                values[i] = words->c_str();
            }
        }
        const auto until = deadline();
        const auto& name = preparation(text, bound, until);
        return m_session.run_prepared(name, values, until);
    });
}

pg_connection::known& pg_connection::look_up(const statement& what) {
    if (what.name.empty()) {
        m_unnamed = {what.sql, number_placeholders(what.sql), {}};
        return m_unnamed;
    }
    auto found = m_cache.find(what.name);
    if (found == m_cache.end()) {
        if (m_cache.size() >= g_cache_limit) forget_all();
        found = m_cache.emplace(what.name, known{what.sql, number_placeholders(what.sql), {}}).first;
    }
    if (found->second.sql != what.sql) throw error(error_kind::other, "two statements share this name");
    return found->second;
}

const std::string& pg_connection::preparation(known& text, std::span<const value> bound,
                                              pg_session::clock::time_point deadline) {
    const auto types = types_of(bound);
    const auto found = text.prepared.find(types);
    if (found != text.prepared.end()) return found->second;
    std::vector<Oid> type_ids;
    for (const char one : types) {
        // A null is left for the server to guess from its place.
        type_ids.push_back(one == 'i' ? g_int8 : one == 't' ? g_text : 0);
    }
    // The nameless preparation is replaced by the next one; names of the server are short, so ours are
    // counted.
    const auto name = &text == &m_unnamed ? std::string() : "s" + std::to_string(++m_prepared);
    m_session.prepare(name, text.numbered.sql, type_ids, deadline);
    return text.prepared.emplace(types, name).first->second;
}

void pg_connection::forget_all() {
    m_session.run("DEALLOCATE ALL", deadline());
    m_cache.clear();
}

void pg_connection::script(const std::string& sql) {
    guarded("script", [&] { return m_session.run(sql, deadline()); });
}

void pg_connection::in_transaction(const std::function<void(connection&)>& step) {
    m_migrating = true;
    try {
        begin("BEGIN ISOLATION LEVEL READ COMMITTED READ WRITE");
        script("SET LOCAL lock_timeout = 0; SET LOCAL statement_timeout = 0");
        script(g_migration_lock);
        step(*this);
        if (m_failure) std::rethrow_exception(m_failure);
        commit();
    } catch (...) {
        rollback();
        m_migrating = false;
        throw;
    }
    m_migrating = false;
}

void pg_connection::begin(const std::string& how) {
    m_failure = nullptr;
    guarded("begin", [&] { return m_session.run(how, deadline()); });
}

void pg_connection::commit() {
    const auto result = guarded("commit", [&] { return m_session.run("COMMIT", deadline()); });
    // The server answers ROLLBACK to the COMMIT of a transaction that failed before.
    if (std::string_view(PQcmdStatus(result.get())) != "COMMIT") {
        throw error(error_kind::other, "the transaction was rolled back");
    }
}

void pg_connection::rollback() noexcept {
    if (!m_session.usable()) return;
    try {
        m_session.run("ROLLBACK", deadline());
    } catch (...) {
        m_session.retire();
    }
}

} // namespace tavrok::store
