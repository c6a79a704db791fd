#include "domain/partners.h"

#include <algorithm>
#include <array>

#include "domain/audit.h"
#include "domain/fold.h"
#include "domain/refused.h"
#include "domain/text_rules.h"
#include "store/records/companies.h"
#include "store/records/partners.h"

namespace tavrok::domain {

namespace {

using checker = void (*)(std::string_view, std::string_view, std::size_t);

/** A text of a partner: where it stands and what it must be. */
struct field {
    const char* name;
    std::string partner::*text;
    std::optional<std::string> partner_change::*change;
    checker check;
    std::size_t limit;
};

// in the order of store::partner_text
constexpr std::array<field, store::g_partner_texts> g_fields{{
    {"name", &partner::name, &partner_change::name, check_required, 200},
    {"phone", &partner::phone, &partner_change::phone, check_required, 200},
    {"linkman", &partner::linkman, &partner_change::linkman, check_text, 200},
    {"mobile", &partner::mobile, &partner_change::mobile, check_dialable, 40},
    {"fax", &partner::fax, &partner_change::fax, check_text, 200},
    {"address", &partner::address, &partner_change::address, check_required, 1000},
    {"account", &partner::account, &partner_change::account, check_text, 200},
    {"bank", &partner::bank, &partner_change::bank, check_text, 200},
    {"remark", &partner::remark, &partner_change::remark, check_text, 1000},
}};

// in the order of store::g_partner_searched
constexpr std::array<std::string partner_search::*, store::g_partner_searched.size()> g_words{
    &partner_search::name, &partner_search::address, &partner_search::account, &partner_search::bank,
    &partner_search::remark};

void demand(const principal& who, std::int64_t type, std::string_view right) {
    const auto page = page_of(partner_type_of(type));
    if (!who.has(page, right)) throw refused("no right " + std::string(right) + " on " + std::string(page));
}

bool may_pick(const principal& who) {
    return std::any_of(g_partner_picker_pages.begin(), g_partner_picker_pages.end(),
                       [&](std::string_view page) { return who.has_any(page); });
}

void demand_list(const principal& who, partner_type type) {
    if (may_pick(who)) return;
    for (const auto kind : {partner_type::supplier, partner_type::client, partner_type::other}) {
        if (type == kind || type == partner_type::any) demand(who, static_cast<std::int64_t>(kind), "search");
    }
}

store::partner_filter filter_of(const principal& who, const partner_search& search) {
    store::partner_filter filter;
    filter.company = who.company;
    filter.type = search.type == partner_type::any ? 0 : static_cast<std::int64_t>(search.type);
    for (std::size_t i = 0; i < g_words.size(); ++i)
        filter.patterns[i] = criterion_pattern(search.*g_words[i]);
    return filter;
}

list_extent total_of(store::connection& with, const store::partner_filter& filter, count_cache& counts) {
    if (filter.patterns == store::partner_words{}) {
        return store::partner_counter(with, filter.company, filter.type);
    }
    return filtered_total(with, store::g_partner_list, store::criteria_of(filter), counts);
}

partner partner_of(store::partner_record&& record) {
    partner made;
    made.id = record.id;
    made.type = static_cast<int>(record.type);
    made.datetime = record.added_at;
    for (std::size_t i = 0; i < g_fields.size(); ++i)
        made.*g_fields[i].text = std::move(record.texts[i]);
    return made;
}

} // namespace

partner_type partner_type_of(std::int64_t number) {
    if (number < 1 || number > 4) throw refused("no kind of partner: " + std::to_string(number));
    return static_cast<partner_type>(number);
}

std::string_view page_of(partner_type type) {
    switch (type) {
        case partner_type::supplier:
            return "company_supplier";
        case partner_type::client:
            return "company_client";
        case partner_type::other:
            return "company_other";
        case partner_type::any:
            break;
    }
    throw refused("a partner is a supplier, a client or another unit");
}

partner_page list_partners(store::connection& with, const principal& who, const partner_search& search,
                           std::int64_t page_num, std::int64_t page_size, count_cache& counts) {
    demand_list(who, search.type);
    const auto filter = filter_of(who, search);
    return read_page<partner>(with, store::g_partner_list, store::criteria_of(filter),
                              total_of(with, filter, counts), {page_num, page_size},
                              [](const store::row& one) { return partner_of(store::partner_of(one)); });
}

added add_partner(store::connection& with, const principal& who, const partner& what, std::int64_t now) {
    demand(who, what.type, "add");
    store::partner_record record{0, what.type, now, {}};
    for (std::size_t i = 0; i < g_fields.size(); ++i) {
        const auto& one = g_fields[i];
        one.check(one.name, what.*one.text, one.limit);
        record.texts[i] = what.*one.text;
    }
    store::partner_words folded;
    for (std::size_t i = 0; i < folded.size(); ++i) {
        folded[i] = fold(record.texts[static_cast<std::size_t>(store::g_partner_searched[i])]);
    }
    const auto id = store::insert_partner(with, who.company, who.user, record, folded);
    store::change_partner_counter(with, who.company, what.type, 1);
    note(with, who, "partner_add", id, now);
    store::bump_data_version(with, who.company);
    return {id, now};
}

void edit_partner(store::connection& with, const principal& who, const partner_change& change,
                  std::int64_t now) {
    const auto type = store::live_partner_type(with, who.company, change.id);
    if (!type) throw refused("unknown partner " + std::to_string(change.id));
    demand(who, *type, "edit");
    std::array<store::value, store::g_partner_texts> texts;
    for (std::size_t i = 0; i < g_fields.size(); ++i) {
        const auto& one = g_fields[i];
        const auto& text = change.*one.change;
        if (!text) continue;
        one.check(one.name, *text, one.limit);
        texts[i] = *text;
    }
    std::array<store::value, store::g_partner_searched.size()> folded;
    for (std::size_t i = 0; i < folded.size(); ++i) {
        const auto& text = texts[static_cast<std::size_t>(store::g_partner_searched[i])];
        if (const auto* given = std::get_if<std::string>(&text)) folded[i] = fold(*given);
    }
    if (store::update_partner(with, who.company, change.id, texts, folded) == 0) {
        throw refused("partner " + std::to_string(change.id) + " has just gone");
    }
    note(with, who, "partner_edit", change.id, now);
    store::bump_data_version(with, who.company);
}

// Always retired, never erased: whether an old document names the partner then needs no proof at the moment
// of deletion.
void remove_partner(store::connection& with, const principal& who, std::int64_t id, std::int64_t now) {
    const auto type = store::live_partner_type(with, who.company, id);
    if (!type) throw refused("unknown partner " + std::to_string(id));
    demand(who, *type, "delete");
    if (store::retire_partner(with, who.company, id, now) == 0) {
        throw refused("partner " + std::to_string(id) + " has just gone");
    }
    store::change_partner_counter(with, who.company, *type, -1);
    note(with, who, "partner_delete", id, now);
    store::bump_data_version(with, who.company);
}

} // namespace tavrok::domain
