#pragma once

#include <vector>

#include "domain/check.h"

namespace tavrok::domain {

// Parts of check().

/** What is on hand against the movements, what is claimed against the claims, drafts against their lines. */
void check_stock(store::connection& with, std::vector<finding>& found);
/** Every document and line against each other and the movements. */
void check_ledger(store::connection& with, std::vector<finding>& found);
/** Every document against its counterparty and number, and the series of numbers. */
void check_documents(store::connection& with, std::vector<finding>& found);
/** Every line of a stocktaking: its figures, and its money against them. */
void check_counts(store::connection& with, std::vector<finding>& found);

} // namespace tavrok::domain
