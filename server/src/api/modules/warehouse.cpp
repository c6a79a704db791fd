#include "api/answers.h"
#include "api/modules/modules.h"
#include "domain/warehouses.h"

namespace tavrok::api {

namespace {

constexpr std::string_view g_page = "warehouse";

void write_warehouse(json_writer& json, const domain::warehouse& one) {
    json.open_object().number_text("id", one.id).text("name", one.name).text("phone", one.phone);
    json.number_text("isdefault", one.isdefault).text("address", one.address);
    json.text("keeper_name", one.keeper_name).text("mobile", one.mobile).text("remark", one.remark);
    json.number_text("keeper", one.keeper).integer("datetime", one.added_at).close_object();
}

void get_page(context& request, domain::count_cache& counts) {
    const auto& form = request.form;
    domain::warehouse_search search;
    search.name = form.text("name");
    search.phone = form.text("phone");
    search.keeper = form.text("keeper");
    search.mobile = form.text("mobile");
    write_page(request.answer,
               domain::list_warehouses(*request.db, *request.who, search, page_wish_of(form), counts),
               write_warehouse);
}

domain::warehouse warehouse_of(const fields& form) {
    domain::warehouse one;
    one.id = form.integer("id");
    one.name = form.text("name");
    one.phone = form.text("phone");
    one.address = form.text("address");
    one.mobile = form.text("mobile");
    one.remark = form.text("remark");
    one.isdefault = form.integer("isdefault");
    return one;
}

void do_add(context& request) {
    const auto& form = request.form;
    write_added(request.answer, domain::add_warehouse(*request.db, *request.who, warehouse_of(form),
                                                      form.text("keeper"), request.now));
}

void do_edit(context& request) {
    const auto& form = request.form;
    domain::edit_warehouse(*request.db, *request.who, warehouse_of(form), form.text("keeper"), request.now);
    request.answer = "1";
}

void do_delete(context& request) {
    domain::remove_warehouse(*request.db, *request.who, request.form.integer("id"), request.now);
    request.answer = "1";
}

void get_option(context& request) {
    json_writer json(request.answer);
    json.open_array();
    for (const auto& one : domain::list_warehouse_options(*request.db, *request.who)) {
        json.open_object().number_text("id", one.id).text("name", one.name);
        json.number_text("isdefault", one.isdefault).close_object();
    }
    json.close_array();
}

void get_option_with_stat(context& request) {
    json_writer json(request.answer);
    json.open_array();
    for (const auto& one : domain::list_warehouse_stock(*request.db, *request.who)) {
        json.open_object().number_text("id", one.id).text("name", one.name);
        json.number_text("sum_amount", one.on_hand).close_object();
    }
    json.close_array();
}

/** `others`: whether the keys that may be empty are written all the same. */
std::vector<key> details(presence others) {
    return {
        text_key("name", presence::always), text_key("phone", others),  text_key("keeper", presence::always),
        text_key("address", others),        text_key("mobile", others), integer_key("isdefault", 0, 1),
        text_key("remark", others)};
}

std::vector<key> id_and_details() {
    auto keys = details(presence::always);
    keys.insert(keys.begin(), id_key("id"));
    return keys;
}

access with_right(std::string_view right) {
    return {.needs = access::who::rights, .any_of = {{g_page, right}}};
}

} // namespace

void add_warehouse(registry& to, const services& with) {
    auto& counts = with.counts;
    auto for_boxes = with_right("search");
    for_boxes.picker_pages = domain::g_warehouse_box_pages;
    const access for_stock_boxes{.needs = access::who::rights,
                                 .picker_pages = domain::g_warehouse_stock_pages};
    to.add({.module = "wms_warehouse",
            .action = "get_page",
            .keys = {text_key("name"), text_key("phone"), text_key("keeper"), text_key("mobile"),
                     page_num_key(), page_size_key()},
            .answer = form::page,
            .allowed = with_right("search"),
            .work = read_work{[&counts](context& request) { get_page(request, counts); }}});
    to.add({.module = "wms_warehouse",
            .action = "do_add",
            .keys = details(presence::optional),
            .answer = form::result,
            .allowed = with_right("add"),
            .work = write_work{do_add}});
    to.add({.module = "wms_warehouse",
            .action = "do_edit",
            .keys = id_and_details(),
            .answer = form::count,
            .allowed = with_right("edit"),
            .work = write_work{do_edit}});
    to.add({.module = "wms_warehouse",
            .action = "do_delete",
            .keys = {id_key("id")},
            .answer = form::count,
            .allowed = with_right("delete"),
            .work = write_work{do_delete}});
    to.add({.module = "wms_warehouse",
            .action = "get_option",
            .method = "GET",
            .keys = {},
            .answer = form::array,
            .allowed = for_boxes,
            .work = read_work{get_option}});
    to.add({.module = "wms_warehouse",
            .action = "get_option_with_stat",
            .method = "GET",
            .keys = {},
            .answer = form::array,
            .allowed = for_stock_boxes,
            .work = read_work{get_option_with_stat}});
}

} // namespace tavrok::api
