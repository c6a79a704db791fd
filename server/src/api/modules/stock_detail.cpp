#include <cmath>
#include <cstdlib>

#include "api/answers.h"
#include "api/modules/document_forms.h"
#include "api/modules/modules.h"
#include "domain/claims.h"
#include "domain/money.h"
#include "domain/pages.h"
#include "domain/products.h"
#include "domain/refused.h"
#include "domain/repeat.h"
#include "domain/stock.h"

namespace tavrok::api {

namespace {

constexpr std::size_t total_limit = 40;
constexpr auto inbound = domain::document_module::inbound;

void write_stock(json_writer& json, const domain::stock_item& one) {
    json.open_object().number_text("id", one.id).number_text("warehouse", one.warehouse);
    json.text("warehouse_name", one.warehouse_name).text("place", one.place);
    json.number_text("product", one.product).text("product_name", one.product_name);
    json.number_text("category", one.category).text("category_name", one.category_name);
    json.text("code", one.code).text("spec", one.spec).text("price", domain::format_money(one.price));
    json.number_text("amount", one.amount).text("total", domain::format_money(one.total));
    json.text("remark", one.remark).integer("datetime", one.datetime).close_object();
}

void get_page(context& request, domain::count_cache& counts) {
    const auto& form = request.form;
    domain::stock_search search;
    search.date_start = given_number(form, "date_start");
    search.date_end = given_number(form, "date_end");
    search.warehouse = given_number(form, "warehouse");
    search.product_name = form.text("product_name");
    search.spec = form.text("spec");
    search.code = form.text("code");
    search.place = form.text("place");
    search.remark = form.text("remark");
    write_page(request.answer,
               domain::list_stock(*request.db, *request.who, search, page_wish_of(form), counts),
               write_stock);
}

void do_add(context& request) {
    *request.refusal = domain::add_or_spoil(
        *request.db, *request.who, inbound,
        [&] { return domain::newest_draft(*request.db, *request.who, inbound); },
        [&] {
            domain::announce_stock(*request.db, *request.who, line_of(request.form));
            // It follows its line's answer: the same line again is another one.
            domain::forget(*request.db, *request.who, "wms_instore_detail/do_add");
        });
    request.answer = request.refusal->empty() ? "1" : "0";
}

/** The announcement does not say which save it belongs to: that of the line that it was sent after, or of the
 * draft that lacks this line. */
std::string line_announced(context& request) {
    const auto line =
        readable([&] { return domain::line_announced(*request.db, *request.who, line_of(request.form)); });
    if (line.value_or(0) != 0) return std::to_string(*line);
    return "draft " + std::to_string(domain::newest_draft(*request.db, *request.who, inbound));
}

/** Which screens claim stock for what: whoever may add there may claim. */
void demand_use(const domain::principal& who, domain::claim_use use) {
    const auto may_add = [&who](std::string_view page) { return who.has(page, "add"); };
    const auto& outbound = domain::g_outbound_pages;
    const bool allowed = use == domain::claim_use::transfer ? may_add("stock_allot")
                         : use == domain::claim_use::stocktaking
                             ? may_add("stock_taking")
                             : std::any_of(outbound.begin(), outbound.end(), may_add);
    if (!allowed) throw domain::refused("no right to claim stock for this");
}

/** The value that the client sends along, in six digits or with an exponent: nothing hangs on it, but it must
 * be a number. */
void check_total(std::string_view text) {
    if (text.size() > total_limit) throw domain::refused("the total is no number");
    const std::string copy(text);
    char* end = nullptr;
    const auto number = std::strtod(copy.c_str(), &end);
    if (copy.empty() || *end != '\0' || !std::isfinite(number) || number < 0) {
        throw domain::refused("the total is no number");
    }
}

void lock_stock(context& request, const domain::session_limits& limits) {
    const auto& form = request.form;
    domain::claim_wish wish;
    wish.use = static_cast<domain::claim_use>(form.integer("lock_type"));
    wish.stock = form.integer("id");
    wish.amount = form.integer("amount");
    demand_use(*request.who, wish.use);
    if (form.has("total")) check_total(form.text("total"));
    request.answer = domain::take_claim(*request.db, *request.who, wish, request.now, limits);
}

void unlock_stock(context& request) {
    const auto& form = request.form;
    demand_use(*request.who, static_cast<domain::claim_use>(form.integer("lock_type")));
    domain::give_back_claim(*request.db, *request.who, std::string(form.text("locked_id")), request.now);
    request.answer = "1";
}

/** The pages whose screens claim stock; the use decides which of them counts. */
access to_claim() {
    constexpr auto pages =
        domain::joined(domain::g_outbound_pages, domain::page_list<2>{"stock_allot", "stock_taking"});
    return on_any_page(pages, "add");
}

std::vector<key> page_keys() {
    return {date_key("date_start"),   date_key("date_end"), id_criterion_key("warehouse"),
            text_key("product_name"), text_key("spec"),     text_key("code"),
            text_key("place"),        text_key("remark"),   page_num_key(),
            page_size_key()};
}

} // namespace

void add_stock_detail(registry& to, const services& with) {
    auto& counts = with.counts;
    const auto& limits = with.options.sessions;
    const auto use = integer_key("lock_type", 1, 3);
    to.add({.module = "wms_stock_detail",
            .action = "get_page",
            .keys = page_keys(),
            .answer = form::page,
            .allowed = {.needs = access::who::rights,
                        .any_of = {{"stock_detail", "search"}},
                        .picker_pages = domain::g_stock_picker_pages},
            .work = read_work{[&counts](context& request) { get_page(request, counts); }}});
    to.add({.module = "wms_stock_detail",
            .action = "do_add",
            .keys = {id_key("product"), text_key("price", presence::always),
                     integer_key("amount", 0, domain::g_highest_amount), text_key("total", presence::always),
                     id_key("warehouse"), text_key("remark", presence::always),
                     text_key("place", presence::always)},
            .answer = form::count,
            .allowed = on_any_page(domain::g_inbound_pages, "add"),
            .work = write_work{do_add},
            .scope = line_announced});
    to.add(
        {.module = "wms_stock_detail",
         .action = "lock_stock",
         .keys = {use, id_key("id"), integer_key("amount", 0, domain::g_highest_amount, presence::optional),
                  text_key("total")},
         .answer = form::id,
         .allowed = to_claim(),
         .work = write_work{[&limits](context& request) { lock_stock(request, limits); }},
         .failure = "0"});
    to.add({.module = "wms_stock_detail",
            .action = "unlock_stock",
            .keys = {token_key("locked_id"), use},
            .answer = form::count,
            .allowed = to_claim(),
            .work = write_work{unlock_stock},
            .once = true});
}

} // namespace tavrok::api
