#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "store/connection.h"
#include "store/records/listing.h"

namespace tavrok::store {

struct employee_record {
    std::int64_t id{0};
    std::string name{};
    std::string jobnum{};
    std::string mobile{};
    std::string address{};
    std::string idnum{};
    std::string remark{};
    std::int64_t isdefault{2}; /**< who handles documents unless another is named: 1 yes, 2 no */
    std::int64_t dimission{2}; /**< has left the company: 1 yes, 2 no */
    std::int64_t added_at{0};
};

/** The folded forms of the texts that are searched or compared without regard to case. */
struct employee_folds {
    std::string name, jobnum, idnum;
};

/** LIKE patterns; an empty one does not restrict. */
struct employee_patterns {
    std::string name, idnum, jobnum, mobile;
};

/** What no two live employees of a company share. */
enum class employee_mark { jobnum, idnum, mobile };

/** The list of employees; a row of it is read by employee_of. */
extern const listing g_employee_list;
list_filter criteria_of(std::int64_t company, const employee_patterns& patterns);
employee_record employee_of(const row& one);

/** `what.id` is the id that it gets. */
void insert_employee(connection& with, std::int64_t company, std::int64_t user, const employee_record& what,
                     const employee_folds& folds);
/** Gives 0 for an unknown or retired employee. */
std::int64_t update_employee(connection& with, std::int64_t company, const employee_record& what,
                             const employee_folds& folds);
/** Whether a live employee other than `except` bears the mark; `text` is folded. */
bool employee_bears(connection& with, std::int64_t company, employee_mark mark, const std::string& text,
                    std::int64_t except);
/** Live employees whose id has this low byte, by id, at most two: enough to see whether it is one. */
std::vector<std::int64_t> employees_of_low_byte(connection& with, std::int64_t company, std::int64_t byte);

struct employee_option {
    std::int64_t id;
    std::string name;
    std::string jobnum;
};
/** The live employees who have not left, by id. */
std::vector<employee_option> employee_options(connection& with, std::int64_t company);

/** Every employee, live or not. */
void each_employee_id(connection& with,
                      const std::function<void(std::int64_t company, std::int64_t id)>& each);

} // namespace tavrok::store
