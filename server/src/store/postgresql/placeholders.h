#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace tavrok::store {

/** A statement in the words of PostgreSQL: `$1`, `$2` ... for each `?`. */
struct numbered_statement {
    std::string sql;
    std::size_t values{0};
};

/** Numbers the placeholders; a `?` in quotes or in a comment is left alone. */
numbered_statement number_placeholders(std::string_view sql);

} // namespace tavrok::store
