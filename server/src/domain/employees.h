#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "domain/listing.h"
#include "domain/pages.h"
#include "domain/principal.h"
#include "store/connection.h"
#include "store/records/employees.h"

namespace tavrok::domain {

using employee = store::employee_record;
using employee_page = list_page<employee>;
using employee_mark = store::employee_mark;
using store::employee_option;

/** Substrings, without regard to case; an empty one does not restrict. */
struct employee_search {
    std::string name{};
    std::string idnum{};
    std::string jobnum{};
    std::string mobile{};
};

/** Pages whose screens open the picker of employees. */
inline constexpr auto g_employee_picker_pages =
    joined(g_document_pages, page_list<3>{"warehouse", "stock_taking", "stock_allot"});

/** A company has so many live employees at most: their options go out in one answer. */
inline constexpr std::int64_t g_most_employees = 50'000;

employee_page list_employees(store::connection& with, const principal& who, const employee_search& search,
                             const page_wish& wish, count_cache& counts);
/** The employees who have not left, in the order in which they were added. */
std::vector<employee_option> list_employee_options(store::connection& with, const principal& who);

/** `what.id` and `what.added_at` are ignored. A new default employee takes the flag from the former one.
 * Throws `refused`, as all of these do: job number, identity number and mobile are unique among the company's
 * live employees, job and identity number without regard to case. */
added add_employee(store::connection& with, const principal& who, const employee& what, std::int64_t now);
/** Writes every text and flag of `what` over the employee `what.id`: an empty text clears. */
void edit_employee(store::connection& with, const principal& who, const employee& what, std::int64_t now);
/** Retires an employee: the marks are free again, and what names the employee goes on showing the name. */
void remove_employee(store::connection& with, const principal& who, std::int64_t id, std::int64_t now);
/** Whether a live employee of the company other than `except` bears that mark; an empty text is borne by
 * nobody. `except` 0 leaves nobody out; an id that is no live employee of the company is refused. */
bool is_mark_taken(store::connection& with, const principal& who, employee_mark mark, std::string_view text,
                   std::int64_t except);

/** Whether an employee may have this id. The low byte must be a letter that can stand for the employee in a
 * form, between other keys and trimmed: no digit, no blank, none of the characters that part keys. */
bool may_name_employee(std::int64_t id);

/** The live employee that a form names: by the id in decimal digits, or by the one letter that is the id's
 * low byte (what the choose button of the client's picker hands over), if that is one employee's alone. */
std::optional<std::int64_t> find_employee(store::connection& with, std::int64_t company,
                                          std::string_view text);
/** The same; refuses what names nobody. */
std::int64_t resolve_employee(store::connection& with, std::int64_t company, std::string_view text);

} // namespace tavrok::domain
