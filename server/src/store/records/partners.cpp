#include "store/records/partners.h"

#include <utility>
#include <vector>

namespace tavrok::store {

namespace {

// in the order of g_partner_searched
constexpr std::array<const char*, g_partner_searched.size()> g_folded{
    "name_folded", "address_folded", "account_folded", "bank_folded", "remark_folded"};

const statement g_insert{
    "partner_insert",
    "INSERT INTO partner (company, added_by, type, added_at, name, phone, linkman, mobile, fax, address, "
    "account, "
    "bank, remark, name_folded, address_folded, account_folded, bank_folded, remark_folded) "
    "VALUES (?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?) RETURNING id"};
const statement g_update{
    "partner_update",
    "UPDATE partner SET name = coalesce(?, name), phone = coalesce(?, phone), linkman = coalesce(?, "
    "linkman), "
    "mobile = coalesce(?, mobile), fax = coalesce(?, fax), address = coalesce(?, address), "
    "account = coalesce(?, account), bank = coalesce(?, bank), remark = coalesce(?, remark), "
    "name_folded = coalesce(?, name_folded), address_folded = coalesce(?, address_folded), "
    "account_folded = coalesce(?, account_folded), bank_folded = coalesce(?, bank_folded), "
    "remark_folded = coalesce(?, remark_folded) WHERE company = ? AND id = ? AND state = 1"};
const statement g_type{"partner_type", "SELECT type FROM partner WHERE company = ? AND id = ? AND state = 1"};
const statement g_retire{
    "partner_retire",
    "UPDATE partner SET state = 2, retired_at = ? WHERE company = ? AND id = ? AND state = 1"};
const statement g_counters{
    "partner_counters_create",
    "INSERT INTO partner_counter (company, type, live) VALUES (?, 1, 0), (?, 2, 0), (?, 3, 0)"};
const statement g_change_counter{"partner_counter_change",
                                 "UPDATE partner_counter SET live = live + ? WHERE company = ? AND type = ?"};
const statement g_counter{"partner_counter",
                          "SELECT live FROM partner_counter WHERE company = ? AND type = ?"};
const statement g_counter_sum{
    "partner_counter_sum",
    "SELECT coalesce(CAST(sum(live) AS BIGINT), 0) FROM partner_counter WHERE company = ?"};

} // namespace

std::int64_t insert_partner(connection& with, std::int64_t company, std::int64_t user,
                            const partner_record& what, const partner_words& folded) {
    std::vector<value> bound{company, user, what.type, what.added_at};
    bound.insert(bound.end(), what.texts.begin(), what.texts.end());
    bound.insert(bound.end(), folded.begin(), folded.end());
    std::int64_t id = 0;
    with.query(g_insert, bound, [&](const row& one) { id = one.integer(0); });
    return id;
}

std::int64_t update_partner(connection& with, std::int64_t company, std::int64_t id,
                            const std::array<value, g_partner_texts>& texts,
                            const std::array<value, g_partner_searched.size()>& folded) {
    std::vector<value> bound(texts.begin(), texts.end());
    bound.insert(bound.end(), folded.begin(), folded.end());
    bound.emplace_back(company);
    bound.emplace_back(id);
    return with.execute(g_update, bound);
}

std::optional<std::int64_t> live_partner_type(connection& with, std::int64_t company, std::int64_t id) {
    std::optional<std::int64_t> type;
    with.query(g_type, {company, id}, [&](const row& one) { type = one.integer(0); });
    return type;
}

std::int64_t retire_partner(connection& with, std::int64_t company, std::int64_t id, std::int64_t now) {
    return with.execute(g_retire, {now, company, id});
}

const listing g_partner_list{"partner", "partner", "state = 1",
                             "t.id, t.type, t.added_at, t.name, t.phone, t.linkman, t.mobile, t.fax, "
                             "t.address, t.account, t.bank, t.remark"};

list_filter criteria_of(const partner_filter& filter) {
    list_filter made{filter.company, {}};
    if (filter.type != 0) equal(made, "type", filter.type);
    for (std::size_t i = 0; i < filter.patterns.size(); ++i)
        like(made, g_folded[i], filter.patterns[i]);
    return made;
}

partner_record partner_of(const row& one) {
    partner_record made{one.integer(0), one.integer(1), one.integer(2), {}};
    for (std::size_t i = 0; i < g_partner_texts; ++i)
        made.texts[i] = one.text(static_cast<int>(i) + 3);
    return made;
}

void create_partner_counters(connection& with, std::int64_t company) {
    with.execute(g_counters, {company, company, company});
}

void change_partner_counter(connection& with, std::int64_t company, std::int64_t type, std::int64_t by) {
    with.execute(g_change_counter, {by, company, type});
}

std::int64_t partner_counter(connection& with, std::int64_t company, std::int64_t type) {
    std::int64_t live = 0;
    const auto take = [&](const row& one) { live = one.integer(0); };
    if (type == 0) {
        with.query(g_counter_sum, {company}, take);
    } else {
        with.query(g_counter, {company, type}, take);
    }
    return live;
}

} // namespace tavrok::store
