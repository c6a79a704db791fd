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

/** A user who writes documents, claims stock, gives it back and deletes documents at random, as the client
 * would, and remembers what he was told. When his connection ends before an answer, he stops; the next time
 * he first sends the same bytes again. */
class document_clerk {
public:
    document_clerk(const documents_world& world, const actor& who, std::uint32_t seed);

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

private:
    /** A changing request, what an answer to it means, and the answers that it may have had. */
    struct deed {
        std::string path, body;
        std::function<void(picture&, const std::string& answer)> apply;
        std::vector<std::string> answers;
    };
    struct cut {}; /**< thrown where the connection ended */

    void step();
    void write_inbound();
    void write_outbound();
    void take_claim();
    void give_back();
    void delete_document();
    void close(const std::string& remark);
    std::string open(int module, const std::string& header);
    void add_line(const std::string& paper, std::int64_t amount, std::int64_t stock,
                  const std::string& token);
    std::string do_it(deed what);
    std::string resend();
    std::string told(const std::string& answer);
    std::string read(const std::string& path, const std::string& body);
    std::string any_stock();
    std::optional<std::string> any_claim(bool outbound_only);
    std::vector<std::string> papers_in(paper_state state) const;
    std::int64_t below(std::int64_t end);
    std::string word(const char* kind);

    const documents_world& m_world;
    actor m_who;
    std::mt19937 m_chance;
    std::int64_t m_words{0};
    picture m_memory;
    std::map<std::string, std::string> m_drafts;                       /**< id by remark */
    std::map<std::string, std::map<std::string, std::string>> m_named; /**< tokens by remark and line */
    std::optional<deed> m_open;
    bool m_had_effect{false};
    wire* m_link{nullptr};
    std::atomic<std::int64_t>* m_told{nullptr};
    tally m_figures;
};

} // namespace tavrok::test
