#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "domain/listing.h"
#include "domain/principal.h"
#include "domain/sessions.h"
#include "store/connection.h"
#include "store/records/documents.h"

namespace tavrok::domain {

/** Inbound and outbound documents. A client writes a document as header, lines and closing call. The header
 * opens a draft that nobody sees; the closing call makes the document of it, with its number and all that it
 * moves in the ledger, or drops it. All of these throw `refused`. */
using store::document_line_record;
using store::document_module;
using store::document_record;

/** The page whose rights govern documents of that kind; refuses a kind that the module does not have. */
std::string_view page_of(document_module module, std::int64_t type);
/** Refuses where the user lacks the right on that page. */
void demand_right(const principal& who, document_module module, std::int64_t type, std::string_view right);

struct document_header {
    std::int64_t type{0};
    std::string operater{}; /**< as resolve_employee() takes it */
    std::string writer{};   /**< the user's own id, or empty */
    std::optional<std::int64_t> partner{};
    std::optional<std::int64_t> dept{}; /**< 0 is the top of the departments' tree */
    std::string remark{};
};

/** What a line says. Quantities are whole units, money is in hundredths. */
struct document_line {
    std::int64_t product{0};
    std::int64_t price{0};
    std::int64_t amount{0};
    std::int64_t total{0};
    std::int64_t warehouse{0};
    std::string place{};
    std::string remark{};
    std::int64_t stock{0}; /**< outbound: the row that it takes from */
    std::string token{};   /**< outbound: the claim on it, as the client kept it; may be no claim's */
};

/** Opens a draft and gives its id. Partner and department must fit the kind. */
added open_draft(store::connection& with, const principal& who, document_module module,
                 const document_header& header, std::int64_t now);
/** Adds a line to a draft of the session; gives its id. The total must be amount times price. */
std::int64_t add_line(store::connection& with, const principal& who, document_module module,
                      std::int64_t draft, const document_line& line);
/** Announces the stock of an inbound line that the session wrote with the same product, price, amount,
 * warehouse, remark and place. Refused where no such line waits for its stock. */
void announce_stock(store::connection& with, const principal& who, const document_line& like);
/** The line that an announcement like this one stands for: the latest like it in a draft of the session,
 * whether it waits for its stock or not. 0 where there is none. */
std::int64_t line_announced(store::connection& with, const principal& who, const document_line& like);
/** Takes a line out of a draft of the session. The lines of documents stay. */
void drop_line(store::connection& with, const principal& who, std::int64_t line);

/** Closes a draft of the session: the document is made whole, or the draft is dropped and everything else,
 * claims included, stays as it was. Gives why it was dropped, empty where the document was made. Throws
 * `refused` for a draft that is not there. */
std::string close_draft(store::connection& with, const principal& who, document_module module,
                        std::int64_t draft, std::int64_t total, std::int64_t now,
                        const session_limits& limits = {});
/** Undoes a document with contrary movements and marks it as deleted. Inbound: only while its stock rows hold
 * the whole quantity unclaimed. Outbound: only while product and warehouse are live and nobody else holds the
 * row. */
void remove_document(store::connection& with, const principal& who, document_module module, std::int64_t id,
                     std::int64_t now, const session_limits& limits = {});

/** What documents are searched for; what is empty or not given does not restrict. */
struct document_search {
    std::int64_t type{0};
    std::optional<std::int64_t> date_start{};
    std::optional<std::int64_t> date_end{};
    std::string sn{};
    std::optional<std::int64_t> partner{};
    std::string operater{}; /**< as find_employee() takes it */
    std::optional<std::int64_t> writer{};
    std::string remark{};
    std::optional<std::int64_t> dept{};
};
list_page<document_record> list_documents(store::connection& with, const principal& who,
                                          document_module module, const document_search& search,
                                          const page_wish& wish, count_cache& counts);
/** The lines of a live document whose page the user may view. */
std::vector<document_line_record> lines_of_document(store::connection& with, const principal& who,
                                                    document_module module, std::int64_t id);

} // namespace tavrok::domain
