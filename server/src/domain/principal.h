#pragma once

#include <cstdint>
#include <set>
#include <string>
#include <string_view>
#include <unordered_set>
#include <utility>

namespace tavrok::domain {

/** Who asks: the user of a session that is alive, with what he may do. Pages are action keys of navigation
 * rows
 *  ("company_supplier"), rights are action keys of right rows ("search"). */
struct principal {
    std::int64_t company{0};
    std::int64_t user{0};
    std::int64_t session{0};
    std::string username;
    bool administrator{false};
    bool operator_company{false}; /**< the company runs the service: its administrators may change the menu */
    std::int64_t last_used{0};    /**< last request of the session as stored, seconds; see needs_touch() */
    std::unordered_set<std::int64_t> menu_rows; /**< granted rows; empty for an administrator, who has all */
    std::set<std::pair<std::string, std::string>> rights; /**< page and right; empty for an administrator */

    bool has(std::string_view page, std::string_view right) const;
    /** Any right at all on the page. */
    bool has_any(std::string_view page) const;
};

} // namespace tavrok::domain
