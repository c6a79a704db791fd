#pragma once

#include <cstddef>
#include <cstdint>

#include "domain/employees.h"

namespace tavrok::domain {

/** A believable employee who exists nowhere: mobile prefix 154 belongs to nobody, and identity numbers begin
 * with the area 990117, which no place has. The same number gives the same employee. */
employee demo_employee(std::size_t number);

/** How many of each; the employees are numbered from `first`. */
struct demo_staff {
    std::size_t first;
    std::size_t employees;
    std::size_t warehouses;
};

/** Hires the employees over the past and opens warehouses that some of them keep; the first warehouse is the
 * default one. */
void fill_staff(store::connection& with, const principal& who, const demo_staff& wanted, std::int64_t now);

} // namespace tavrok::domain
