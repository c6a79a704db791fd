#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "domain/claims.h"
#include "domain/documents.h"
#include "domain/stock_summary.h"

namespace tavrok::test {

/** What a call came to. `over`: the session has ended; `dropped`: a closing call that made no document. */
enum class answer { done, refused, dropped, over };

/** A company as the rules of the warehouse have it, in plain maps and loops: nothing in it knows how the
 * service does it. Each call says what the service must answer, and what is so from then on. */
class ledger_oracle {
public:
    struct session {
        std::int64_t user{0};
        std::int64_t created{0};
        std::int64_t last{0};
        bool ended{false};
    };
    struct batch {
        std::int64_t product{0};
        std::int64_t warehouse{0};
        std::int64_t price{0};
        std::string place;
        std::int64_t on_hand{0};
        std::int64_t added{0}; /**< when it came in */
    };
    struct claim {
        std::int64_t stock{0};
        std::int64_t user{0};
        domain::claim_use use{};
        std::int64_t amount{0};
    };
    struct entry {
        domain::document_line what; /**< a transfer's has its source as warehouse */
        bool announced{false};
        std::int64_t sys_amount{0}; /**< of a stocktaking */
        std::int64_t stock_in{0};   /**< the row that a transfer made */
    };
    struct draft {
        std::int64_t session{0};
        domain::document_module module{};
        std::int64_t type{0};
        std::int64_t opened{0};
        std::map<std::int64_t, entry> lines{}; /**< by id, which is their order */
        std::int64_t warehouse_out{0};         /**< of a transfer, as all below */
        std::int64_t warehouse_in{0};
        std::int64_t document{0}; /**< that its first line made */
        std::int64_t moved{0};    /**< lines that went there */
    };
    struct document {
        domain::document_module module{};
        std::int64_t type{0};
        bool live{true};
        std::string sn;
        domain::document_sums sums{};
        std::vector<entry> lines{}; /**< with the stock rows of inbound ones too */
    };
    /** What the service made of a draft: the oracle takes the ids from here, and nothing else. */
    struct made {
        std::int64_t document{0};
        std::vector<std::int64_t> stock{}; /**< that the lines made, in their order */
    };

    std::map<std::int64_t, bool> products{};   /**< and whether they are live */
    std::map<std::int64_t, bool> warehouses{}; /**< the same */
    std::vector<std::int64_t> partners{};      /**< of type 1, 2 and 3 */
    std::int64_t dept{0};
    std::int64_t employee{0};
    std::int64_t ordinary{0}; /**< the user without all rights */

    std::map<std::int64_t, session> sessions{};
    std::map<std::int64_t, batch> stock{};
    std::map<std::string, claim> claims{}; /**< the live ones */
    std::map<std::string, claim> lapsed{}; /**< those whose users were gone */
    std::set<std::string> ended{};         /**< of those that were used up or given back */
    std::map<std::int64_t, draft> drafts{};
    std::map<std::int64_t, document> documents{};

    /** Whether the rules leave open at that instant who is gone: last requests are noted to the minute. */
    bool is_doubtful(std::int64_t at) const;
    /** Time goes on; claims of users who are gone by then lapse. */
    void wait_until(std::int64_t at);
    void log_in(std::int64_t user, std::int64_t id);
    void end_sessions_of(std::int64_t user);
    /** A request of a session; false: it is over. */
    bool request(std::int64_t id);
    void sweep();

    /** What an ordinary user of the play may do. */
    static bool ordinary_may(domain::document_module module, std::int64_t type, const std::string& right);

    answer open_draft(std::int64_t session, domain::document_module module,
                      const domain::document_header& header, std::int64_t id);
    answer add_line(std::int64_t session, domain::document_module module, std::int64_t draft,
                    const domain::document_line& line, std::int64_t id);
    answer add_count(std::int64_t session, std::int64_t draft, const domain::taking_line& line,
                     std::int64_t id);
    answer add_move(std::int64_t session, std::int64_t draft, const domain::document_line& line,
                    const made& by_service);
    answer announce(std::int64_t session, const domain::document_line& like);
    answer drop_line(std::int64_t session, std::int64_t line);
    answer close(std::int64_t session, domain::document_module module, std::int64_t draft,
                 const domain::document_sums& told, const made& by_service);
    answer remove(std::int64_t session, domain::document_module module, std::int64_t document);
    answer take(std::int64_t session, const domain::claim_wish& wish, const std::string& token);
    void give_back(std::int64_t session, const std::string& token);
    answer retire(std::map<std::int64_t, bool>& of, std::int64_t id);

    /** Product, quantity and money of the summary, newest product first. `standing` are the lapsed claims
     * that nobody has looked at yet. */
    std::vector<domain::summary_item> summary(std::int64_t from, std::int64_t to,
                                              const std::set<std::string>& standing) const;

    std::int64_t claimed(std::int64_t stock) const;
    std::int64_t now{0};

private:
    bool alive(const session& one) const;
    void lapse();
    bool may(std::int64_t user, domain::document_module module, std::int64_t type, const std::string& right);
    bool counterparty_fits(domain::document_module module, const domain::document_header& header) const;
    bool held_by_other(std::int64_t stock, std::int64_t user) const;
    bool warehouses_fit(domain::document_module module, const domain::document_header& header) const;
    bool goods_live(const domain::document_line& line) const;
    draft* draft_for_line(std::int64_t session, domain::document_module module, std::int64_t id);
    static bool in_bounds(const domain::document_line& line);
    static answer arrive(draft& at, bool good, std::int64_t id, const entry& what);
    bool is_of_row(std::int64_t user, const domain::document_line& line) const;
    void use_up(std::int64_t user, const domain::document_line& line, domain::claim_use use);
    bool take_off(std::int64_t user, const domain::document_line& line, domain::claim_use use);
    bool correct(std::int64_t user, const document& by);
    bool change(const std::map<std::int64_t, std::int64_t>& rows);
    bool apply(std::int64_t user, const document& what);
    std::string next_number(domain::document_module module, std::int64_t type);

    std::map<std::string, int> m_numbers{};
};

} // namespace tavrok::test
