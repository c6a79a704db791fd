#pragma once

#include <array>
#include <string>
#include <vector>

#include "domain/claims.h"
#include "domain/documents.h"
#include "domain/scene.h"

namespace tavrok::test {

/** A company with all that documents name. */
struct ledger_company {
    std::int64_t id{0};
    domain::user_key boss{};   /**< administrator */
    domain::user_key deputy{}; /**< administrator */
    domain::user_key hand{};   /**< ordinary user without grants */
    std::int64_t employee{0};
    std::array<std::int64_t, 3> partners{}; /**< a supplier, a client, one of the third kind */
    std::int64_t dept{0};
    std::vector<std::int64_t> products;   /**< three */
    std::vector<std::int64_t> warehouses; /**< two */
};

/** Makes one; `name` is of the company and in the names of its users. */
ledger_company make_ledger_company(store::connection& with, const std::string& name,
                                   std::int64_t now = g_now);

/** A header of that kind with the counterparty that it wants. */
domain::document_header header_for(const ledger_company& of, domain::document_module module,
                                   std::int64_t type);

/** Writes a whole document as a client does and gives its id; throws when it is dropped. */
std::int64_t write_document(store::connection& with, const ledger_company& of, const domain::principal& who,
                            domain::document_module module, std::int64_t type,
                            const std::vector<domain::document_line>& lines, std::int64_t now = g_now);

} // namespace tavrok::test
