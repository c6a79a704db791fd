#include "domain/audit.h"

#include <string>

#include "store/records/audit.h"

namespace tavrok::domain {

void note(store::connection& with, const principal& who, std::string_view what, std::int64_t id,
          std::int64_t now, std::int64_t detail) {
    note(with, who.company, who.user, what, id, now, detail);
}

void note(store::connection& with, std::int64_t company, std::int64_t user, std::string_view what,
          std::int64_t id, std::int64_t now, std::int64_t detail) {
    store::insert_audit(with, company, user, now, std::string(what), id, detail);
}

} // namespace tavrok::domain
