#include "store/records/stock_lists.h"

namespace tavrok::store {

const listing g_stock_list{"stock", "stock", "listed = 1",
                           "t.id, t.warehouse, w.name, t.place, t.product, p.name, p.category, "
                           "coalesce(g.name, ''), p.code, p.spec, "
                           "t.price, t.on_hand - t.claimed, t.remark, t.added_at",
                           "JOIN product p ON p.company = t.company AND p.id = t.product "
                           "JOIN warehouse w ON w.company = t.company AND w.id = t.warehouse "
                           "LEFT JOIN category g ON g.company = p.company AND g.id = p.category"};

stock_item stock_item_of(const row& one) {
    stock_item made;
    made.id = one.integer(0);
    made.warehouse = one.integer(1);
    made.warehouse_name = one.text(2);
    made.place = one.text(3);
    made.product = one.integer(4);
    made.product_name = one.text(5);
    made.category = one.integer(6);
    made.category_name = one.text(7);
    made.code = one.text(8);
    made.spec = one.text(9);
    made.price = one.integer(10);
    made.amount = one.integer(11);
    made.total = made.amount * made.price; // fits: see g_most_on_hand
    made.remark = one.text(12);
    made.datetime = one.integer(13);
    return made;
}

void each_stock_sum(connection& with, std::int64_t company, const std::vector<std::int64_t>& products,
                    std::int64_t from, std::int64_t to, const std::function<void(const stock_sum&)>& each) {
    if (products.empty()) return;
    std::vector<value> bound{company, from, to};
    const auto marks = bind_ids(bound, products);
    const statement sums{"stock_sum_of_" + std::to_string(bound.size() - 3),
                         "SELECT product, price, CAST(sum(on_hand) AS BIGINT), CAST(sum(claimed) AS BIGINT) "
                         "FROM stock WHERE company = ? AND listed = 1 AND added_at >= ? AND added_at <= ? "
                         "AND product IN (" +
                             marks + ") GROUP BY product, price"};
    with.query(sums, bound, [&](const row& one) {
        each({one.integer(0), one.integer(1), one.integer(2), one.integer(3)});
    });
}

} // namespace tavrok::store
