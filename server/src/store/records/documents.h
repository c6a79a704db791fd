#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "store/connection.h"
#include "store/records/drafts.h"
#include "store/records/listing.h"

namespace tavrok::store {

/** The header of a document as lists show it. */
struct document_record {
    std::int64_t id{0};
    std::int64_t type{0};
    std::string sn{};
    std::int64_t added_at{0};
    std::int64_t operater{0};
    std::string operater_name{};
    std::int64_t writer{0};
    std::string writer_name{};
    std::optional<std::int64_t> partner{};
    std::string partner_name{};
    std::optional<std::int64_t> dept{};
    std::string dept_name{};
    std::int64_t total{0}; /**< in hundredths; signed in a stocktaking */
    std::string remark{};
    std::int64_t difference{0};                  /**< stocktaking: in units, signed */
    std::optional<std::int64_t> warehouse_out{}; /**< of a transfer, as the next */
    std::string warehouse_out_name{};
    std::optional<std::int64_t> warehouse_in{};
    std::string warehouse_in_name{};
};

/** The list of the documents of all modules; a row of it is read by document_of. */
extern const listing g_document_list;
document_record document_of(const row& one);
/** Restricts to one kind of one module. */
void of_kind(list_filter& filter, document_module module, std::int64_t type);

/** What the lines of a document come to. */
struct document_sums {
    std::int64_t total{0};
    std::int64_t difference{0}; /**< of a stocktaking */
};
/** Gives the id of a document made of a draft; it has no number yet. */
std::int64_t insert_document(connection& with, std::int64_t company, const draft_record& draft,
                             const document_sums& sums, const std::string& remark_folded, std::int64_t now);
/** Locks a live transfer until the transaction ends and adds to its total; false where it is not live any
 * more, or its total would be more than 64 bits hold. */
bool grow_transfer(connection& with, std::int64_t company, std::int64_t document, std::int64_t by);
/** Gives the id. `what.stock` is the row that the line is about. */
std::int64_t insert_document_line(connection& with, std::int64_t company, std::int64_t document,
                                  const draft_line_record& what);
/** The next number of a series, which starts with 1; its row is locked from here to the commit. */
std::int64_t next_document_number(connection& with, std::int64_t company, const std::string& kind,
                                  std::int64_t day);
void number_document(connection& with, std::int64_t company, std::int64_t document, const std::string& sn);

/** The kind of a live document. */
std::optional<std::int64_t> document_type(connection& with, std::int64_t company, document_module module,
                                          std::int64_t id);
/** Marks a live document as deleted; false when it is not live any more. */
bool delete_document(connection& with, std::int64_t company, document_module module, std::int64_t id,
                     std::int64_t user, std::int64_t now);

/** A line with the names that it shows. */
struct document_line_record {
    std::int64_t id{0};
    std::int64_t document{0};
    std::int64_t product{0};
    std::string product_name{};
    std::string code{};
    std::string spec{};
    std::int64_t category{0};
    std::string category_name{};
    std::int64_t price{0};
    std::int64_t amount{0};
    std::int64_t total{0};
    std::int64_t warehouse{0};
    std::string warehouse_name{};
    std::string place{};
    std::string remark{};
    std::int64_t stock{0};
    std::int64_t datetime{0};
    std::int64_t sys_amount{0}; /**< of a stocktaking */
    std::int64_t stock_in{0};   /**< of a transfer */
};
/** In the order in which they were written. */
std::vector<document_line_record> document_lines(connection& with, std::int64_t company,
                                                 std::int64_t document);

/** A product or a warehouse of the document that is no longer live. */
bool names_retired_goods(connection& with, std::int64_t company, std::int64_t document);

} // namespace tavrok::store
