#pragma once

#include <atomic>
#include <cstdint>
#include <functional>
#include <map>
#include <optional>
#include <random>
#include <string>
#include <vector>

#include "documents_site.h"
#include "picture.h"

namespace tavrok::test {

/** What became of the requests of a run. */
struct tally {
    std::int64_t acknowledged{0}; /**< changing requests that were answered with success */
    std::int64_t refused{0};
    std::int64_t unknown{0}; /**< the connection ended before the answer */
    std::int64_t resent{0};  /**< of them, those sent again and answered */
    std::int64_t replays{0}; /**< of them, those that had taken effect before */
};

bool is_success(const std::string& answer);

/** A user who writes documents of all four modules, claims stock, gives it back and deletes documents at
 * random, as the client would, and remembers what he was told. When his connection ends before an answer, he
 * stops; the next time he first sends the same bytes again. */
class document_clerk {
public:
    document_clerk(const stock_control_world& world, const actor& who, std::uint32_t seed);

    /** Until the connection ends or, between two requests, `enough` is set. Every answer counts in `told`. */
    void work(unsigned short port, std::atomic<std::int64_t>& told, const std::atomic<bool>& enough);
    /** Sends only what was not answered. False where that is not answered either. */
    bool settle(unsigned short port);

    /** Holds what he remembers against the database. A request without an answer may have taken effect or
     * not, but whole. Gives the difference, "" where there is none. */
    std::string judge(store::database& where);
    /** Whether the last judge() found that a request without an answer had taken effect. */
    bool had_effect() const { return m_had_effect; }
    bool waits() const { return m_open.has_value(); }
    const tally& figures() const { return m_figures; }
    /** How many documents of that module he was told to have written; deleted ones count. */
    std::int64_t documents(int module) const;

private:
    /** A changing request, what an answer to it means, and the answers that it may have had. */
    struct deed {
        std::string path, body;
        std::function<void(picture&, const std::string& answer)> apply;
        std::vector<std::string> answers;
        std::string opens{};     /**< the remark of the draft that it opens */
        std::string warehouse{}; /**< where a transfer that it opens goes out */
    };
    struct draft {
        std::string id, warehouse;
    };
    /** A row as the list shows it. */
    struct row {
        std::int64_t id{0};
        std::string warehouse;
        std::int64_t amount{0};
    };
    /** The claims that lines of one document have named. */
    using named = std::map<std::string, std::string>;
    struct cut {}; /**< thrown where the connection ended */

    void step();
    void write_inbound();
    void write_outbound();
    void write_taking();
    void write_transfer();
    void take_claim();
    void give_back();
    void delete_document();
    std::string open(int module, const std::string& header, const std::string& warehouse = "");
    void add_inbound_line(const std::string& paper);
    void add_outbound_line(const std::string& paper);
    void add_taking_line(const std::string& paper);
    void add_transfer_line(const std::string& paper);
    bool add_line(const std::string& paper, const std::string& remark, const std::string& body,
                  const paper_line& line);
    void close(const std::string& remark);
    std::string do_it(deed what);
    std::string resend();
    std::string told(const std::string& answer);
    std::string read(const std::string& path, const std::string& body);
    /** Of what the first page shows, in any warehouse or in that one. */
    std::optional<row> any_stock(const std::string& warehouse = "");
    /** One of his claims for that use, 0 for any, on goods in any warehouse or in that one. */
    std::optional<std::string> any_claim(int use, const std::string& warehouse = "");
    /** The company as one sees it whose goods lie in that warehouse and go to the other. */
    stock_control_world seen_from(const std::string& warehouse) const;
    std::vector<std::string> papers_in(paper_state state) const;
    std::int64_t below(std::int64_t end);
    std::string word(const char* kind);

    const stock_control_world& m_world;
    actor m_who;
    std::mt19937 m_chance;
    std::int64_t m_words{0};
    picture m_memory;
    std::map<std::string, draft> m_drafts;           /**< by remark */
    std::map<std::string, named> m_named;            /**< by remark; then tokens by remark of the line */
    std::map<std::int64_t, std::string> m_warehouse; /**< of rows that he has seen */
    std::optional<deed> m_open;
    bool m_had_effect{false};
    wire* m_link{nullptr};
    std::atomic<std::int64_t>* m_told{nullptr};
    tally m_figures;
};

} // namespace tavrok::test
