#include <limits>

#include "api/json_writer.h"
#include "api/modules/modules.h"
#include "domain/partners.h"

namespace tavrok::api {

namespace {

constexpr std::int64_t any_number = std::numeric_limits<std::int64_t>::max();
constexpr std::string_view supplier = "company_supplier";
constexpr std::string_view client = "company_client";
constexpr std::string_view other = "company_other";

std::optional<std::string> given(const fields& form, std::string_view key) {
    return form.has(key) ? std::optional(std::string(form.text(key))) : std::nullopt;
}

void write_partner(json_writer& json, const domain::partner& one) {
    json.open_object().number_text("id", one.id).text("name", one.name).text("phone", one.phone);
    json.text("linkman", one.linkman).text("mobile", one.mobile).text("fax", one.fax);
    json.text("address", one.address).text("bank", one.bank).text("account", one.account);
    json.text("remark", one.remark).number_text("type", one.type).integer("datetime", one.datetime);
    json.close_object();
}

void get_page(context& request, domain::count_cache& counts) {
    const auto& form = request.form;
    domain::partner_search search;
    search.type = domain::partner_type_of(form.integer("type"));
    search.name = form.text("name");
    search.address = form.text("address");
    search.bank = form.text("bank");
    search.account = form.text("account");
    search.remark = form.text("remark");
    const auto page = domain::list_partners(*request.db, *request.who, search, form.integer("page_num"),
                                            form.integer("page_size"), counts);
    request.answer.reserve(80 + page.list.size() * 320);
    json_writer json(request.answer);
    json.open_object().name("list").open_array();
    for (const auto& one : page.list)
        write_partner(json, one);
    json.close_array().integer("total", page.total).integer("page_count", page.page_count);
    json.integer("page_num", page.page_num).close_object();
}

void do_add(context& request) {
    const auto& form = request.form;
    domain::partner one;
    one.type = static_cast<int>(form.integer("type"));
    one.name = form.text("name");
    one.phone = form.text("phone");
    one.linkman = form.text("linkman");
    one.mobile = form.text("mobile");
    one.fax = form.text("fax");
    one.address = form.text("address");
    one.account = form.text("account");
    one.bank = form.text("bank");
    one.remark = form.text("remark");
    const auto added = domain::add_partner(*request.db, *request.who, one, request.now);
    json_writer(request.answer)
        .open_object()
        .integer("http_state", 1)
        .number_text("insert_id", added.id)
        .integer("datetime", added.datetime)
        .close_object();
}

void do_edit(context& request) {
    const auto& form = request.form;
    domain::partner_change change;
    change.id = form.integer("id");
    change.name = given(form, "name");
    change.phone = given(form, "phone");
    change.linkman = given(form, "linkman");
    change.mobile = given(form, "mobile");
    change.fax = given(form, "fax");
    change.address = given(form, "address");
    change.account = given(form, "account");
    change.bank = given(form, "bank");
    change.remark = given(form, "remark");
    domain::edit_partner(*request.db, *request.who, change, request.now);
    request.answer = "1";
}

void do_delete(context& request) {
    domain::remove_partner(*request.db, *request.who, request.form.integer("id"), request.now);
    request.answer = "1";
}

std::vector<key> with_details(key first) {
    return {
        first,           text_key("name"),    text_key("phone"),   text_key("linkman"), text_key("mobile"),
        text_key("fax"), text_key("address"), text_key("account"), text_key("bank"),    text_key("remark")};
}

/** The kind of the named record decides which of the three pages counts. */
access on_any_kind(std::string_view right) {
    return {.needs = access::who::rights, .any_of = {{supplier, right}, {client, right}, {other, right}}};
}

} // namespace

void add_company(registry& to, const services& with) {
    auto& counts = with.counts;
    to.add(
        {.module = "wms_company",
         .action = "get_page",
         .keys = {integer_key("type", 1, 4), text_key("name"), text_key("address"), text_key("bank"),
                  text_key("account"), text_key("remark"), integer_key("page_num", -any_number, any_number),
                  integer_key("page_size", 1, 200)},
         .answer = form::page,
         .allowed = {.needs = access::who::rights,
                     .by_value =
                         pages_by_value{
                             "type",
                             "search",
                             {{1, {supplier}}, {2, {client}}, {3, {other}}, {4, {supplier, client, other}}}},
                     .picker_pages = domain::g_partner_picker_pages},
         .work = read_work{[&counts](context& request) { get_page(request, counts); }}});
    to.add({.module = "wms_company",
            .action = "do_add",
            .keys = with_details(integer_key("type", 1, 3)),
            .answer = form::result,
            .allowed = {.needs = access::who::rights,
                        .by_value =
                            pages_by_value{"type", "add", {{1, {supplier}}, {2, {client}}, {3, {other}}}}},
            .work = write_work{do_add}});
    to.add({.module = "wms_company",
            .action = "do_edit",
            .keys = with_details(id_key("id")),
            .answer = form::count,
            .allowed = on_any_kind("edit"),
            .work = write_work{do_edit}});
    to.add({.module = "wms_company",
            .action = "do_delete",
            .keys = {id_key("id")},
            .answer = form::count,
            .allowed = on_any_kind("delete"),
            .work = write_work{do_delete}});
}

} // namespace tavrok::api
