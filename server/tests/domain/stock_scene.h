#pragma once

#include <memory>
#include <string>
#include <vector>

#include "domain/claims.h"
#include "domain/documents.h"
#include "domain/interleave.h"
#include "domain/products.h"
#include "domain/staff_scene.h"
#include "domain/stock.h"

namespace tavrok::test {

/** A staff_scene with a product, a warehouse and calls of the stock rules, each in a transaction of its own.
 */
class stock_scene : public staff_scene {
public:
    explicit stock_scene(const std::string& engine);

    std::int64_t product{0};
    std::int64_t warehouse{0};
    std::string handler; /**< an employee's id, as a form carries it */

    /** Another administrator of the company, logged in. */
    domain::principal clerk(const std::string& name, std::int64_t now = g_now);
    std::int64_t new_product(const std::string& name, const std::string& code = "",
                             const std::string& spec = "");

    /** An inbound line for the product and warehouse of the scene. */
    domain::document_line line_in(std::int64_t amount, std::int64_t price = 250) const;
    /** An outbound line that takes from the row. */
    domain::document_line line_out(std::int64_t stock, std::int64_t amount, const std::string& token = "");
    /** A draft with these lines, of the kind without a counterparty; gives its id. */
    std::int64_t draft(const domain::principal& who, domain::document_module module,
                       const std::vector<domain::document_line>& lines, std::int64_t now = g_now);
    /** Closes it; gives why it was dropped, empty where the document was made. */
    std::string close(const domain::principal& who, domain::document_module module, std::int64_t draft,
                      std::int64_t total, std::int64_t now = g_now);
    std::string take_out(const domain::principal& who, const std::vector<domain::document_line>& lines,
                         std::int64_t now = g_now);
    /** Brings a line in; gives the stock row. */
    std::int64_t bring_in(const domain::document_line& line, std::int64_t now = g_now);
    std::int64_t bring_in(std::int64_t amount) { return bring_in(line_in(amount)); }

    std::string claim(const domain::principal& who, domain::claim_use use, std::int64_t stock,
                      std::int64_t amount, std::int64_t now = g_now);
    /** The same for goods that go out. */
    std::string claim(const domain::principal& who, std::int64_t stock, std::int64_t amount,
                      std::int64_t now = g_now) {
        return claim(who, domain::claim_use::outbound, stock, amount, now);
    }
    bool claims(const domain::principal& who, std::int64_t stock, std::int64_t amount,
                std::int64_t now = g_now) {
        return !is_refused([&] { claim(who, stock, amount, now); });
    }
    void give_back(const domain::principal& who, const std::string& token, std::int64_t now = g_now);
    /** The principal as his next request finds him. */
    domain::principal again(const domain::principal& who);
    void remove_document(const domain::principal& who, domain::document_module module, std::int64_t id);
    void remove_product(std::int64_t id);

    store::stock_record row(std::int64_t stock);
    std::int64_t on_hand(std::int64_t stock) { return row(stock).on_hand; }
    std::int64_t claimed(std::int64_t stock) { return row(stock).claimed; }
    /** How many claims are in that state. */
    std::int64_t claims_in(store::claim_state state);
    domain::list_page<domain::stock_item> stock(const domain::principal& who,
                                                const domain::stock_search& search = {}, std::int64_t num = 1,
                                                std::int64_t size = 20);
    /** The figures of every row are those of its movements and claims, and all else holds too. */
    void sound();
};

/** What a draft of these lines adds up to. */
std::int64_t total_of(const std::vector<domain::document_line>& lines);

/** A stock_scene on each engine, with two users. */
class on_stock : public on_engine {
protected:
    void SetUp() override {
        on_engine::SetUp();
        if (IsSkipped()) return;
        in = std::make_unique<stock_scene>(GetParam());
        one = in->chief;
        two = in->clerk("two");
    }
    std::unique_ptr<stock_scene> in;
    domain::principal one;
    domain::principal two;
};

} // namespace tavrok::test
