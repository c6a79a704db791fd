#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "store/connection.h"

namespace tavrok::domain {

struct demo_account {
    std::string username;
    std::string role; /**< a few words for the operator who reads them */
};

/** The password of every account of the demo. */
extern const std::string_view g_demo_password;

/** Fills an empty database with two believable companies; gives the accounts. Throws `refused` when the
 * database holds a company already. */
std::vector<demo_account> make_demo(store::connection& with, std::string_view pepper, std::int64_t now);

} // namespace tavrok::domain
