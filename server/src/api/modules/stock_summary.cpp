#include "domain/stock_summary.h"

#include "api/answers.h"
#include "api/modules/modules.h"
#include "domain/money.h"

namespace tavrok::api {

namespace {

void write_summary(json_writer& json, const domain::summary_item& one) {
    json.open_object().text("product_name", one.product_name).number_text("product", one.product);
    json.text("category_name", one.category_name).number_text("category", one.category);
    json.text("code", one.code).text("spec", one.spec);
    json.text("avg_price", domain::format_money(one.avg_price)).number_text("sum_amount", one.sum_amount);
    json.text("sum_total", domain::format_money_sum(one.sum_total)).close_object();
}

void get_page(context& request, domain::count_cache& counts) {
    const auto& form = request.form;
    domain::summary_search search;
    search.date_start = given_number(form, "date_start");
    search.date_end = given_number(form, "date_end");
    search.product_name = form.text("product_name");
    search.code = form.text("code");
    search.spec = form.text("spec");
    write_page(request.answer,
               domain::list_stock_summary(*request.db, *request.who, search, page_wish_of(form), counts),
               write_summary);
}

} // namespace

void add_stock_summary(registry& to, const services& with) {
    auto& counts = with.counts;
    to.add({.module = "wms_stock_summary",
            .action = "get_page",
            .keys = {date_key("date_start"), date_key("date_end"), text_key("product_name"), text_key("code"),
                     text_key("spec"), page_num_key(), page_size_key()},
            .answer = form::page,
            .allowed = {.needs = access::who::rights, .any_of = {{"stock_summary", "search"}}},
            .work = read_work{[&counts](context& request) { get_page(request, counts); }}});
}

} // namespace tavrok::api
