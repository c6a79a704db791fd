#pragma once

#include <cstdint>
#include <functional>
#include <initializer_list>
#include <optional>
#include <span>
#include <stdexcept>
#include <string>
#include <string_view>
#include <variant>

namespace tavrok::store {

/** A bound value: null, a 64-bit integer (ids, hundredths, seconds) or UTF-8 text. */
using value = std::variant<std::nullptr_t, std::int64_t, std::string>;

/** The number, or null where there is none. */
value or_null(const std::optional<std::int64_t>& number);

/** A named statement with `?` for each bound value. The name keys the prepared-statement cache and the
 * metrics, so two texts never share a name. The same text runs on SQLite and on PostgreSQL. */
struct statement {
    std::string name;
    std::string sql;
};

/** The row that a query stands on. Columns count from 0. Views live until the callback returns. */
class row {
public:
    virtual ~row() = default;
    virtual bool null(int column) const = 0;
    virtual std::int64_t integer(int column) const = 0;
    virtual std::string_view text(int column) const = 0;
};

enum class error_kind {
    busy,     /**< lock or queue time-out; nothing happened */
    conflict, /**< serialisation failure or deadlock; the whole transaction may be tried again */
    unique,   /**< a unique or foreign key refused the row */
    check,    /**< a CHECK or NOT NULL refused the row */
    lost,     /**< the connection is gone */
    full,     /**< no space, read-only medium or an I/O error while writing */
    other
};

class error : public std::runtime_error {
public:
    error(error_kind kind, const std::string& text) : std::runtime_error(text), m_kind(kind) {}
    error_kind kind() const { return m_kind; }

private:
    error_kind m_kind;
};

/** One database connection inside a transaction. Every call throws `error` on failure. */
class connection {
public:
    virtual ~connection() = default;
    /** Calls `each` once per row, in order. Works for SELECT and for writes with RETURNING. */
    virtual void query(const statement& what, std::span<const value> bound,
                       const std::function<void(const row&)>& each) = 0;
    /** Runs a write; gives the number of rows that it changed. */
    virtual std::int64_t execute(const statement& what, std::span<const value> bound) = 0;

    void query(const statement& what, std::initializer_list<value> bound,
               const std::function<void(const row&)>& each) {
        query(what, std::span<const value>(bound.begin(), bound.size()), each);
    }
    std::int64_t execute(const statement& what, std::initializer_list<value> bound) {
        return execute(what, std::span<const value>(bound.begin(), bound.size()));
    }
};

} // namespace tavrok::store
