#include <array>
#include <limits>

#include "api/answers.h"
#include "api/modules/document_forms.h"
#include "api/modules/modules.h"
#include "domain/documents.h"
#include "domain/money.h"
#include "domain/pages.h"
#include "domain/products.h"

namespace tavrok::api {

namespace {

using domain::document_module;

constexpr auto any = std::numeric_limits<std::int64_t>::max();

/** What tells the two modules apart on the wire. */
struct module_words {
    document_module which;
    std::string_view module;                 /**< header, list and closing call */
    std::string_view detail_module;          /**< lines */
    std::string_view type_key;               /**< of the list's kind */
    std::span<const std::string_view> pages; /**< of the kinds in their order */
};

constexpr module_words inbound{document_module::inbound, "wms_instore", "wms_instore_detail", "instore_type",
                               domain::g_inbound_pages};
constexpr module_words outbound{document_module::outbound, "wms_outstore", "wms_outstore_detail",
                                "outstore_type", domain::g_outbound_pages};

std::string text_of(const std::optional<std::int64_t>& id) {
    return id ? std::to_string(*id) : std::string();
}

void write_document(json_writer& json, const domain::document_record& one) {
    json.open_object().number_text("id", one.id).text("sn", one.sn);
    json.text("company", text_of(one.partner)).text("company_name", one.partner_name);
    json.text("dept", text_of(one.dept)).text("dept_name", one.dept_name);
    write_people(json, one);
    json.text("total", domain::format_money(one.total)).text("remark", one.remark);
    json.number_text("type", one.type).integer("datetime", one.added_at).close_object();
}

void write_line(json_writer& json, const domain::document_line_record& one, document_module which) {
    json.open_object().number_text("id", one.id).number_text("main_id", one.document);
    json.number_text("product", one.product).text("product_name", one.product_name);
    json.number_text("category", one.category).text("category_name", one.category_name);
    json.text("price", domain::format_money(one.price)).number_text("amount", one.amount);
    json.text("total", domain::format_money(one.total)).number_text("warehouse", one.warehouse);
    json.text("warehouse_name", one.warehouse_name).text("remark", one.remark);
    json.text("spec", one.spec).text("place", one.place).text("code", one.code);
    if (which == document_module::outbound) json.number_text("stock_id", one.stock);
    // A text here: the client reads no number.
    json.number_text("datetime", one.datetime).close_object();
}

void get_page(context& request, const module_words& words, domain::count_cache& counts) {
    const auto& form = request.form;
    auto search = search_of(form);
    search.type = form.integer(words.type_key);
    search.partner = given_number(form, "company");
    search.dept = given_number(form, "dept");
    write_page(
        request.answer,
        domain::list_documents(*request.db, *request.who, words.which, search, page_wish_of(form), counts),
        write_document);
}

void do_add(context& request, document_module which) {
    const auto& form = request.form;
    auto header = header_of(form);
    header.type = form.integer("type");
    header.partner = given_number(form, "company");
    header.dept = given_number(form, "dept");
    write_added(request.answer, domain::open_draft(*request.db, *request.who, which, header, request.now));
}

void add_line(context& request, const module_words& words) {
    const auto& form = request.form;
    answer_line(request, words.which, [&] {
        auto line = line_of(form);
        read_row(form, line);
        domain::add_line(*request.db, *request.who, words.which, form.integer("main_id"), line);
        header_arrived(request, words.module);
    });
}

void update_total(context& request, const module_words& words, const domain::session_limits& limits) {
    const auto& form = request.form;
    const std::array<std::string_view, 2> modules{words.module, words.detail_module};
    answer_closing(request,
                   domain::close_draft(*request.db, *request.who, words.which, form.integer("id"),
                                       readable([&] { return total_of(form); }), request.now, limits),
                   modules);
}

void delete_line(context& request) {
    domain::drop_line(*request.db, *request.who, request.form.integer("id"));
    request.answer = "1";
}

/** The kind stands in the form: the right counts on its page. */
access by_kind(const module_words& words, std::string_view key, std::string_view right) {
    pages_by_value rule{key, right, {}};
    std::int64_t type = 0;
    for (const auto page : words.pages)
        rule.pages.push_back({++type, {page}});
    return {.needs = access::who::rights, .by_value = std::move(rule)};
}

std::vector<key> page_keys(const module_words& words) {
    const auto id = id_criterion_key;
    const auto kind = integer_key(words.type_key, 1, static_cast<std::int64_t>(words.pages.size()));
    if (words.which == document_module::inbound) {
        return {date_key("date_start"), date_key("date_end"), text_key("sn"),
                id("company"),          text_key("operater"), id("writer"),
                text_key("remark"),     id("dept"),           kind,
                page_num_key(),         page_size_key()};
    }
    return {kind,           date_key("date_start"), date_key("date_end"), text_key("sn"),
            id("company"),  text_key("operater"),   id("writer"),         text_key("remark"),
            page_num_key(), page_size_key()};
}

/** Inbound headers write what has a value and the department last; outbound ones write every key, and the
 * department before the remark. */
std::vector<key> header_keys(const module_words& words) {
    const auto kind = integer_key("type", 1, static_cast<std::int64_t>(words.pages.size()));
    if (words.which == document_module::inbound) {
        return {kind,
                id_key("company", presence::optional),
                text_key("operater"),
                text_key("writer"),
                text_key("total"),
                text_key("remark"),
                id_key("dept", presence::optional, 0)};
    }
    return {kind,
            typed_integer_key("company", 1, any),
            text_key("operater", presence::always),
            text_key("writer", presence::always),
            text_key("total", presence::always),
            typed_integer_key("dept", 0, any),
            text_key("remark", presence::always)};
}

std::vector<key> detail_keys(document_module which) {
    std::vector<key> keys{id_key("main_id"),
                          id_key("product"),
                          text_key("price", presence::always),
                          integer_key("amount", 0, domain::g_highest_amount),
                          text_key("total", presence::always),
                          id_key("warehouse"),
                          text_key("remark", presence::always)};
    if (which == document_module::outbound) keys.push_back(id_key("stock_id"));
    keys.push_back(text_key("place", presence::always));
    if (which == document_module::outbound) keys.push_back(token_key("locked_id"));
    return keys;
}

std::vector<key> closing_keys() {
    return {id_key("id"), text_key("total", presence::always)};
}

void add_headers(registry& to, const services& with, const module_words& words) {
    auto& counts = with.counts;
    const auto& limits = with.options.sessions;
    const auto which = words.which;
    to.add({.module = words.module,
            .action = "get_page",
            .keys = page_keys(words),
            .answer = form::page,
            .allowed = by_kind(words, words.type_key, "search"),
            .work = read_work{[&counts, words](context& request) { get_page(request, words, counts); }}});
    to.add({.module = words.module,
            .action = "get_detail",
            .keys = {id_key("id")},
            .answer = form::array,
            .allowed = on_any_page(words.pages, "view"),
            .work = read_work{[which](context& request) {
                answer_lines(request, which,
                             [which](json_writer& json, const auto& one) { write_line(json, one, which); });
            }}});
    to.add({.module = words.module,
            .action = "do_add",
            .keys = header_keys(words),
            .answer = form::result,
            .allowed = by_kind(words, "type", "add"),
            .work = write_work{[which](context& request) { do_add(request, which); }}});
    to.add({.module = words.module,
            .action = "update_total",
            .keys = closing_keys(),
            .other_keys = first_alone(closing_keys()),
            .answer = form::count,
            .allowed = on_any_page(words.pages, "add"),
            .work = write_work{[words, &limits](context& request) { update_total(request, words, limits); }},
            .once = true});
    to.add(
        {.module = words.module,
         .action = "do_delete",
         .keys = {id_key("id")},
         .answer = form::count,
         .allowed = on_any_page(words.pages, "delete"),
         .work = write_work{[which, &limits](context& request) { answer_removal(request, which, limits); }},
         .once = true});
}

void add_lines(registry& to, const module_words& words) {
    const auto which = words.which;
    to.add({.module = words.detail_module,
            .action = "do_add",
            .keys = detail_keys(which),
            .other_keys = first_alone(detail_keys(which)),
            .answer = form::count,
            .allowed = on_any_page(words.pages, "add"),
            .work = write_work{[words](context& request) { add_line(request, words); }}});
}

} // namespace

void add_instore(registry& to, const services& with) {
    add_headers(to, with, inbound);
    add_lines(to, inbound);
    to.add({.module = "wms_instore_detail",
            .action = "do_delete",
            .keys = {id_key("id")},
            .answer = form::count,
            .allowed = on_any_page(inbound.pages, "add"),
            .work = write_work{delete_line},
            .once = true});
}

void add_outstore(registry& to, const services& with) {
    add_headers(to, with, outbound);
    add_lines(to, outbound);
}

} // namespace tavrok::api
