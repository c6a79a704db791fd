#include "store/records/products.h"

#include <vector>

namespace tavrok::store {

namespace {

constexpr std::array<const char*, g_product_texts.size()> g_folded{"name_folded", "code_folded",
                                                                   "spec_folded"};

const statement g_insert{"product_insert",
                         "INSERT INTO product (company, added_by, added_at, category, price, name, code, "
                         "spec, name_folded, code_folded, spec_folded) "
                         "VALUES (?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?) RETURNING id"};
const statement g_hold{
    "product_hold",
    "UPDATE product SET state = state WHERE company = ? AND id = ? AND state = 1 RETURNING category"};
const statement g_update{
    "product_update",
    "UPDATE product SET name = coalesce(?, name), code = coalesce(?, code), spec = coalesce(?, spec), "
    "name_folded = coalesce(?, name_folded), code_folded = coalesce(?, code_folded), "
    "spec_folded = coalesce(?, spec_folded), category = coalesce(?, category), price = coalesce(?, price) "
    "WHERE company = ? AND id = ? AND state = 1"};
const statement g_retire{
    "product_retire",
    "UPDATE product SET state = 2, retired_at = ? WHERE company = ? AND id = ? AND state = 1"};

} // namespace

const listing g_product_list{
    "product", "product", "state = 1",
    "t.id, t.added_at, t.category, t.price, t.name, t.code, t.spec, coalesce(g.name, '')",
    "LEFT JOIN category g ON g.company = t.company AND g.id = t.category"};

product_record product_of(const row& one) {
    product_record made{one.integer(0), one.integer(1), one.integer(2), one.integer(3), {}, {}};
    int column = 4;
    for (auto& text : made.texts)
        text = one.text(column++);
    made.category_name = one.text(column);
    return made;
}

void text_like(list_filter& filter, std::size_t text, const std::string& pattern) {
    like(filter, g_folded.at(text), pattern);
}

std::int64_t insert_product(connection& with, std::int64_t company, std::int64_t user,
                            const product_record& what, const product_texts& folded) {
    std::vector<value> bound{company, user, what.added_at, what.category, what.price};
    bound.insert(bound.end(), what.texts.begin(), what.texts.end());
    bound.insert(bound.end(), folded.begin(), folded.end());
    std::int64_t id = 0;
    with.query(g_insert, bound, [&](const row& one) { id = one.integer(0); });
    return id;
}

std::optional<std::int64_t> hold_product(connection& with, std::int64_t company, std::int64_t id) {
    std::optional<std::int64_t> category;
    with.query(g_hold, {company, id}, [&](const row& one) { category = one.integer(0); });
    return category;
}

std::int64_t update_product(connection& with, std::int64_t company, std::int64_t id,
                            const product_values& what) {
    std::vector<value> bound(what.texts.begin(), what.texts.end());
    bound.insert(bound.end(), what.folded.begin(), what.folded.end());
    bound.push_back(what.category);
    bound.push_back(what.price);
    bound.emplace_back(company);
    bound.emplace_back(id);
    return with.execute(g_update, bound);
}

std::int64_t retire_product(connection& with, std::int64_t company, std::int64_t id, std::int64_t now) {
    return with.execute(g_retire, {now, company, id});
}

} // namespace tavrok::store
