#include "app/folds.h"

#include <spdlog/spdlog.h>

#include <cstdint>
#include <vector>

#include "domain/upgrade.h"

namespace tavrok::app {

void complete_folds(store::database& where) {
    bool missing = false;
    store::read_now(where, [&](store::connection& with) { missing = domain::folds_missing(with); });
    if (!missing) return;
    std::vector<std::int64_t> clashing;
    store::write_now(where, [&](store::connection& with) { clashing = domain::complete_folds(with); });
    for (const auto company : clashing)
        spdlog::warn("company {} bears the name of an older one", company);
}

} // namespace tavrok::app
