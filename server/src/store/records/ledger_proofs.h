#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>

#include "store/connection.h"

namespace tavrok::store {

/** What a proof of ledger, claims and documents reads: a few passes over each table, whatever their size. */

/** A row that breaks a promise. */
struct broken_promise {
    std::string rule;  /**< a word: "ledger", "claim", "document", "draft", "reference" */
    std::string table; /**< of the row */
    std::int64_t company;
    std::int64_t id;
    std::string words; /**< how the sentence about the row goes on */
};
using promise_reader = std::function<void(const broken_promise&)>;
/** Of stock rows, claims and drafts. */
void each_broken_stock(connection& with, const promise_reader& each);
/** Of documents, lines and movements. */
void each_broken_document(connection& with, const promise_reader& each);

/** Every document with what says whether number and counterparty fit it, by company and id. */
struct document_head {
    std::int64_t company;
    std::int64_t id;
    std::int64_t module;
    std::int64_t type;
    std::string sn; /**< empty: it has none */
    std::int64_t added_at;
    bool has_partner;
    std::optional<std::int64_t> partner_type; /**< none also where the partner is not there */
    bool has_dept;
};
void each_document_head(connection& with, const std::function<void(const document_head&)>& each);

/** Every line of a stocktaking with what its money is made of. */
struct counted_line {
    std::int64_t company;
    std::int64_t id;
    std::int64_t amount;
    std::int64_t price;
    std::int64_t total;
    std::int64_t sys_amount;
};
void each_counted_line(connection& with, const std::function<void(const counted_line&)>& each);

/** Every series of document numbers, by company, kind and day. */
struct number_series {
    std::int64_t company;
    std::string kind;
    std::int64_t day;
    std::int64_t last;
};
void each_number_series(connection& with, const std::function<void(const number_series&)>& each);

} // namespace tavrok::store
