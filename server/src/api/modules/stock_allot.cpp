#include <array>

#include "api/answers.h"
#include "api/modules/document_forms.h"
#include "api/modules/modules.h"
#include "domain/documents.h"
#include "domain/money.h"
#include "domain/products.h"

namespace tavrok::api {

namespace {

constexpr auto which = domain::document_module::transfer;
constexpr std::int64_t the_kind = 1; // there is one
constexpr std::array<std::string_view, 1> pages{"stock_allot"};

void write_document(json_writer& json, const domain::document_record& one) {
    json.open_object().number_text("id", one.id).text("sn", one.sn);
    json.number_text("warehouse_out", one.warehouse_out.value_or(0));
    json.text("warehouse_out_name", one.warehouse_out_name);
    json.number_text("warehouse_in", one.warehouse_in.value_or(0));
    json.text("warehouse_in_name", one.warehouse_in_name);
    write_people(json, one);
    json.text("remark", one.remark).integer("datetime", one.added_at).close_object();
}

void write_line(json_writer& json, const domain::document_line_record& one) {
    json.open_object().number_text("id", one.id).number_text("main_id", one.document);
    json.number_text("product", one.product).text("product_name", one.product_name);
    json.text("code", one.code).text("spec", one.spec).text("place", one.place);
    json.text("price", domain::format_money(one.price)).number_text("amount", one.amount);
    json.text("remark", one.remark).number_text("stock_id", one.stock).close_object();
}

void get_page(context& request, domain::count_cache& counts) {
    auto search = search_of(request.form);
    search.type = the_kind;
    search.warehouse_in = given_number(request.form, "warehouse_in");
    search.warehouse_out = given_number(request.form, "warehouse_out");
    write_page(
        request.answer,
        domain::list_documents(*request.db, *request.who, which, search, page_wish_of(request.form), counts),
        write_document);
}

void do_add(context& request) {
    auto header = header_of(request.form);
    header.type = the_kind;
    header.warehouse_out = given_number(request.form, "warehouse_out");
    header.warehouse_in = given_number(request.form, "warehouse_in");
    write_added(request.answer, domain::open_draft(*request.db, *request.who, which, header, request.now));
}

/** The key `warehouse` stands empty: the header says from where and to where. */
void add_line(context& request, const domain::session_limits& limits) {
    auto line = line_of(request.form);
    read_row(request.form, line);
    domain::add_transfer_line(*request.db, *request.who, request.form.integer("main_id"), line, request.now,
                              limits);
    header_arrived(request, "wms_stock_allot");
    request.answer = "1";
}

void add_reading(registry& to, domain::count_cache& counts) {
    to.add({.module = "wms_stock_allot",
            .action = "get_page",
            .keys = {date_key("date_start"), date_key("date_end"), text_key("operater"),
                     id_criterion_key("writer"), text_key("sn"), id_criterion_key("warehouse_in"),
                     id_criterion_key("warehouse_out"), text_key("remark"), page_num_key(), page_size_key()},
            .answer = form::page,
            .allowed = on_any_page(pages, "search"),
            .work = read_work{[&counts](context& request) { get_page(request, counts); }}});
    to.add({.module = "wms_stock_allot",
            .action = "get_detail",
            .keys = {id_key("id")},
            .answer = form::array,
            .allowed = on_any_page(pages, "view"),
            .work = read_work{[](context& request) { answer_lines(request, which, write_line); }}});
}

} // namespace

void add_stock_allot(registry& to, const services& with) {
    const auto& limits = with.options.sessions;
    const auto added = on_any_page(pages, "add");
    add_reading(to, with.counts);
    to.add({.module = "wms_stock_allot",
            .action = "do_add",
            .keys = {id_key("warehouse_out", presence::optional), id_key("warehouse_in", presence::optional),
                     text_key("operater"), text_key("writer"), text_key("remark")},
            .answer = form::result,
            .allowed = added,
            .work = write_work{do_add}});
    to.add({.module = "wms_stock_allot_detail",
            .action = "do_add",
            .keys = {id_key("main_id"), id_key("product"), text_key("price", presence::always),
                     integer_key("amount", 0, domain::g_highest_amount), text_key("total", presence::always),
                     text_key("remark", presence::always), id_key("stock_id"),
                     text_key("place", presence::always), text_key("warehouse", presence::always),
                     token_key("locked_id")},
            .answer = form::count,
            .allowed = added,
            .work = write_work{[&limits](context& request) { add_line(request, limits); }}});
    to.add({.module = "wms_stock_allot",
            .action = "do_delete",
            .keys = {id_key("id")},
            .answer = form::count,
            .allowed = on_any_page(pages, "delete"),
            .work = write_work{[&limits](context& request) { answer_removal(request, which, limits); }},
            .once = true});
}

} // namespace tavrok::api
