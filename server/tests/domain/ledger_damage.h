#pragma once

#include <memory>
#include <string>
#include <vector>

#include "domain/check.h"
#include "domain/ledger_scene.h"

namespace tavrok::test {

/** What is planted, and what the proof must say of it. `findings` is how many promises the damage breaks. */
struct damage {
    std::vector<std::string> sql;
    const char* rule;
    const char* words;
    std::size_t findings;
};

/** Documents 1001 (inbound, stock 1001 and 1002 by lines 1001 and 1002), 1002 (inbound, deleted, stock 1003
 * by line 1003), 1003 (outbound, line 1004, takes 4 of stock 1001 with a claim) and 1004 (outbound, deleted,
 * line 1005, took 2 of stock 1002). Movements 1 to 7 in that order, each contrary one after its own. Claims 1
 * used, 2 active on stock 1001, 3 holds stock 1002, 4 given back, 5 lapsed. Draft 1005 with one line. User
 * 1003 is the one who did it, 1004 another. */
class ledger_damage : public on_engine {
protected:
    void SetUp() override;
    /** What the proof says of the damage, which is taken back afterwards. */
    std::vector<domain::finding> proof_with(const std::vector<std::string>& planted);
    /** Takes the constraints away that keep damage out, and plants one after the other. */
    void expect_found(const std::vector<damage>& all);

    std::unique_ptr<scene> in;
    ledger_company of;
    domain::principal boss;

private:
    domain::document_line goods(std::size_t product, std::int64_t amount, std::int64_t price,
                                std::int64_t stock = 0, const std::string& token = {}) const;
    void fill(store::connection& with, const domain::principal& late);
    std::int64_t write(store::connection& with, domain::document_module module, std::int64_t type,
                       const std::vector<domain::document_line>& lines);
    void strip();
};

} // namespace tavrok::test
