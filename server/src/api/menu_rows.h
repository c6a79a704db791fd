#pragma once

#include <string>
#include <vector>

#include "domain/menu.h"

namespace tavrok::api {

/** Writes menu rows as nested records. */
void write_menu_rows(std::string& answer, const std::vector<domain::menu_node>& rows);

} // namespace tavrok::api
