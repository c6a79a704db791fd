#pragma once

#include <cstdint>
#include <functional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "store/connection.h"

namespace tavrok::store {

enum class dialect { sqlite, postgresql };

/** One numbered step of the schema; the text may hold several statements. */
struct migration {
    int number;
    std::string name;
    std::string text;
};

/** The steps that are compiled in, from server/migrations/NNN_name.sql, in order. */
const std::vector<migration>& known_migrations();

/** Puts a step into the words of one database:
 *  - `{id}`     the type of a primary key that the database gives out;
 *  - `{int}`    a 64-bit integer;
 *  - `{text}`   a text, ordered by its bytes;
 *  - `{strict}` behind the closing bracket of a table: types are kept to;
 *  - a line that starts with `-- sqlite:` or `-- postgresql:` is there for that database only. */
std::string in_dialect(std::string_view text, dialect which);

/** What migrate() needs of a database: a connection with a transaction around a step. */
class schema_session {
public:
    virtual ~schema_session() = default;
    virtual dialect speaks() const = 0;
    /** Runs several statements, inside in_transaction(). */
    virtual void script(const std::string& sql) = 0;
    /** Runs `step` alone among all sessions of this database; commits, or rolls back when it throws. */
    virtual void in_transaction(const std::function<void(connection&)>& step) = 0;
};

/** Brings the schema up to the last of `known` (numbered 1, 2, 3 ...), each step in its own transaction and
 * noted in the table schema_version. Throws `error` when the database is newer than `known` or went another
 * way. */
void migrate(schema_session& session, std::span<const migration> known, std::int64_t now);

} // namespace tavrok::store
