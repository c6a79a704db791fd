#include <map>

#include "api/rights_samples.h"

namespace tavrok::test {

namespace {

const std::map<int, std::string> page_of_kind{
    {1, "company_supplier"}, {2, "company_client"}, {3, "company_other"}};

bool with_picker(const grant& granted) {
    static const auto pages = on_pages({"instore_purchase", "instore_sale_return", "instore_borrow_return",
                                        "instore_lend_return", "outstore_purchase_return",
                                        "outstore_sale_take", "outstore_lend", "outstore_borrow_return"});
    return pages(granted);
}

} // namespace

std::vector<sample> company_samples(harness& world, const std::string& owner, const std::string& path) {
    std::vector<sample> list;
    for (const int kind : {1, 2, 3, 4}) {
        const auto number = std::to_string(kind);
        const auto label = "kind " + number;
        const auto partner = [&world, owner, kind] {
            return std::to_string(world.add_partner(owner, kind, "partner"));
        };
        if (path == "wms_company/get_page") {
            const auto right = kind == 4 ? administrators_alone : only(page_of_kind.at(kind), "search");
            list.push_back({label, "type=" + number + "&page_num=1&page_size=20",
                            [right](const grant& g) { return right(g) || with_picker(g); }});
        }
        if (kind == 4) continue;
        const auto& page = page_of_kind.at(kind);
        if (path == "wms_company/do_add")
            list.push_back({label, "&type=" + number + "&name=n&phone=1&address=a", only(page, "add")});
        if (path == "wms_company/do_edit")
            list.push_back({label, "&id=" + partner() + "&name=renamed", only(page, "edit")});
        if (path == "wms_company/do_delete") {
            const auto body = [partner] { return "id=" + partner(); };
            list.push_back({label, body(), only(page, "delete"), body});
        }
    }
    return list;
}

} // namespace tavrok::test
