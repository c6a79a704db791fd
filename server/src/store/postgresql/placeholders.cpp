#include "store/postgresql/placeholders.h"

namespace tavrok::store {

namespace {

/** Length of the quoted text or comment that `sql` starts with; 0 when it starts with neither. */
std::size_t opaque_length(std::string_view sql) {
    const auto up_to = [&sql](std::string_view end, std::size_t from) {
        const auto at = sql.find(end, from);
        return at == std::string_view::npos ? sql.size() : at + end.size();
    };
    // A doubled quote ends one text and starts the next, which comes to the same.
    if (sql.front() == '\'') return up_to("'", 1);
    if (sql.front() == '"') return up_to("\"", 1);
    if (sql.substr(0, 2) == "--") return up_to("\n", 2);
    if (sql.substr(0, 2) == "/*") return up_to("*/", 2);
    return 0;
}

} // namespace

numbered_statement number_placeholders(std::string_view sql) {
    numbered_statement result;
    while (!sql.empty()) {
        std::size_t taken = opaque_length(sql);
        if (taken > 0) {
            result.sql += sql.substr(0, taken);
        } else {
            taken = 1;
            if (sql.front() == '?') {
                result.sql += '$' + std::to_string(++result.values);
            } else {
                result.sql += sql.front();
            }
        }
        sql.remove_prefix(taken);
    }
    return result;
}

} // namespace tavrok::store
