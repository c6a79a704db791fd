#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "domain/documents.h"
#include "domain/principal.h"
#include "domain/sessions.h"
#include "store/connection.h"
#include "store/records/documents.h"
#include "store/records/drafts.h"

namespace tavrok::domain {

/** What the modules of documents share behind documents.h. */

/** Locks a draft of the session to which the user may add one more line. */
store::draft_record draft_for_line(store::connection& with, const principal& who, document_module module,
                                   std::int64_t draft);
/** Refuses a place that is empty; texts in all are checked by record_of(). */
void check_place(const document_line& line);
/** Refuses amounts out of range and a total that is not amount times price. */
void check_amounts(const document_line& line);
void check_price(const document_line& line);
/** The line as a draft keeps it. Refuses texts that are none. */
store::draft_line_record record_of(const document_line& line);
void check_product(store::connection& with, const principal& who, std::int64_t product);
void check_warehouse(store::connection& with, const principal& who, std::int64_t warehouse);

/** Why a draft is dropped whose closing call carries no sum that anybody can read. */
inline constexpr const char* g_no_total = "the total is no money";
using lines_of_draft = std::vector<store::draft_line_record>;
/** Closes a draft whose lines `check` lets through, as close_draft() does. */
std::string close_checked(store::connection& with, const principal& who, document_module module,
                          std::int64_t draft, const std::function<void(const lines_of_draft&)>& check,
                          std::int64_t now, const session_limits& limits);
/** Notes the deed and locks the company: from here on a product or a warehouse that is being retired is
 * retired now, or waits and finds the stock of the document. */
void note_document(store::connection& with, const principal& who, document_module module,
                   std::string_view deed, std::int64_t document, std::int64_t now);
/** Gives a new document its number: the last thing of a transaction. */
void give_number(store::connection& with, const principal& who, document_module module, std::int64_t type,
                 std::int64_t document, std::int64_t now);

} // namespace tavrok::domain
