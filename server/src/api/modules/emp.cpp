#include "api/answers.h"
#include "api/modules/modules.h"
#include "domain/employees.h"

namespace tavrok::api {

namespace {

constexpr std::string_view g_page = "emp";

void write_employee(json_writer& json, const domain::employee& one) {
    json.open_object().number_text("id", one.id).text("name", one.name).text("idnum", one.idnum);
    json.text("jobnum", one.jobnum).text("mobile", one.mobile).text("address", one.address);
    json.text("remark", one.remark).number_text("isdefault", one.isdefault);
    json.number_text("dimission", one.dimission).integer("datetime", one.added_at).close_object();
}

void get_page(context& request, domain::count_cache& counts) {
    const auto& form = request.form;
    domain::employee_search search;
    search.name = form.text("name");
    search.idnum = form.text("idnum");
    search.jobnum = form.text("jobnum");
    search.mobile = form.text("mobile");
    write_page(request.answer,
               domain::list_employees(*request.db, *request.who, search, page_wish_of(form), counts),
               write_employee);
}

domain::employee employee_of(const fields& form) {
    domain::employee one;
    one.id = form.integer("id");
    one.name = form.text("name");
    one.jobnum = form.text("jobnum");
    one.mobile = form.text("mobile");
    one.address = form.text("address");
    one.idnum = form.text("idnum");
    one.remark = form.text("remark");
    one.isdefault = form.integer("isdefault");
    one.dimission = form.integer("dimission");
    return one;
}

void do_add(context& request) {
    write_added(request.answer,
                domain::add_employee(*request.db, *request.who, employee_of(request.form), request.now));
}

void do_edit(context& request) {
    domain::edit_employee(*request.db, *request.who, employee_of(request.form), request.now);
    request.answer = "1";
}

void do_delete(context& request) {
    domain::remove_employee(*request.db, *request.who, request.form.integer("id"), request.now);
    request.answer = "1";
}

void get_option(context& request) {
    json_writer json(request.answer);
    json.open_array();
    for (const auto& one : domain::list_employee_options(*request.db, *request.who)) {
        json.open_object().number_text("id", one.id).text("name", one.name);
        json.text("jobnum", one.jobnum).close_object();
    }
    json.close_array();
}

std::vector<key> details() {
    constexpr auto always = presence::always;
    return {text_key("name", always),       text_key("jobnum", always),    text_key("mobile", always),
            text_key("address", always),    text_key("idnum", always),     text_key("remark", always),
            integer_key("isdefault", 1, 2), integer_key("dimission", 1, 2)};
}

std::vector<key> id_and_details() {
    auto keys = details();
    keys.insert(keys.begin(), id_key("id"));
    return keys;
}

access with_right(std::string_view right) {
    return {.needs = access::who::rights, .any_of = {{g_page, right}}};
}

access as_picker() {
    return {.needs = access::who::rights,
            .any_of = {{g_page, "search"}},
            .picker_pages = domain::g_employee_picker_pages};
}

/** Whether a mark is taken; the key that carries it has its name. */
endpoint check_of(std::string_view action, std::string_view name, domain::employee_mark mark) {
    const auto check = [name, mark](context& request) {
        const auto& form = request.form;
        const bool taken =
            domain::is_mark_taken(*request.db, *request.who, mark, form.text(name), form.integer("id"));
        request.answer = taken ? "1" : "0";
    };
    return {.module = "wms_emp",
            .action = action,
            .keys = {text_key(name, presence::always), id_key("id", presence::optional)},
            .answer = form::count,
            .allowed = {.needs = access::who::rights, .any_of = {{g_page, "add"}, {g_page, "edit"}}},
            .work = read_work{check}};
}

} // namespace

void add_emp(registry& to, const services& with) {
    auto& counts = with.counts;
    to.add({.module = "wms_emp",
            .action = "get_page",
            .keys = {text_key("name"), text_key("idnum"), text_key("jobnum"), text_key("mobile"),
                     page_num_key(), page_size_key()},
            .answer = form::page,
            .allowed = as_picker(),
            .work = read_work{[&counts](context& request) { get_page(request, counts); }}});
    to.add({.module = "wms_emp",
            .action = "do_add",
            .keys = details(),
            .answer = form::result,
            .allowed = with_right("add"),
            .work = write_work{do_add}});
    to.add({.module = "wms_emp",
            .action = "do_edit",
            .keys = id_and_details(),
            .answer = form::count,
            .allowed = with_right("edit"),
            .work = write_work{do_edit}});
    to.add({.module = "wms_emp",
            .action = "do_delete",
            .keys = {id_key("id")},
            .answer = form::count,
            .allowed = with_right("delete"),
            .work = write_work{do_delete}});
    to.add(check_of("check_mobile", "mobile", domain::employee_mark::mobile));
    to.add(check_of("check_jobnum_exist", "jobnum", domain::employee_mark::jobnum));
    to.add(check_of("check_idnum_exist", "idnum", domain::employee_mark::idnum));
    to.add({.module = "wms_emp",
            .action = "get_option",
            .method = "GET",
            .keys = {},
            .answer = form::array,
            .allowed = as_picker(),
            .work = read_work{get_option}});
}

} // namespace tavrok::api
