#pragma once

#include <cstdint>
#include <functional>
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

/** Documents of four modules. A client writes one as header and lines; the header opens a draft that nobody
 * sees (open_draft).
 * - Inbound and outbound: lines (add_line), of which each inbound one is followed by its stock
 *   (announce_stock), and the closing call (close_draft).
 * - Stocktaking: lines (add_taking_line) and the closing call (close_taking).
 * - Transfer: lines, each of which takes effect by itself (add_transfer_line); the first makes the document.
 * A closing call makes the document of the draft, with its number and all that it moves in the ledger, or
 * drops it. All of these throw `refused`. */
using store::document_line_record;
using store::document_module;
using store::document_record;
using store::document_sums;

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
    std::optional<std::int64_t> warehouse_out{}; /**< transfer, as the next: where from */
    std::optional<std::int64_t> warehouse_in{};
};

/** What a line says. Quantities are whole units, money is in hundredths. */
struct document_line {
    std::int64_t product{0};
    std::int64_t price{0};
    std::int64_t amount{0};
    std::int64_t total{0};
    std::int64_t warehouse{0}; /**< a transfer's header says it */
    std::string place{};
    std::string remark{};
    std::int64_t stock{0}; /**< the row that it takes from or counts; inbound ones have none */
    std::string token{};   /**< the claim on that row, as the client kept it; may be no claim's */
};

/** A line of a stocktaking. `what.amount` is the gain or loss: what was counted less what the system held;
 * `what.total` is its money, which the client truncates to a whole number. */
struct taking_line {
    document_line what;
    std::int64_t sys_amount{0};
    std::int64_t real_amount{0};
};

/** Opens a draft and gives its id. Partner and department must fit the kind; a transfer needs two live
 * warehouses that differ. */
added open_draft(store::connection& with, const principal& who, document_module module,
                 const document_header& header, std::int64_t now);
/** Adds a line to an inbound or outbound draft of the session; gives its id. The total must be amount times
 * price. */
std::int64_t add_line(store::connection& with, const principal& who, document_module module,
                      std::int64_t draft, const document_line& line);
/** Announces the stock of an inbound line that the session wrote with the same product, price, amount,
 * warehouse, remark and place. Refused where no such line waits for its stock. */
void announce_stock(store::connection& with, const principal& who, const document_line& like);
/** The line that an announcement like this one stands for: the latest like it in a draft of the session,
 * whether it waits for its stock or not. 0 where there is none. */
std::int64_t line_announced(store::connection& with, const principal& who, const document_line& like);
/** The draft that the session opened last; 0 where there is none. */
std::int64_t newest_draft(store::connection& with, const principal& who, document_module module);
/** Does what adds to a draft, add_line() for example. Where that refuses, the `draft` is spoilt: a client
 * that does not look at the answer sends the closing call all the same, which then drops the draft with
 * whatever came into it. Gives why it was refused, empty where it was added; in both cases the transaction is
 * kept. */
std::string add_or_spoil(store::connection& with, const principal& who, document_module module,
                         const std::function<std::int64_t()>& draft, const std::function<void()>& add);
/** Takes a line out of a draft of the session. The lines of documents stay. */
void drop_line(store::connection& with, const principal& who, std::int64_t line);

/** Adds a line to a stocktaking's draft of the session; gives its id. */
std::int64_t add_taking_line(store::connection& with, const principal& who, std::int64_t draft,
                             const taking_line& line);
/** Moves the line's goods out of their row and into a new one, at the line's place and the old row's price. A
 * live claim of the user is used up; without one the goods are taken from what is free. Gives whether it was
 * the draft's first line, which makes the document. */
bool add_transfer_line(store::connection& with, const principal& who, std::int64_t draft,
                       const document_line& line, std::int64_t now, const session_limits& limits = {});

/** Closes a draft of the session: the document is made whole, or the draft is dropped and everything else,
 * claims included, stays as it was. Gives why it was dropped, empty where the document was made; a spoilt one
 * is dropped, and one without a total, which nobody could read. Throws `refused` for a draft that is not
 * there. */
std::string close_draft(store::connection& with, const principal& who, document_module module,
                        std::int64_t draft, std::optional<std::int64_t> total, std::int64_t now,
                        const session_limits& limits = {});
/** The same for a stocktaking, whose rows change by the lines' differences. */
std::string close_taking(store::connection& with, const principal& who, std::int64_t draft,
                         std::optional<document_sums> told, std::int64_t now,
                         const session_limits& limits = {});
/** Undoes a document with contrary movements and marks it as deleted. What it brought in, an inbound document
 * or a transfer, goes only while its rows hold the whole quantity unclaimed and unheld. Other rows change
 * only while nobody else holds them and what is left covers what is claimed; their product and warehouse must
 * be live. */
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
    std::optional<std::int64_t> warehouse_out{};
    std::optional<std::int64_t> warehouse_in{};
};
list_page<document_record> list_documents(store::connection& with, const principal& who,
                                          document_module module, const document_search& search,
                                          const page_wish& wish, count_cache& counts);
/** The lines of a live document whose page the user may view. */
std::vector<document_line_record> lines_of_document(store::connection& with, const principal& who,
                                                    document_module module, std::int64_t id);

} // namespace tavrok::domain
