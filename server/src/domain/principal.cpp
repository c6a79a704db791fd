#include "domain/principal.h"

#include <algorithm>

namespace tavrok::domain {

bool principal::has(std::string_view page, std::string_view right) const {
    return administrator || rights.contains({std::string(page), std::string(right)});
}

bool principal::has_any(std::string_view page) const {
    return administrator ||
           std::any_of(rights.begin(), rights.end(), [&](const auto& one) { return one.first == page; });
}

} // namespace tavrok::domain
