#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "store/connection.h"
#include "store/records/listing.h"

namespace tavrok::store {

struct warehouse_record {
    std::int64_t id{0};
    std::string name{};
    std::string phone{};
    std::string address{};
    std::string mobile{};
    std::int64_t keeper{0};    /**< the employee who answers for it */
    std::string keeper_name{}; /**< read only; goes on being known when the keeper is retired */
    std::string remark{};
    std::int64_t isdefault{0}; /**< 1 yes, 0 no */
    std::int64_t added_at{0};
};

/** The folded forms of the texts that are searched. */
struct warehouse_folds {
    std::string name, phone;
};

/** LIKE patterns and the keeper's id; an empty pattern and keeper 0 do not restrict. */
struct warehouse_criteria {
    std::string name, phone, mobile;
    std::int64_t keeper{0};
};

/** The list of warehouses; a row of it is read by warehouse_of. */
extern const listing g_warehouse_list;
list_filter criteria_of(std::int64_t company, const warehouse_criteria& criteria);
warehouse_record warehouse_of(const row& one);

/** Gives the id. */
std::int64_t insert_warehouse(connection& with, std::int64_t company, std::int64_t user,
                              const warehouse_record& what, const warehouse_folds& folds);
/** Gives 0 for an unknown or retired warehouse. */
std::int64_t update_warehouse(connection& with, std::int64_t company, const warehouse_record& what,
                              const warehouse_folds& folds);
/** The keeper of a live warehouse. */
std::optional<std::int64_t> keeper_of_warehouse(connection& with, std::int64_t company, std::int64_t id);

struct warehouse_option {
    std::int64_t id;
    std::string name;
    std::int64_t isdefault;
    std::int64_t on_hand; /**< of all the stock that lies in it, less what is claimed by quantity */
};
/** The live warehouses by id; nobody looks at what is on hand. */
std::vector<warehouse_option> warehouse_options(connection& with, std::int64_t company);
/** The same with what is on hand: every stock row is read. */
std::vector<warehouse_option> warehouse_stock(connection& with, std::int64_t company);

} // namespace tavrok::store
