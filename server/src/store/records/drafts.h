#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "store/connection.h"

namespace tavrok::store {

/** What a document is about. */
enum class document_module : std::int64_t { inbound = 1, outbound = 2, stocktaking = 3, transfer = 4 };

/** A document that is being written: its header. */
struct draft_record {
    std::int64_t id{0};
    document_module module{document_module::inbound};
    std::int64_t type{0};
    std::int64_t user{0};
    std::int64_t session{0};
    std::int64_t opened_at{0};
    std::int64_t operater{0};
    std::optional<std::int64_t> partner{};
    std::optional<std::int64_t> dept{}; /**< 0 is the top of the departments' tree */
    std::string remark{};
    std::int64_t lines{0};
    std::optional<std::int64_t> warehouse_out{}; /**< of a transfer, as the next */
    std::optional<std::int64_t> warehouse_in{};
    std::optional<std::int64_t> document{}; /**< which the first line of a transfer made */
    bool spoilt{false};                     /**< something that belongs to it was refused */
};

/** A line of a draft, and of a document as it is made. */
struct draft_line_record {
    std::int64_t id{0};
    std::int64_t product{0};
    std::int64_t price{0};  /**< in hundredths */
    std::int64_t amount{0}; /**< stocktaking: what was counted less what the system held */
    std::int64_t warehouse{0};
    std::string place{};
    std::string remark{};
    std::int64_t stock{0};                    /**< the row that it takes from or counts */
    std::string token{};                      /**< the claim that it names; may be no claim's */
    bool stocked{false};                      /**< inbound: its stock was announced */
    std::int64_t total{0};                    /**< in hundredths */
    std::optional<std::int64_t> sys_amount{}; /**< stocktaking: what the system held */
    std::optional<std::int64_t> stock_in{};   /**< transfer: the row that it makes; no draft has it */
};

std::int64_t insert_draft(connection& with, std::int64_t company, const draft_record& what);
/** Those of which no document was made. */
std::int64_t drafts_of_session(connection& with, std::int64_t company, std::int64_t session);
/** Locks a draft of a session until the transaction ends and reads it; none for one that is unknown, another
 * session's or another module's. */
std::optional<draft_record> hold_draft(connection& with, std::int64_t company, std::int64_t session,
                                       document_module module, std::int64_t id);
/** Notes that something that belongs to a draft of the session was refused. */
void spoil_draft(connection& with, std::int64_t company, std::int64_t session, document_module module,
                 std::int64_t id);
/** The draft that the session opened last; 0 where there is none. */
std::int64_t newest_draft(connection& with, std::int64_t company, std::int64_t session,
                          document_module module);
/** Gives the id. The draft is held. */
std::int64_t insert_draft_line(connection& with, std::int64_t company, std::int64_t draft,
                               const draft_line_record& what);
/** Notes that the stock of an inbound line was announced: of the latest one of the session with the same
 * values whose stock was not. False where there is none. */
bool announce_stock(connection& with, std::int64_t company, std::int64_t session,
                    const draft_line_record& like);
/** The latest inbound line of the session with the same values, announced or not; 0 where there is none. */
std::int64_t latest_line_like(connection& with, std::int64_t company, std::int64_t session,
                              const draft_line_record& like);
std::vector<draft_line_record> draft_lines(connection& with, std::int64_t company, std::int64_t draft);
/** Takes a line out of a draft of the session. Where it gives false the transaction must not be kept. */
bool delete_draft_line(connection& with, std::int64_t company, std::int64_t session, std::int64_t line);
/** Notes a line that went straight into the document of a transfer. The draft is held. */
void count_document_line(connection& with, std::int64_t company, std::int64_t draft, std::int64_t document);
/** With its lines. */
void delete_draft(connection& with, std::int64_t company, std::int64_t id);
/** Drafts that were opened at or before that time. */
void delete_old_drafts(connection& with, std::int64_t opened);

} // namespace tavrok::store
