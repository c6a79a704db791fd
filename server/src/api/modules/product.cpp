#include <limits>

#include "api/answers.h"
#include "api/modules/modules.h"
#include "domain/money.h"
#include "domain/pages.h"
#include "domain/products.h"

namespace tavrok::api {

namespace {

void write_product(json_writer& json, const domain::product& one) {
    json.open_object().number_text("id", one.id).text("category_name", one.category_name);
    json.text("name", one.name).text("code", one.code).text("spec", one.spec);
    json.text("price", domain::format_money(one.price)).number_text("category", one.category);
    json.integer("datetime", one.datetime).close_object();
}

std::optional<std::int64_t> given_price(const fields& form) {
    if (!form.has("price")) return std::nullopt;
    return domain::parse_money("price", form.text("price"), domain::g_highest_price);
}

void get_page(context& request, domain::count_cache& counts) {
    const auto& form = request.form;
    domain::product_search search;
    if (form.has("category")) search.category = form.integer("category");
    search.name = form.text("name");
    search.code = form.text("code");
    search.spec = form.text("spec");
    const auto page = domain::list_products(*request.db, *request.who, search, page_wish_of(form), counts);
    write_page(request.answer, page, write_product);
}

void do_add(context& request) {
    const auto& form = request.form;
    domain::product one;
    one.name = form.text("name");
    one.code = form.text("code");
    one.spec = form.text("spec");
    one.category = form.integer("category");
    one.price = given_price(form).value_or(0);
    write_added(request.answer, domain::add_product(*request.db, *request.who, one, request.now));
}

void do_edit(context& request) {
    const auto& form = request.form;
    domain::product_change change;
    change.id = form.integer("id");
    change.name = given(form, "name");
    change.code = given(form, "code");
    change.spec = given(form, "spec");
    if (form.has("category")) change.category = form.integer("category");
    change.price = given_price(form);
    domain::edit_product(*request.db, *request.who, change, request.now);
    request.answer = "1";
}

void do_delete(context& request) {
    domain::remove_product(*request.db, *request.who, request.form.integer("id"), request.now);
    request.answer = "1";
}

/** The client always writes name and category, which keeps the text "&price=" in a name apart from a price.
 */
std::vector<key> edit_keys(presence name_and_category) {
    return {id_key("id"),     text_key("name", name_and_category),      text_key("code"),
            text_key("spec"), id_key("category", name_and_category, 0), text_key("price")};
}

access only(std::string_view right) {
    return {.needs = access::who::rights, .any_of = {{"product", right}}};
}

} // namespace

void add_product(registry& to, const services& with) {
    constexpr auto any = std::numeric_limits<std::int64_t>::max();
    auto& counts = with.counts;
    auto to_search = only("search");
    to_search.picker_pages = domain::g_inbound_pages;
    to.add({.module = "wms_product",
            .action = "get_page",
            // A criterion names no row: one that nobody has finds nothing.
            .keys = {integer_key("category", 0, any, presence::optional), text_key("name"), text_key("code"),
                     text_key("spec"), page_num_key(), page_size_key()},
            .answer = form::page,
            .allowed = to_search,
            .work = read_work{[&counts](context& request) { get_page(request, counts); }}});
    to.add({.module = "wms_product",
            .action = "do_add",
            .keys = {text_key("name", presence::always), text_key("code"), text_key("spec"),
                     id_key("category", presence::always, 0), text_key("price")},
            .answer = form::result,
            .allowed = only("add"),
            .work = write_work{do_add}});
    to.add({.module = "wms_product",
            .action = "do_edit",
            .keys = edit_keys(presence::always),
            .other_keys = edit_keys(presence::optional),
            .answer = form::count,
            .allowed = only("edit"),
            .work = write_work{do_edit}});
    to.add({.module = "wms_product",
            .action = "do_delete",
            .keys = {id_key("id")},
            .answer = form::count,
            .allowed = only("delete"),
            .work = write_work{do_delete}});
}

} // namespace tavrok::api
