#pragma once

#include <cstddef>

#include "domain/partners.h"

namespace tavrok::domain {

/** A believable partner that exists nowhere: towns, streets, banks and people are invented, area code 0193
 * and mobile prefix 154 belong to nobody, account numbers start with zeros. The same type and number give the
 * same partner. */
partner demo_partner(int type, std::size_t number);

} // namespace tavrok::domain
