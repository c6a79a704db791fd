#pragma once

#include <string>
#include <vector>

#include "domain/claims.h"
#include "domain/documents.h"
#include "domain/goods_scene.h"

namespace tavrok::test {

inline constexpr auto g_in = domain::document_module::inbound;
inline constexpr auto g_out = domain::document_module::outbound;

/** What a company writes documents about. */
struct trading_company {
    domain::principal boss;
    std::int64_t supplier{0};
    std::int64_t client{0};
    std::int64_t other{0}; /**< a partner of the third type */
    std::int64_t department{0};
    std::int64_t employee{0};
    std::int64_t product{0};
    std::int64_t second_product{0};
    std::int64_t warehouse{0};
    std::int64_t second_warehouse{0};
};

/** The day and the number in it of a document's number. */
std::string sn_day(const std::string& sn);

/** A company that trades, another one beside it, and calls of the document rules, each in a transaction of
 * its own. Those without a principal are the administrator's. */
class documents_test : public goods_test {
protected:
    void SetUp() override;
    trading_company trade(const domain::principal& who, const std::string& mark);
    std::int64_t partner(const domain::principal& who, int type, const std::string& name);
    std::int64_t employee(const domain::principal& who, const std::string& jobnum);
    std::int64_t warehouse(const domain::principal& who, const std::string& name, std::int64_t keeper);
    void close_warehouse(std::int64_t id);
    void dismiss(std::int64_t employee);
    void drop_partner(std::int64_t id);
    /** A principal of a session of his own with just these rights. */
    domain::principal clerk(std::set<std::pair<std::string, std::string>> rights);

    /** A header whose partner or department fits the kind. */
    domain::document_header header(domain::document_module module, std::int64_t type) const;
    /** An inbound line of the first product; its total fits. */
    domain::document_line line(std::int64_t amount = 10, std::int64_t price = 250) const;
    /** An outbound line that takes from a row. */
    domain::document_line from(std::int64_t stock, std::int64_t amount, const std::string& token = {});

    std::int64_t open(domain::document_module module, const domain::document_header& what,
                      std::int64_t now = g_now);
    std::int64_t open(const domain::principal& who, domain::document_module module,
                      const domain::document_header& what, std::int64_t now = g_now);
    std::int64_t open(domain::document_module module, std::int64_t type, std::int64_t now = g_now) {
        return open(module, header(module, type), now);
    }
    std::int64_t put(domain::document_module module, std::int64_t draft, const domain::document_line& what);
    std::int64_t put(const domain::principal& who, domain::document_module module, std::int64_t draft,
                     const domain::document_line& what);
    void announce(const domain::document_line& like) { announce(boss, like); }
    void announce(const domain::principal& who, const domain::document_line& like);
    void drop(const domain::principal& who, std::int64_t line);
    /** The total is in hundredths; gives why the document was not made. */
    std::string close(domain::document_module module, std::int64_t draft, std::int64_t total,
                      std::int64_t now = g_now);
    std::string close(const domain::principal& who, domain::document_module module, std::int64_t draft,
                      std::int64_t total, std::int64_t now = g_now);
    void remove(domain::document_module module, std::int64_t id, std::int64_t now = g_now);
    void remove(const domain::principal& who, domain::document_module module, std::int64_t id,
                std::int64_t now = g_now);
    using goods_test::remove;

    /** Writes a whole document as the client does and gives its id; fails the test when it is refused. */
    std::int64_t receive(const std::vector<domain::document_line>& lines, std::int64_t type = 7,
                         std::int64_t now = g_now);
    std::int64_t issue(const std::vector<domain::document_line>& lines, std::int64_t type = 6,
                       std::int64_t now = g_now);
    /** The same; gives why it was refused. */
    std::string attempt(domain::document_module module, const domain::document_header& what,
                        const std::vector<domain::document_line>& lines, std::int64_t now = g_now);
    /** A new stock row with so much on hand. */
    std::int64_t batch(std::int64_t amount, std::int64_t price = 250);
    std::int64_t newest_document();

    std::string claim(const domain::principal& who, std::int64_t stock, std::int64_t amount,
                      domain::claim_use use = domain::claim_use::outbound, std::int64_t now = g_now);
    std::int64_t on_hand(std::int64_t stock);
    std::int64_t claimed(std::int64_t stock);
    /** Active claims in all. */
    std::int64_t claims();

    domain::list_page<domain::document_record> documents(domain::document_module module,
                                                         const domain::document_search& search,
                                                         domain::page_wish wish = {1, 200});
    domain::list_page<domain::document_record> documents(const domain::principal& who,
                                                         domain::document_module module,
                                                         const domain::document_search& search,
                                                         domain::page_wish wish = {1, 200});
    std::vector<domain::document_line_record> lines_of(domain::document_module module, std::int64_t id);
    std::string sn_of(std::int64_t document);
    /** Every row's figures are the sum of its movements and of its active claims. */
    void ledger_is_right();

    trading_company us;
    trading_company them;
};

} // namespace tavrok::test
