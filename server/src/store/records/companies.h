#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "store/connection.h"

namespace tavrok::store {

/** A customer of the service. */
struct company_record {
    std::string name;
    std::string name_folded;
    std::string phone;
    std::string address;
    bool is_operator{false};
    std::int64_t created_at{0};
};

std::int64_t insert_company(connection& with, const company_record& what);
bool company_taken(connection& with, const std::string& name_folded);
/** Companies without a folded name, by id, and giving them one. */
struct unfolded_company {
    std::int64_t id;
    std::string name;
};
std::vector<unfolded_company> unfolded_companies(connection& with);
void fold_company_name(connection& with, std::int64_t id, const std::string& folded);
bool any_company(connection& with);
bool operator_exists(connection& with);
/** The version of the company's data; 0 for an unknown company. */
std::int64_t data_version(connection& with, std::int64_t company);
/** Marks the company's data as changed. Late in the transaction: the row is locked from here to the commit.
 */
void bump_data_version(connection& with, std::int64_t company);

} // namespace tavrok::store
