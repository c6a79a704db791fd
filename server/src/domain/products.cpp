#include "domain/products.h"

#include <array>
#include <utility>

#include "domain/audit.h"
#include "domain/fold.h"
#include "domain/refused.h"
#include "domain/text_rules.h"
#include "store/records/companies.h"
#include "store/records/products.h"
#include "store/records/stock.h"
#include "store/records/trees.h"

namespace tavrok::domain {

namespace {

constexpr std::size_t g_limit = 200;

/** A text of a product: where it stands and what it must be. */
struct field {
    std::string product::*text;
    std::optional<std::string> product_change::*change;
    std::string product_search::*word;
    void (*check)(std::string_view, std::string_view, std::size_t);
};

// in the order of store::g_product_texts
constexpr std::array<field, store::g_product_texts.size()> g_fields{{
    {&product::name, &product_change::name, &product_search::name, check_required},
    {&product::code, &product_change::code, &product_search::code, check_text},
    {&product::spec, &product_change::spec, &product_search::spec, check_text},
}};

product product_of(store::product_record&& record) {
    product made;
    made.id = record.id;
    made.datetime = record.added_at;
    made.category = record.category;
    made.category_name = std::move(record.category_name);
    made.price = record.price;
    for (std::size_t i = 0; i < g_fields.size(); ++i)
        made.*g_fields[i].text = std::move(record.texts[i]);
    return made;
}

void check_price(std::int64_t price) {
    if (price < 0 || price > g_highest_price) throw refused("price out of range");
}

/** The category stays live until the transaction ends. */
void hold_category(store::connection& with, const principal& who, std::int64_t id) {
    if (id != 0 && !store::hold_node(with, store::g_categories, who.company, id)) {
        throw refused("unknown category " + std::to_string(id));
    }
}

[[noreturn]] void refuse_unknown(std::int64_t id) {
    throw refused("unknown product " + std::to_string(id));
}

void finish(store::connection& with, const principal& who, const char* deed, std::int64_t id,
            std::int64_t now) {
    note(with, who, deed, id, now);
    store::bump_data_version(with, who.company);
}

} // namespace

product_page list_products(store::connection& with, const principal& who, const product_search& search,
                           const page_wish& wish, count_cache& counts) {
    store::list_filter filter{who.company, {}};
    if (search.category) store::equal(filter, "category", *search.category);
    for (std::size_t i = 0; i < g_fields.size(); ++i)
        store::text_like(filter, i, criterion_pattern(search.*g_fields[i].word));
    const auto total = list_total(with, store::g_product_list, filter, counts);
    return read_page<product>(with, store::g_product_list, filter, total, wish,
                              [](const store::row& one) { return product_of(store::product_of(one)); });
}

added add_product(store::connection& with, const principal& who, const product& what, std::int64_t now) {
    check_price(what.price);
    store::product_record record{0, now, what.category, what.price, {}, {}};
    store::product_texts folded;
    for (std::size_t i = 0; i < g_fields.size(); ++i) {
        const auto& text = what.*g_fields[i].text;
        g_fields[i].check(store::g_product_texts[i], text, g_limit);
        record.texts[i] = text;
        folded[i] = fold(text);
    }
    hold_category(with, who, what.category);
    const auto id = store::insert_product(with, who.company, who.user, record, folded);
    store::change_list_counter(with, who.company, store::g_product_list, 1);
    finish(with, who, "product_add", id, now);
    return {id, now};
}

void edit_product(store::connection& with, const principal& who, const product_change& change,
                  std::int64_t now) {
    store::product_values values;
    for (std::size_t i = 0; i < g_fields.size(); ++i) {
        const auto& text = change.*g_fields[i].change;
        if (!text) continue;
        g_fields[i].check(store::g_product_texts[i], *text, g_limit);
        values.texts[i] = *text;
        values.folded[i] = fold(*text);
    }
    if (change.price) {
        check_price(*change.price);
        values.price = *change.price;
    }
    // The product is held, so that the category that it has is still the one it has when the edit is written.
    const auto category = store::hold_product(with, who.company, change.id);
    if (!category) refuse_unknown(change.id);
    if (change.category && *change.category != *category) {
        hold_category(with, who, *change.category);
        values.category = *change.category;
    }
    if (store::update_product(with, who.company, change.id, values) == 0) refuse_unknown(change.id);
    finish(with, who, "product_edit", change.id, now);
}

void remove_product(store::connection& with, const principal& who, std::int64_t id, std::int64_t now) {
    if (store::retire_product(with, who.company, id, now) == 0) refuse_unknown(id);
    store::change_list_counter(with, who.company, store::g_product_list, -1);
    finish(with, who, "product_delete", id, now);
    // The company is locked by now: whoever brings it in at this moment is seen here, or sees it retired.
    if (store::product_on_hand(with, who.company, id)) throw refused("the product is on hand");
}

} // namespace tavrok::domain
