#include "store/postgresql/errors.h"

#include <algorithm>
#include <array>

namespace tavrok::store {

namespace {

struct entry {
    std::string_view state;
    error_kind kind;
};

constexpr std::array<entry, 19> g_states{{
    {"40001", error_kind::conflict}, // serialisation failure
    {"40P01", error_kind::conflict}, // deadlock
    {"55P03", error_kind::busy},     // lock time-out
    {"57014", error_kind::busy},     // statement time-out
    {"53300", error_kind::busy},     // too many connections
    {"23505", error_kind::unique},   // unique
    {"23503", error_kind::unique},   // foreign key
    {"23514", error_kind::check},    // check
    {"23502", error_kind::check},    // not null
    {"22001", error_kind::check},    // text too long
    {"22003", error_kind::check},    // number out of range
    {"22021", error_kind::check},    // not in the encoding
    {"53100", error_kind::full},     // disk full
    {"58030", error_kind::full},     // I/O error
    {"25006", error_kind::full},     // read-only transaction
    {"57P01", error_kind::lost},     // administrator ends the session
    {"57P02", error_kind::lost},     // server crash
    {"57P03", error_kind::lost},     // server starts or stops
    {"25P03", error_kind::lost},     // idle in a transaction for too long
}};

} // namespace

error_kind classify_postgresql(std::string_view state) {
    if (state.empty() || state.starts_with("08")) return error_kind::lost;
    const auto* found =
        std::find_if(g_states.begin(), g_states.end(), [&](const entry& one) { return one.state == state; });
    return found == g_states.end() ? error_kind::other : found->kind;
}

bool ends_connection(std::string_view state) {
    // A server that turned read only has been replaced behind the same address: ask anew who serves.
    return classify_postgresql(state) == error_kind::lost || state == "25006";
}

} // namespace tavrok::store
