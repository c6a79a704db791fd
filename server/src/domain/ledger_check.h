#pragma once

#include <vector>

#include "domain/check.h"

namespace tavrok::domain {

/** Proves ledger, claims and documents: what is on hand against the movements, what is claimed against the
 * claims, every document against its lines, movements, counterparty and number. A part of check(). */
void check_ledger(store::connection& with, std::vector<finding>& found);

} // namespace tavrok::domain
