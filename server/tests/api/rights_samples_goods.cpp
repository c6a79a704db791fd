#include "api/rights_samples.h"
#include "domain/products.h"
#include "domain/trees.h"

namespace tavrok::test {

namespace {

const std::vector<std::string> g_inbound{
    "instore_purchase",      "instore_production",  "instore_sale_return", "instore_receive_return",
    "instore_borrow_return", "instore_lend_return", "instore_other"};
const std::vector<std::string> g_outbound{"outstore_purchase_return", "outstore_sale_take",
                                          "outstore_receive",         "outstore_lend",
                                          "outstore_borrow_return",   "outstore_other"};

using rule = std::function<bool(const grant&)>;

rule either(rule one, rule other) {
    return [one = std::move(one), other = std::move(other)](const grant& g) { return one(g) || other(g); };
}

/** What stands for the company of a session, made anew. */
class stock_of_samples {
public:
    stock_of_samples(harness& world, const std::string& owner)
        : m_world(&world), m_who(world.principal_of(owner)) {}

    std::string node(const store::tree& in) const {
        return made([&](store::connection& db) {
            return domain::add_node(db, m_who, in, "node", 0, m_world->now).id;
        });
    }
    std::string product() const {
        return made([&](store::connection& db) {
            return domain::add_product(db, m_who, {.name = "product"}, m_world->now).id;
        });
    }

private:
    template <typename make_t>
    std::string made(make_t make) const {
        std::int64_t id = 0;
        store::write_now(*m_world->database, [&](store::connection& db) { id = make(db); });
        return std::to_string(id);
    }

    harness* m_world;
    domain::principal m_who;
};

std::vector<sample> tree_samples(const stock_of_samples& owner, const store::tree& tree,
                                 const std::string& page, const std::string& action) {
    const auto node = [owner, &tree] { return owner.node(tree); };
    if (action == "do_add") return {{"below a node", "name=n&parent=" + node(), only(page, "add_child")}};
    if (action == "do_edit") return {{"a node", "name=renamed&id=" + node(), only(page, "edit")}};
    if (action != "do_delete") return {};
    const auto body = [node] { return "id=" + node(); };
    return {{"a node", body(), only(page, "delete"), body}};
}

std::vector<sample> product_samples(const stock_of_samples& owner, const std::string& action) {
    if (action == "get_page")
        return {{"all", "&page_num=1&page_size=20", either(only("product", "search"), on_pages(g_inbound))},
                {"of a category", "&category=1001&page_num=1&page_size=20",
                 either(only("product", "search"), on_pages(g_inbound))}};
    if (action == "do_add") {
        const auto category = owner.node(store::g_categories);
        return {{"in a category", "name=n&category=" + category, only("product", "add")}};
    }
    if (action == "do_edit")
        return {{"a product", "id=" + owner.product() + "&name=renamed", only("product", "edit")}};
    const auto body = [owner] { return "id=" + owner.product(); };
    return {{"a product", body(), only("product", "delete"), body}};
}

} // namespace

std::vector<sample> goods_samples(harness& world, const std::string& owner, const std::string& path) {
    const auto module = path.substr(0, path.find('/'));
    const auto action = path.substr(path.find('/') + 1);
    if (action == "get_dept") {
        const auto documents = either(on_pages(g_inbound), on_pages(g_outbound));
        return {{"the tree", "", either(only("dept", "search"), documents)}};
    }
    if (action == "get_prodcate")
        return {{"the tree", "", either(only("prodcate", "search"), on_pages({"product", "stock_taking"}))}};
    const stock_of_samples made(world, owner);
    if (module == "wms_dept") return tree_samples(made, store::g_departments, "dept", action);
    if (module == "wms_prodcate") return tree_samples(made, store::g_categories, "prodcate", action);
    if (module == "wms_product") return product_samples(made, action);
    return {};
}

} // namespace tavrok::test
