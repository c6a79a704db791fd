#pragma once

#include <cstdint>
#include <functional>
#include <string>

#include "store/connection.h"
#include "store/records/partners.h"

namespace tavrok::store {

/** What a proof over the whole database reads. */

/** A partner counter that tells another number than its rows; `stored` -1: there is none. */
struct wrong_counter {
    std::int64_t company;
    std::int64_t type;
    std::int64_t stored;
    std::int64_t counted;
};
void each_wrong_counter(connection& with, const std::function<void(const wrong_counter&)>& each);

/** The same of the lists with a counter of their own; a list is named as its listing is. */
struct wrong_list_counter {
    std::int64_t company;
    std::string list;
    std::int64_t stored; /**< 0: there is none */
    std::int64_t counted;
};
void each_wrong_list_counter(connection& with, const std::function<void(const wrong_list_counter&)>& each);

/** Every text of a row that has a folded column, of the plain lists; none where both are empty. */
struct folded_text {
    std::string table;
    std::int64_t company;
    std::int64_t id;
    std::string text;
    std::string folded;
};
void each_folded_text(connection& with, const std::function<void(const folded_text&)>& each);

/** A row that names a row which is not there, one of another company, or a retired one though it is live
 *  itself. */
struct orphan {
    std::string table;
    std::string names; /**< the table that it points to */
    std::int64_t company;
    std::int64_t id; /**< the row's id, where it has one, else its user's */
};
void each_orphan(connection& with, const std::function<void(const orphan&)>& each);

/** Every partner, live or not, with its folded columns. */
void each_folded_partner(connection& with,
                         const std::function<void(std::int64_t company, const partner_record& partner,
                                                  const partner_words& folded)>& each);
/** Every user's texts with their folded columns; removed users have none. */
struct folded_user {
    std::int64_t company;
    std::int64_t id;
    std::string username, username_folded, email, email_folded;
};
void each_folded_user(connection& with, const std::function<void(const folded_user&)>& each);

/** Every company's name with its folded form. */
struct company_name {
    std::int64_t id;
    std::string name;
    std::string folded;
};
void each_company_name(connection& with, const std::function<void(const company_name&)>& each);
/** Companies without an enabled administrator. */
void each_headless_company(connection& with, const std::function<void(std::int64_t company)>& each);
/** A series that would give an id again: `last` is below the greatest id of its table; -1: there is none. */
struct late_series {
    std::string name;
    std::int64_t last;
    std::int64_t greatest;
};
void each_late_series(connection& with, const std::function<void(const late_series&)>& each);

/** Rows with an id that must never be given, in tables whose ids go out. */
void each_row_with_id(connection& with, std::int64_t id,
                      const std::function<void(const std::string& table)>& each);

} // namespace tavrok::store
