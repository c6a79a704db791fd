#include "store/records/stock_lists.h"

namespace tavrok::store {

const listing g_stock_list{
    "stock", "stock", "listed = 1",
    "t.id, t.warehouse, w.name, t.place, t.product, p.name, p.category, coalesce(g.name, ''), p.code, "
    "p.spec, t.price, t.on_hand - t.claimed, t.remark, t.added_at",
    "JOIN warehouse w ON w.company = t.company AND w.id = t.warehouse "
    "JOIN product p ON p.company = t.company AND p.id = t.product "
    "LEFT JOIN category g ON g.company = p.company AND g.id = p.category"};

} // namespace tavrok::store
