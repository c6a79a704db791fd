#include "domain/trees.h"

#include "api/answers.h"
#include "api/modules/modules.h"
#include "domain/pages.h"

namespace tavrok::api {

namespace {

constexpr std::array<std::string_view, 2> g_category_pickers{"product", "stock_taking"};

/** How a tree is reached. */
struct tree_module {
    const store::tree* nodes;
    std::string_view module;
    std::string_view list_action;
    std::string_view page; /**< whose rights count */
    std::span<const std::string_view> picker_pages;
    std::vector<key> edit_keys;
    std::vector<key> other_edit_keys;
};

/** The recursion is no deeper than the tree may be. */
void write_nodes(json_writer& json, const std::vector<domain::tree_node>& nodes) {
    json.open_array();
    for (const auto& one : nodes) {
        json.open_object().number_text("id", one.id).text("name", one.name).name("child");
        write_nodes(json, one.child);
        json.close_object();
    }
    json.close_array();
}

void get_tree(context& request, const store::tree& nodes) {
    const auto tree = domain::list_tree(*request.db, *request.who, nodes);
    json_writer json(request.answer);
    write_nodes(json, tree);
}

void do_add(context& request, const store::tree& nodes) {
    const auto& form = request.form;
    const auto added = domain::add_node(*request.db, *request.who, nodes, std::string(form.text("name")),
                                        form.integer("parent"), request.now);
    write_added(request.answer, added);
}

void do_edit(context& request, const store::tree& nodes) {
    const auto& form = request.form;
    domain::rename_node(*request.db, *request.who, nodes, form.integer("id"), std::string(form.text("name")),
                        request.now);
    request.answer = "1";
}

void do_delete(context& request, const store::tree& nodes) {
    domain::remove_node(*request.db, *request.who, nodes, request.form.integer("id"), request.now);
    request.answer = "1";
}

std::function<void(context&)> on(const store::tree& nodes, void (*what)(context&, const store::tree&)) {
    return [&nodes, what](context& request) { what(request, nodes); };
}

void add_tree(registry& to, const tree_module& one) {
    const auto& nodes = *one.nodes;
    const auto only = [&](std::string_view right) {
        return access{.needs = access::who::rights, .any_of = {{one.page, right}}};
    };
    auto to_search = only("search");
    to_search.picker_pages = one.picker_pages;
    to.add({.module = one.module,
            .action = one.list_action,
            .method = "GET",
            .keys = {},
            .answer = form::array,
            .allowed = to_search,
            .work = read_work{on(nodes, get_tree)}});
    to.add({.module = one.module,
            .action = "do_add",
            .keys = {text_key("name", presence::always), id_key("parent", presence::always, 0)},
            .answer = form::result,
            .allowed = only("add_child"),
            .work = write_work{on(nodes, do_add)}});
    to.add({.module = one.module,
            .action = "do_edit",
            .keys = one.edit_keys,
            .other_keys = one.other_edit_keys,
            .answer = form::count,
            .allowed = only("edit"),
            .work = write_work{on(nodes, do_edit)}});
    to.add({.module = one.module,
            .action = "do_delete",
            .keys = {id_key("id")},
            .answer = form::count,
            .allowed = only("delete"),
            .work = write_work{on(nodes, do_delete)}});
}

} // namespace

void add_trees(registry& to, const services&) {
    const std::vector<key> name_first{text_key("name", presence::always), id_key("id")};
    const std::vector<key> id_first{id_key("id"), text_key("name", presence::always)};
    add_tree(to, {&store::g_departments, "wms_dept", "get_dept", "dept", domain::g_document_pages, name_first,
                  id_first});
    add_tree(to, {&store::g_categories, "wms_prodcate", "get_prodcate", "prodcate", g_category_pickers,
                  id_first, name_first});
}

} // namespace tavrok::api
