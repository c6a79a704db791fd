#pragma once

#include <string>
#include <vector>

#include "support/figures.h"

namespace bench {

/** The figures as a table of a Markdown page: both databases side by side, limits, and what bounds each, as
 * the file of bounds says. Throws for a figure that the file does not know. */
std::string markdown(const std::vector<figure>& all, const std::string& bounds_path);

/** Puts a text between the lines "<!-- figures -->" and "<!-- end of figures -->" of a page. */
void replace_figures(const std::string& page_path, const std::string& text);

} // namespace bench
