#pragma once

#include <cstdint>
#include <vector>

#include "domain/ledger.h"
#include "domain/principal.h"
#include "store/connection.h"
#include "store/records/drafts.h"

namespace tavrok::domain {

/** What documents do to stock, module by module. */

/** Writes a line of a document that is being made of a draft; gives what it does to stock. Refuses a line
 * whose row is not there or holds other goods. */
std::vector<posting> enter_line(store::connection& with, const principal& who,
                                const store::draft_record& header, std::int64_t document,
                                store::draft_line_record line, std::int64_t now);

/** What undoes a document. */
std::vector<posting> contrary_postings(store::connection& with, const principal& who,
                                       store::document_module module, std::int64_t document);

} // namespace tavrok::domain
