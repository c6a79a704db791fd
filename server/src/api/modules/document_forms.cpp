#include "api/modules/document_forms.h"

#include <limits>
#include <string>

#include "api/answers.h"
#include "domain/money.h"
#include "domain/products.h"
#include "domain/repeat.h"

namespace tavrok::api {

namespace {

constexpr auto any = std::numeric_limits<std::int64_t>::max();
/** Above every sum that 64 bits hold exactly, and above what a line may come to. */
constexpr std::int64_t most_money = 1'000'000'000'000'000'000;

} // namespace

access on_any_page(std::span<const std::string_view> pages, std::string_view right) {
    access made{.needs = access::who::rights};
    for (const auto page : pages)
        made.any_of.push_back({page, right});
    return made;
}

key id_criterion_key(std::string_view name) {
    return integer_key(name, 0, any, presence::optional);
}

std::int64_t price_of(const fields& form) {
    return domain::parse_money("price", form.text("price"), domain::g_highest_price);
}

std::int64_t total_of(const fields& form, std::string_view key) {
    return domain::parse_money(key, form.text(key), most_money);
}

std::int64_t signed_total_of(const fields& form, std::string_view key) {
    return domain::parse_signed_money(key, form.text(key), most_money);
}

domain::document_search search_of(const fields& form) {
    domain::document_search search;
    search.date_start = given_number(form, "date_start");
    search.date_end = given_number(form, "date_end");
    search.sn = form.text("sn");
    search.operater = form.text("operater");
    search.writer = given_number(form, "writer");
    search.remark = form.text("remark");
    return search;
}

domain::document_header header_of(const fields& form) {
    domain::document_header header;
    header.operater = form.text("operater");
    header.writer = form.text("writer");
    header.remark = form.text("remark");
    return header;
}

domain::document_line line_of(const fields& form) {
    domain::document_line line;
    line.product = form.integer("product");
    line.price = price_of(form);
    line.amount = form.integer("amount");
    line.total = total_of(form);
    line.warehouse = form.integer("warehouse");
    line.place = form.text("place");
    line.remark = form.text("remark");
    return line;
}

void read_row(const fields& form, domain::document_line& line) {
    line.stock = form.integer("stock_id");
    line.token = form.text("locked_id");
}

void write_people(json_writer& json, const domain::document_record& one) {
    json.number_text("operater", one.operater).text("operater_name", one.operater_name);
    json.number_text("writer", one.writer).text("writer_name", one.writer_name);
}

namespace {

void forget_answers(context& request, std::string_view module) {
    domain::forget(*request.db, *request.who, std::string(module) + "/do_add");
}

} // namespace

void header_arrived(context& request, std::string_view module) {
    forget_answers(request, module);
}

void answer_line(context& request, domain::document_module which, const std::function<void()>& add) {
    const auto& form = request.form;
    *request.refusal = domain::add_or_spoil(
        *request.db, *request.who, which, [&form] { return form.integer("main_id"); },
        [&] {
            if (!form.has("price")) throw domain::refused("the line cannot be read");
            add();
        });
    request.answer = request.refusal->empty() ? "1" : "0";
}

void answer_closing(context& request, std::string why_not, std::span<const std::string_view> modules) {
    for (const auto module : modules)
        forget_answers(request, module);
    *request.refusal = std::move(why_not);
    request.answer = request.refusal->empty() ? "1" : "0";
}

void answer_removal(context& request, domain::document_module which, const domain::session_limits& limits) {
    domain::remove_document(*request.db, *request.who, which, request.form.integer("id"), request.now,
                            limits);
    request.answer = "1";
}

} // namespace tavrok::api
