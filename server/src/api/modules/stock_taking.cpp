#include <array>
#include <limits>

#include "api/answers.h"
#include "api/modules/document_forms.h"
#include "api/modules/modules.h"
#include "domain/documents.h"
#include "domain/money.h"
#include "domain/products.h"

namespace tavrok::api {

namespace {

constexpr auto which = domain::document_module::stocktaking;
constexpr std::int64_t the_kind = 1; // there is one
constexpr auto any = std::numeric_limits<std::int64_t>::max();
constexpr std::array<std::string_view, 1> pages{"stock_taking"};
constexpr std::array<std::string_view, 2> modules{"wms_stock_taking", "wms_stock_taking_detail"};

void write_document(json_writer& json, const domain::document_record& one) {
    json.open_object().number_text("id", one.id).text("sn", one.sn);
    write_people(json, one);
    json.number_text("profitloss_amount", one.difference);
    json.text("profitloss_total", domain::format_money(one.total)).text("remark", one.remark);
    json.integer("datetime", one.added_at).close_object();
}

void write_line(json_writer& json, const domain::document_line_record& one) {
    json.open_object().number_text("id", one.id).number_text("stock_id", one.stock);
    json.number_text("main_id", one.document).number_text("product", one.product);
    json.text("product_name", one.product_name).text("code", one.code).text("spec", one.spec);
    json.text("price", domain::format_money(one.price)).number_text("sys_amount", one.sys_amount);
    json.number_text("real_amount", one.sys_amount + one.amount);
    json.number_text("profitloss_amount", one.amount);
    json.text("profitloss_total", domain::format_money(one.total));
    json.number_text("warehouse", one.warehouse).text("warehouse_name", one.warehouse_name);
    json.text("place", one.place).text("remark", one.remark).close_object();
}

void get_page(context& request, domain::count_cache& counts) {
    auto search = search_of(request.form);
    search.type = the_kind;
    write_page(
        request.answer,
        domain::list_documents(*request.db, *request.who, which, search, page_wish_of(request.form), counts),
        write_document);
}

void do_add(context& request) {
    auto header = header_of(request.form);
    header.type = the_kind;
    write_added(request.answer, domain::open_draft(*request.db, *request.who, which, header, request.now));
}

domain::taking_line taking_line_of(const fields& form) {
    domain::taking_line line;
    line.what.product = form.integer("product");
    line.what.price = price_of(form);
    line.what.amount = form.integer("profitloss_amount");
    line.what.total = signed_total_of(form, "profitloss_total");
    line.what.warehouse = form.integer("warehouse");
    line.what.place = form.text("place");
    line.what.remark = form.text("remark");
    read_row(form, line.what);
    line.sys_amount = form.integer("sys_amount");
    line.real_amount = form.integer("real_amount");
    return line;
}

void add_line(context& request) {
    answer_line(request, which, [&] {
        domain::add_taking_line(*request.db, *request.who, request.form.integer("main_id"),
                                taking_line_of(request.form));
        header_arrived(request, "wms_stock_taking");
    });
}

void update_profitloss(context& request, const domain::session_limits& limits) {
    const auto& form = request.form;
    const auto told = readable([&] {
        return domain::document_sums{signed_total_of(form, "profitloss_total"),
                                     form.integer("profitloss_amount")};
    });
    answer_closing(
        request,
        domain::close_taking(*request.db, *request.who, form.integer("id"), told, request.now, limits),
        modules);
}

std::vector<key> detail_keys() {
    const auto counted = [](std::string_view name) { return integer_key(name, 0, domain::g_highest_amount); };
    return {id_key("main_id"),
            id_key("product"),
            text_key("price", presence::always),
            counted("sys_amount"),
            counted("real_amount"),
            integer_key("profitloss_amount", -domain::g_highest_amount, domain::g_highest_amount),
            text_key("profitloss_total", presence::always),
            text_key("remark", presence::always),
            id_key("warehouse"),
            id_key("stock_id"),
            text_key("place", presence::always),
            token_key("locked_id")};
}

std::vector<key> closing_keys() {
    return {id_key("id"), integer_key("profitloss_amount", -any, any),
            text_key("profitloss_total", presence::always)};
}

void add_reading(registry& to, domain::count_cache& counts) {
    to.add({.module = "wms_stock_taking",
            .action = "get_page",
            .keys = {date_key("date_start"), date_key("date_end"), text_key("operater"),
                     id_criterion_key("writer"), text_key("sn"), text_key("remark"), page_num_key(),
                     page_size_key()},
            .answer = form::page,
            .allowed = on_any_page(pages, "search"),
            .work = read_work{[&counts](context& request) { get_page(request, counts); }}});
    to.add({.module = "wms_stock_taking",
            .action = "get_detail",
            .keys = {id_key("id")},
            .answer = form::array,
            .allowed = on_any_page(pages, "view"),
            .work = read_work{[](context& request) { answer_lines(request, which, write_line); }}});
}

} // namespace

void add_stock_taking(registry& to, const services& with) {
    const auto& limits = with.options.sessions;
    const auto added = on_any_page(pages, "add");
    add_reading(to, with.counts);
    to.add({.module = "wms_stock_taking",
            .action = "do_add",
            .keys = {text_key("operater"), text_key("writer", presence::always), text_key("remark")},
            .answer = form::result,
            .allowed = added,
            .work = write_work{do_add}});
    to.add({.module = "wms_stock_taking_detail",
            .action = "do_add",
            .keys = detail_keys(),
            .other_keys = first_alone(detail_keys()),
            .answer = form::count,
            .allowed = added,
            .work = write_work{add_line}});
    to.add({.module = "wms_stock_taking",
            .action = "update_profitloss",
            .keys = closing_keys(),
            .other_keys = first_alone(closing_keys()),
            .answer = form::count,
            .allowed = added,
            .work = write_work{[&limits](context& request) { update_profitloss(request, limits); }},
            .once = true});
    to.add({.module = "wms_stock_taking",
            .action = "do_delete",
            .keys = {id_key("id")},
            .answer = form::count,
            .allowed = on_any_page(pages, "delete"),
            .work = write_work{[&limits](context& request) { answer_removal(request, which, limits); }},
            .once = true});
}

} // namespace tavrok::api
