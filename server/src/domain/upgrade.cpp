#include "domain/upgrade.h"

#include "domain/fold.h"
#include "store/records/companies.h"
#include "store/records/users.h"

namespace tavrok::domain {

bool folds_missing(store::connection& with) {
    return !store::unfolded_companies(with).empty() || !store::unfolded_users(with).empty();
}

std::vector<std::int64_t> complete_folds(store::connection& with) {
    for (const auto& one : store::unfolded_users(with))
        store::fold_realname(with, one.company, one.id, fold(one.realname));
    std::vector<std::int64_t> clashing;
    for (const auto& one : store::unfolded_companies(with)) {
        const auto folded = fold(one.name);
        if (store::company_taken(with, folded)) {
            clashing.push_back(one.id);
        } else {
            store::fold_company_name(with, one.id, folded);
        }
    }
    return clashing;
}

} // namespace tavrok::domain
