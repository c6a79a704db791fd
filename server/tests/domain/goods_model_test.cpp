#include <rapidcheck.h>

#include <algorithm>

#include "domain/fold.h"
#include "domain/goods_scene.h"

namespace tavrok::domain {
namespace {

using test::g_categories;
using test::g_departments;
using test::g_now;

class goods_model : public test::goods_test {};
ON_EVERY_ENGINE(goods_model);

struct node {
    std::int64_t parent;
    std::string name;
};
using nodes = std::map<std::int64_t, node>;

/** What a company has: plain maps and loops. */
struct oracle {
    nodes departments;
    nodes categories;
    std::map<std::int64_t, product> products;

    static std::set<std::int64_t> subtree(const nodes& of, std::int64_t top) {
        std::set<std::int64_t> found{top};
        for (const auto& [id, one] : of) // parents have lower ids
            if (found.contains(one.parent)) found.insert(id);
        return found;
    }
    bool stands_in(const std::set<std::int64_t>& some) const {
        return std::any_of(products.begin(), products.end(),
                           [&](const auto& one) { return some.contains(one.second.category); });
    }
    bool may_hold(std::int64_t category) const { return category == 0 || categories.contains(category); }
};

std::string shape(const nodes& of, std::int64_t parent) {
    std::string text;
    for (const auto& [id, one] : of) {
        if (one.parent != parent) continue;
        const auto lower = shape(of, id);
        text += (text.empty() ? "" : " ") + std::to_string(id) + one.name;
        if (!lower.empty()) text += '(' + lower + ')';
    }
    return text;
}

std::string shape(const std::vector<tree_node>& some) {
    std::string text;
    for (const auto& one : some) {
        text += (text.empty() ? "" : " ") + std::to_string(one.id) + one.name;
        if (!one.child.empty()) text += '(' + shape(one.child) + ')';
    }
    return text;
}

std::string word() {
    return *rc::gen::element<std::string>("a", "A", "仓", "é", "É", "%", "_", "");
}

class company {
public:
    company(test::scene& in, const principal& who, count_cache& counts)
        : m_in(in), m_who(who), m_counts(counts) {}

    void step() {
        const auto what = *rc::gen::inRange(0, 12);
        const bool upper = *rc::gen::arbitrary<bool>();
        const auto& tree = upper ? g_departments : g_categories;
        auto& model = upper ? m_model.departments : m_model.categories;
        if (what < 4) return grow(tree, model);
        if (what < 5) return rename(tree, model);
        if (what < 6) return prune(tree, model);
        if (what < 8) return add();
        if (what < 11) return edit();
        remove();
    }

    void compare() {
        for (const auto* tree : {&g_departments, &g_categories}) {
            const auto& model = tree == &g_departments ? m_model.departments : m_model.categories;
            RC_ASSERT(m_in.read([&](store::connection& with) {
                return shape(list_tree(with, m_who, *tree));
            }) == shape(model, 0));
        }
        product_search search;
        if (*rc::gen::arbitrary<bool>()) search.category = some(m_model.categories);
        search.name = word();
        search.spec = word();
        compare_pages(search, *rc::gen::inRange<std::int64_t>(1, 5));
    }

private:
    /** Mostly an id that is there; else the root, or one that nobody or the other company has. */
    template <typename records>
    static std::int64_t some(const records& of) {
        const auto which = *rc::gen::inRange(0, 6);
        if (which == 0) return 0;
        if (which == 1 || of.empty()) return 1001 + *rc::gen::inRange(0, 60);
        return std::next(of.begin(), *rc::gen::inRange(0, static_cast<int>(of.size())))->first;
    }
    /** Whether the deed is done; it must be refused exactly where the oracle would. */
    template <typename deed_t>
    bool as_allowed(bool allowed, deed_t deed) {
        bool done = true;
        try {
            m_in.write(deed);
        } catch (const refused&) {
            done = false;
        }
        RC_ASSERT(done == allowed);
        return done;
    }

    void grow(const store::tree& tree, nodes& model) {
        const auto parent = some(model);
        const auto name = "n" + word();
        std::int64_t id = 0;
        if (as_allowed(parent == 0 || model.contains(parent), [&](store::connection& with) {
                id = add_node(with, m_who, tree, name, parent, g_now).id;
            }))
            model[id] = {parent, name};
    }
    void rename(const store::tree& tree, nodes& model) {
        const auto id = some(model);
        const auto name = "m" + word();
        if (as_allowed(model.contains(id),
                       [&](store::connection& with) { rename_node(with, m_who, tree, id, name, g_now); }))
            model[id].name = name;
    }
    void prune(const store::tree& tree, nodes& model) {
        const auto id = some(model);
        const auto gone = oracle::subtree(model, id);
        const bool free = &model == &m_model.departments || !m_model.stands_in(gone);
        if (as_allowed(model.contains(id) && free,
                       [&](store::connection& with) { remove_node(with, m_who, tree, id, g_now); }))
            for (const auto one : gone)
                model.erase(one);
    }
    void add() {
        product what{.name = "p" + word(), .spec = word(), .category = some(m_model.categories)};
        what.price = *rc::gen::inRange<std::int64_t>(0, g_highest_price + 1);
        if (as_allowed(m_model.may_hold(what.category),
                       [&](store::connection& with) { what.id = add_product(with, m_who, what, g_now).id; }))
            m_model.products[what.id] = what;
    }
    void edit() {
        product_change change;
        change.id = some(m_model.products);
        if (*rc::gen::arbitrary<bool>()) change.name = "q" + word();
        if (*rc::gen::arbitrary<bool>()) change.spec = word();
        if (*rc::gen::arbitrary<bool>()) change.category = some(m_model.categories);
        if (*rc::gen::arbitrary<bool>()) change.price = *rc::gen::inRange<std::int64_t>(0, 1000);
        const auto known = m_model.products.find(change.id);
        const bool allowed = known != m_model.products.end() && m_model.may_hold(change.category.value_or(0));
        if (!as_allowed(allowed, [&](store::connection& with) { edit_product(with, m_who, change, g_now); }))
            return;
        auto& one = known->second;
        one.name = change.name.value_or(one.name);
        one.spec = change.spec.value_or(one.spec);
        one.category = change.category.value_or(one.category);
        one.price = change.price.value_or(one.price);
    }
    void remove() {
        const auto id = some(m_model.products);
        if (as_allowed(m_model.products.contains(id),
                       [&](store::connection& with) { remove_product(with, m_who, id, g_now); }))
            m_model.products.erase(id);
    }

    static bool holds(const std::string& where, const std::string& what) {
        return fold(where).find(fold(what)) != std::string::npos;
    }
    /** Turns all pages over: each product once, newest first, as the oracle has it. */
    void compare_pages(const product_search& search, std::int64_t size) {
        std::vector<std::int64_t> wanted;
        for (auto at = m_model.products.rbegin(); at != m_model.products.rend(); ++at) {
            const auto& one = at->second;
            if (search.category.value_or(one.category) == one.category && holds(one.name, search.name) &&
                holds(one.spec, search.spec))
                wanted.push_back(at->first);
        }
        std::vector<std::int64_t> got;
        std::int64_t pages = 1;
        for (std::int64_t num = 1; num <= pages; ++num) {
            const auto page = m_in.read([&](store::connection& with) {
                return list_products(with, m_who, search, {num, size}, m_counts);
            });
            RC_ASSERT(page.total == static_cast<std::int64_t>(wanted.size()));
            pages = std::max<std::int64_t>(page.page_count, 1);
            for (const auto& one : page.list) {
                got.push_back(one.id);
                same(one, m_model.products.at(one.id));
            }
        }
        RC_ASSERT(got == wanted);
    }
    void same(const product& one, const product& other) const {
        RC_ASSERT(one.name == other.name);
        RC_ASSERT(one.spec == other.spec);
        RC_ASSERT(one.price == other.price);
        RC_ASSERT(one.category == other.category);
        RC_ASSERT(one.category_name ==
                  (other.category == 0 ? "" : m_model.categories.at(other.category).name));
    }

    test::scene& m_in;
    principal m_who;
    count_cache& m_counts;
    oracle m_model;
};

TEST_P(goods_model, any_run_of_changes_leaves_what_an_oracle_expects) {
    count_cache small(4096); // forgets within a run
    int run = 0;
    EXPECT_TRUE(rc::check([&] {
        std::vector<company> both;
        for (int i = 0; i < 2; ++i) {
            ++run;
            const auto id = in->write([&](store::connection& with) {
                return create_company(with, "公司 " + std::to_string(run), false, g_now);
            });
            both.emplace_back(*in, in->log_in(in->user(id, "u" + std::to_string(run), 1)), small);
        }
        const auto steps = *rc::gen::inRange(0, 40);
        for (int i = 0; i < steps; ++i) {
            auto& one = both[static_cast<std::size_t>(*rc::gen::inRange(0, 2))];
            one.step();
            if (i % 5 == 0) one.compare();
        }
        for (auto& one : both)
            one.compare();
    }));
    sound();
}

} // namespace
} // namespace tavrok::domain
