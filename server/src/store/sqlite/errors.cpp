#include "store/sqlite/errors.h"

#include <sqlite3.h>

namespace tavrok::store {

namespace {

constexpr int g_primary_mask = 0xFF;

error_kind classify_constraint(int extended_code) {
    switch (extended_code) {
        case SQLITE_CONSTRAINT_UNIQUE:
        case SQLITE_CONSTRAINT_PRIMARYKEY:
        case SQLITE_CONSTRAINT_ROWID:
        case SQLITE_CONSTRAINT_FOREIGNKEY:
            return error_kind::unique;
        default:
            return error_kind::check;
    }
}

} // namespace

error_kind classify_sqlite(int extended_code) {
    switch (extended_code & g_primary_mask) {
        case SQLITE_BUSY:
        case SQLITE_LOCKED:
        case SQLITE_INTERRUPT: // the statement time-out
            return error_kind::busy;
        case SQLITE_CONSTRAINT:
            return classify_constraint(extended_code);
        case SQLITE_TOOBIG:
        case SQLITE_MISMATCH:
            return error_kind::check;
        case SQLITE_FULL:
        case SQLITE_READONLY:
            return error_kind::full;
        case SQLITE_IOERR:
            // A full disk shows as IOERR_WRITE; an error while reading says nothing about space.
            return extended_code == SQLITE_IOERR_READ || extended_code == SQLITE_IOERR_SHORT_READ
                       ? error_kind::other
                       : error_kind::full;
        default:
            return error_kind::other;
    }
}

bool casts_doubt(int extended_code) {
    const int primary = extended_code & g_primary_mask;
    return extended_code == SQLITE_IOERR_FSYNC || extended_code == SQLITE_IOERR_DIR_FSYNC ||
           primary == SQLITE_CORRUPT || primary == SQLITE_NOTADB;
}

} // namespace tavrok::store
