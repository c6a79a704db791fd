#include <memory>

#include "api/documents_world.h"
#include "api/rights_samples.h"

namespace tavrok::test {

namespace {

const std::vector<std::string> g_inbound{
    "instore_purchase",      "instore_production",  "instore_sale_return", "instore_receive_return",
    "instore_borrow_return", "instore_lend_return", "instore_other"};
const std::vector<std::string> g_outbound{"outstore_purchase_return", "outstore_sale_take",
                                          "outstore_receive",         "outstore_lend",
                                          "outstore_borrow_return",   "outstore_other"};

using rule = std::function<bool(const grant&)>;

rule any_of(const std::vector<std::string>& pages, const std::string& right) {
    return
        [pages, right](const grant& granted) { return granted.second == right && on_pages(pages)(granted); };
}

rule either(rule one, rule other) {
    return [one = std::move(one), other = std::move(other)](const grant& g) { return one(g) || other(g); };
}

/** Each kind's list and header. */
std::vector<sample> kinds(const documents_world& with, bool inbound, const std::string& action) {
    std::vector<sample> list;
    const auto& pages = inbound ? g_inbound : g_outbound;
    for (int kind = 1; kind <= static_cast<int>(pages.size()); ++kind) {
        const auto& page = pages[static_cast<std::size_t>(kind - 1)];
        const auto number = std::to_string(kind);
        if (action == "get_page") {
            const auto key = inbound ? "instore_type=" : "outstore_type=";
            list.push_back(
                {"kind " + number, key + number + "&page_num=1&page_size=20", only(page, "search")});
        } else {
            list.push_back({"kind " + number,
                            inbound ? with.inbound_header(kind) : with.outbound_header(kind),
                            only(page, "add")});
        }
    }
    return list;
}

std::string latest(documents_world& with, const std::string& module) {
    const auto type = module == "wms_instore" ? "instore_type=1" : "outstore_type=2";
    return std::string(with.page(module + "/get_page", type).at("list").at(0).at("id").as_string());
}

/** A document of the kind of purchases, or of sales. */
std::string document(documents_world& with, bool inbound) {
    const auto row = with.stock("5", "1.00", "5.00");
    if (inbound) return latest(with, "wms_instore");
    const auto draft = with.outbound_draft(row, "1", "1.00", "1.00", "");
    EXPECT_EQ(with.ask("wms_outstore/update_total", "id=" + draft + "&total=1.00"), "1");
    return latest(with, "wms_outstore");
}

/** Drafts belong to the session that opened them: only the owner's is let at these. Which rights let a user
 * at drafts of his own has tests of its own. */
std::vector<sample> draft_samples(harness& world, const std::shared_ptr<documents_world>& with,
                                  const std::string& module, const std::string& action) {
    std::function<std::string()> body;
    if (module == "wms_instore") {
        body = [with] { return "id=" + with->inbound_draft("1", "1.00", "1.00") + "&total=1.00"; };
    } else if (module == "wms_outstore") {
        body = [with, row = with->stock("5000", "1.00", "5000.00")] {
            return "id=" + with->outbound_draft(row, "1", "1.00", "1.00", "") + "&total=1.00";
        };
    } else if (module == "wms_stock_detail") {
        body = [with] {
            const auto written = with->line("1", "1.00", "1.00") + "&place=B-2";
            const auto draft = with->added("wms_instore/do_add", with->inbound_header(7));
            EXPECT_EQ(with->ask("wms_instore_detail/do_add", "main_id=" + draft + "&" + written), "1");
            return written;
        };
    } else if (action == "do_delete") {
        body = [with, &world] {
            with->inbound_draft("1", "1.00", "1.00");
            std::int64_t line = 0;
            store::read_now(*world.database, [&](store::connection& db) {
                db.query({"test latest draft line", "SELECT max(id) FROM draft_line"}, {},
                         [&](const store::row& one) { line = one.integer(0); });
            });
            return "id=" + std::to_string(line);
        };
    } else if (module == "wms_instore_detail") {
        return {{"a line",
                 "main_id=" + with->inbound_draft("1", "1.00", "1.00") + "&" +
                     with->line("1", "1.00", "1.00") + "&place=A-1",
                 administrators_alone}};
    } else {
        const auto row = with->stock("5", "1.00", "5.00");
        return {{"a line",
                 "main_id=" + with->outbound_draft(row, "1", "1.00", "1.00", "") + "&" +
                     with->line("1", "1.00", "1.00") + "&stock_id=" + row + "&place=A-1&locked_id=",
                 administrators_alone}};
    }
    return {{"of a draft", body(), administrators_alone, body}};
}

std::vector<sample> stock_samples(documents_world& with, const std::string& module,
                                  const std::string& action) {
    const auto row = with.stock("50", "1.00", "50.00");
    if (module == "wms_stock_summary")
        return {{"all", "&page_num=1&page_size=20", only("stock_summary", "search")}};
    if (action == "get_page") {
        return {{"all", "&page_num=1&page_size=20",
                 either(only("stock_detail", "search"),
                        either(on_pages(g_outbound), on_pages({"stock_taking", "stock_allot"})))}};
    }
    if (action == "lock_stock") {
        return {{"outbound", "lock_type=3&id=" + row + "&amount=0", any_of(g_outbound, "add")},
                {"transfer", "lock_type=1&id=" + row + "&amount=0", only("stock_allot", "add")}};
    }
    if (action == "unlock_stock") {
        return {{"outbound", "locked_id=x&lock_type=3", any_of(g_outbound, "add")},
                {"transfer", "locked_id=x&lock_type=1", only("stock_allot", "add")},
                {"stocktaking", "locked_id=x&lock_type=2", only("stock_taking", "add")}};
    }
    return {};
}

} // namespace

std::vector<sample> document_samples(harness& world, const std::string& owner, const std::string& path) {
    const auto module = path.substr(0, path.find('/'));
    const auto action = path.substr(path.find('/') + 1);
    const bool inbound = module == "wms_instore";
    if (module.rfind("wms_instore", 0) != 0 && module.rfind("wms_outstore", 0) != 0 &&
        module != "wms_stock_detail" && module != "wms_stock_summary") {
        return {};
    }
    const auto with = std::make_shared<documents_world>(world.as(owner));
    if (module == "wms_stock_summary" || (module == "wms_stock_detail" && action != "do_add"))
        return stock_samples(*with, module, action);
    const bool header = inbound || module == "wms_outstore";
    if (header && (action == "get_page" || action == "do_add")) return kinds(*with, inbound, action);
    const std::string page = inbound ? "instore_purchase" : "outstore_sale_take";
    if (action == "get_detail") return {{"a document", "id=" + document(*with, inbound), only(page, "view")}};
    if (!header || action != "do_delete") return draft_samples(world, with, module, action);
    const auto body = [with, inbound] { return "id=" + document(*with, inbound); };
    return {{"a document", body(), only(page, "delete"), body}};
}

} // namespace tavrok::test
