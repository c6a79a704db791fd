#pragma once

#include <map>
#include <memory>
#include <set>
#include <string>
#include <vector>

#include "domain/check.h"
#include "domain/products.h"
#include "domain/refused.h"
#include "domain/scene.h"
#include "domain/trees.h"

namespace tavrok::test {

inline const store::tree& g_departments = store::g_departments;
inline const store::tree& g_categories = store::g_categories;

/** A scene whose administrator keeps trees and products, and a second company beside it. */
class goods_test : public on_engine {
protected:
    void SetUp() override {
        on_engine::SetUp();
        if (IsSkipped()) return;
        in = std::make_unique<scene>(GetParam());
        boss = in->log_in(in->boss);
    }
    domain::principal other_company() {
        const auto id = in->write(
            [](store::connection& with) { return domain::create_company(with, "二号", false, g_now); });
        return in->log_in(in->user(id, "chief", 1));
    }

    std::int64_t add(const store::tree& to, const std::string& name, std::int64_t parent = 0) {
        return add(boss, to, name, parent);
    }
    std::int64_t add(const domain::principal& who, const store::tree& to, const std::string& name,
                     std::int64_t parent) {
        return in->write(
            [&](store::connection& with) { return domain::add_node(with, who, to, name, parent, g_now).id; });
    }
    void rename(const domain::principal& who, const store::tree& of, std::int64_t id,
                const std::string& name) {
        in->write([&](store::connection& with) { domain::rename_node(with, who, of, id, name, g_now); });
    }
    void remove(const domain::principal& who, const store::tree& from, std::int64_t id) {
        in->write([&](store::connection& with) { domain::remove_node(with, who, from, id, g_now); });
    }
    /** The tree as "名(下级(...) ...)", in its order. */
    std::string shape(const domain::principal& who, const store::tree& of) {
        return shape(in->read([&](store::connection& with) { return domain::list_tree(with, who, of); }));
    }
    static std::string shape(const std::vector<domain::tree_node>& nodes) {
        std::string text;
        for (const auto& one : nodes) {
            if (!text.empty()) text += ' ';
            text += one.name;
            if (!one.child.empty()) text += '(' + shape(one.child) + ')';
        }
        return text;
    }

    domain::added add(const domain::principal& who, const domain::product& what, std::int64_t now = g_now) {
        return in->write([&](store::connection& with) { return domain::add_product(with, who, what, now); });
    }
    std::int64_t product_in(std::int64_t category, const std::string& name = "货") {
        return add(boss, {.name = name, .category = category}).id;
    }
    void edit(const domain::principal& who, const domain::product_change& change) {
        in->write([&](store::connection& with) { domain::edit_product(with, who, change, g_now); });
    }
    void remove_product(const domain::principal& who, std::int64_t id) {
        in->write([&](store::connection& with) { domain::remove_product(with, who, id, g_now); });
    }
    domain::product_page list(const domain::principal& who, const domain::product_search& search = {},
                              domain::page_wish wish = {1, 20}) {
        return in->read(
            [&](store::connection& with) { return domain::list_products(with, who, search, wish, counts); });
    }

    void sound() {
        for (const auto& one : in->read([](store::connection& with) { return domain::check(with); }))
            ADD_FAILURE() << one.rule << ": " << one.text;
    }
    std::int64_t audited(const std::string& what) {
        return in->number("SELECT count(*) FROM audit WHERE what = '" + what + "'");
    }
    std::int64_t version() {
        return in->number("SELECT data_version FROM company WHERE id = " + std::to_string(in->company));
    }

    std::unique_ptr<scene> in;
    domain::principal boss;
    domain::count_cache counts;
};

} // namespace tavrok::test
