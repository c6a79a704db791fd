#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "domain/claims.h"
#include "domain/documents.h"

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
    };
    struct claim {
        std::int64_t stock{0};
        std::int64_t user{0};
        domain::claim_use use{};
        std::int64_t amount{0};
    };
    struct draft_line {
        domain::document_line what;
        bool announced{false};
    };
    struct draft {
        std::int64_t session{0};
        domain::document_module module{};
        std::int64_t type{0};
        std::int64_t opened{0};
        std::map<std::int64_t, draft_line> lines{}; /**< by id, which is their order */
    };
    struct document {
        domain::document_module module{};
        std::int64_t type{0};
        bool live{true};
        std::string sn;
        std::int64_t total{0};
        std::vector<domain::document_line> lines{}; /**< with the stock rows of inbound ones too */
    };
    /** What the service made of a draft: the oracle takes the ids from here, and nothing else. */
    struct made {
        std::int64_t document{0};
        std::vector<std::int64_t> stock{}; /**< of the lines, in their order */
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
    std::set<std::string> lapsed{};        /**< tokens of claims whose users were gone */
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
    answer announce(std::int64_t session, const domain::document_line& like);
    answer drop_line(std::int64_t session, std::int64_t line);
    answer close(std::int64_t session, domain::document_module module, std::int64_t draft, std::int64_t told,
                 const made& by_service);
    answer remove(std::int64_t session, domain::document_module module, std::int64_t document);
    answer take(std::int64_t session, const domain::claim_wish& wish, const std::string& token);
    void give_back(std::int64_t session, const std::string& token);
    answer retire(std::map<std::int64_t, bool>& of, std::int64_t id);

    std::int64_t claimed(std::int64_t stock) const;
    std::int64_t now{0};

private:
    bool alive(const session& one) const;
    void lapse();
    bool may(std::int64_t user, domain::document_module module, std::int64_t type, const std::string& right);
    bool counterparty_fits(domain::document_module module, const domain::document_header& header) const;
    bool held_by_other(std::int64_t stock, std::int64_t user) const;
    bool goods_live(const domain::document_line& line) const;
    bool take_off(std::int64_t user, const domain::document_line& line);
    std::string next_number(domain::document_module module, std::int64_t type);

    std::map<std::string, int> m_numbers{};
};

} // namespace tavrok::test
