#include "api/answers.h"
#include "api/modules/modules.h"
#include "domain/partners.h"

namespace tavrok::api {

namespace {

constexpr std::string_view supplier = "company_supplier";
constexpr std::string_view client = "company_client";
constexpr std::string_view other = "company_other";

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
    write_page(request.answer, page, write_partner);
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
    write_added(request.answer, added);
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

/** `required`: what the client's dialog does not let go out empty, and so always writes. */
std::vector<key> with_details(key first, presence required) {
    return {first,
            text_key("name", required),
            text_key("phone", required),
            text_key("linkman"),
            text_key("mobile"),
            text_key("fax"),
            text_key("address", required),
            text_key("account"),
            text_key("bank"),
            text_key("remark")};
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
                  text_key("account"), text_key("remark"), page_num_key(), page_size_key()},
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
            .keys = with_details(integer_key("type", 1, 3), presence::always),
            .answer = form::result,
            .allowed = {.needs = access::who::rights,
                        .by_value =
                            pages_by_value{"type", "add", {{1, {supplier}}, {2, {client}}, {3, {other}}}}},
            .work = write_work{do_add}});
    to.add({.module = "wms_company",
            .action = "do_edit",
            .keys = with_details(id_key("id"), presence::always),
            .other_keys = with_details(id_key("id"), presence::optional),
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
