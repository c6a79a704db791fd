#pragma once

#include <cstdint>

#include "domain/principal.h"
#include "store/connection.h"

namespace tavrok::domain {

/** Who writes the documents of a demo company, in sessions that are alive. */
struct demo_writers {
    principal admin;
    principal keeper;
    principal buyer;
};

/** Sixty inbound and outbound documents of all kinds in the 90 days before `now`, three of them deleted
 * again, and between them 6 stocktakings and 12 transfers. The company has partners, staff, warehouses and
 * products. */
void tell_documents(store::connection& with, const demo_writers& who, std::int64_t now);

} // namespace tavrok::domain
