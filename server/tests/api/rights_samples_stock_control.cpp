#include <memory>

#include "api/rights_samples.h"
#include "api/stock_control_world.h"

namespace tavrok::test {

std::vector<sample> stock_control_samples(harness& world, const std::string& owner, const std::string& path) {
    const auto module = path.substr(0, path.find('/'));
    const auto action = path.substr(path.find('/') + 1);
    const bool taking = module.rfind("wms_stock_taking", 0) == 0;
    if (!taking && module.rfind("wms_stock_allot", 0) != 0) return {};
    const auto with = std::make_shared<stock_control_world>(world.as(owner));
    const std::string page = taking ? "stock_taking" : "stock_allot";
    if (action == "get_page") return {{"all", "&page_num=1&page_size=20", only(page, "search")}};
    const auto row = with->stock("5000", "1.00", "5000.00");
    const auto document = [with, taking, row] { return taking ? with->taking(row) : with->transfer(row); };
    if (action == "get_detail") return {{"a document", "id=" + document(), only(page, "view")}};
    if (action == "do_delete") {
        const auto body = [document] { return "id=" + document(); };
        return {{"a document", body(), only(page, "delete"), body}};
    }
    if (module == "wms_stock_taking" && action == "do_add") {
        return {{"a header", "&operater=" + with->employee + "&writer=", only(page, "add")}};
    }
    if (module == "wms_stock_allot" && action == "do_add") {
        return {{"a header", with->transfer_header(), only(page, "add")}};
    }
    // Drafts belong to the session that opened them: only the owner's is let at these.
    if (action == "update_profitloss") {
        const auto body = [with, row] {
            return "id=" + with->taking_draft(with->counted(row, 2, 1, "1.00", "-1.00")) +
                   "&profitloss_amount=-1&profitloss_total=-1.00";
        };
        return {{"a draft", body(), administrators_alone, body}};
    }
    const auto header = taking ? "&operater=" + with->employee + "&writer=" : with->transfer_header();
    const auto draft =
        with->added(std::string(taking ? "wms_stock_taking" : "wms_stock_allot") + "/do_add", header);
    return {{"a line",
             "main_id=" + draft +
                 (taking ? with->counted(row, 2, 1, "1.00", "-1.00") : with->moved(row, "1", "1.00", "1.00")),
             administrators_alone}};
}

} // namespace tavrok::test
