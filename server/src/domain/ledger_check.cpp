#include "domain/ledger_check.h"

#include <algorithm>
#include <map>
#include <string_view>
#include <tuple>

#include "domain/document_kinds.h"
#include "domain/document_numbers.h"
#include "domain/money.h"
#include "domain/products.h"
#include "domain/refused.h"
#include "store/records/ledger_proofs.h"

namespace tavrok::domain {

namespace {

using findings = std::vector<finding>;

constexpr std::int64_t g_one_day = 24 * 3600;
constexpr std::size_t g_prefix = 2;
constexpr std::size_t g_day = 8;
constexpr std::size_t g_dash = g_prefix + g_day;

std::string of(std::int64_t company, const std::string& table, std::int64_t id) {
    return "company " + std::to_string(company) + ", " + table + ' ' + std::to_string(id);
}

/** A number that was given, and to whom. */
struct given {
    std::int64_t sequence;
    std::int64_t document;
};
/** Company, kind and day. */
using series_key = std::tuple<std::int64_t, std::string, std::int64_t>;
using all_series = std::map<series_key, std::vector<given>>;

std::string name_of(const series_key& key) {
    const auto& [company, kind, day] = key;
    return "company " + std::to_string(company) + ", numbers " + kind + std::to_string(day);
}

/** The number in the text; 0 where it is none, or too large for a day or a sequence. */
std::int64_t number_in(std::string_view text) {
    constexpr std::size_t longest = 15;
    std::int64_t number = 0;
    for (const char c : text) {
        if (c < '0' || c > '9' || text.size() > longest) return 0;
        number = number * 10 + (c - '0');
    }
    return number;
}

/** Whether the day is that of the instant, or one beside it: the zone may have been another one. */
bool is_near(std::int64_t day, std::int64_t instant) {
    return day == day_of(instant - g_one_day) || day == day_of(instant) || day == day_of(instant + g_one_day);
}

void check_number(const store::document_head& one, std::string_view prefix, all_series& numbers,
                  findings& found) {
    const std::string_view sn = one.sn;
    const auto day = sn.size() > g_dash ? number_in(sn.substr(g_prefix, g_day)) : 0;
    const auto sequence = sn.size() > g_dash ? number_in(sn.substr(g_dash + 1)) : 0;
    if (sequence == 0 || document_number(prefix, day, sequence) != sn) {
        found.push_back({"number", of(one.company, "document", one.id) + " has the number \"" + one.sn +
                                       "\", which is none of its kind"});
        return;
    }
    if (!is_near(day, one.added_at)) {
        found.push_back({"number", of(one.company, "document", one.id) + " has the number " + one.sn +
                                       ", which is of another day"});
    }
    numbers[{one.company, std::string(prefix), day}].push_back({sequence, one.id});
}

/** Whether the counterparty is one that the kind has. A partner who is not there is another rule's affair. */
bool fits(const store::document_head& one, counterparty wanted) {
    const bool partner = wanted != counterparty::none && wanted != counterparty::department;
    if (one.has_partner != partner || one.has_dept != (wanted == counterparty::department)) return false;
    if (wanted == counterparty::supplier) return one.partner_type.value_or(1) == 1;
    if (wanted == counterparty::client) return one.partner_type.value_or(2) == 2;
    return true;
}

void check_head(const store::document_head& one, all_series& numbers, findings& found) {
    try {
        const auto& kind = kind_of(static_cast<store::document_module>(one.module), one.type);
        if (!fits(one, kind.partner)) {
            found.push_back({"document", of(one.company, "document", one.id) +
                                             " has a partner or department that does not fit its kind"});
        }
        check_number(one, kind.prefix, numbers, found);
    } catch (const refused&) {
        found.push_back({"document", of(one.company, "document", one.id) + " is of no known kind"});
    }
}

/** From 1 to `last`, each once. */
void check_series(const series_key& key, std::vector<given>& numbers, std::int64_t last, findings& found) {
    std::sort(numbers.begin(), numbers.end(), [](const given& left, const given& right) {
        return std::tie(left.sequence, left.document) < std::tie(right.sequence, right.document);
    });
    std::int64_t expected = 1;
    for (const auto& one : numbers) {
        if (one.sequence < expected) {
            found.push_back({"number", name_of(key) + ": " + std::to_string(one.sequence) +
                                           " is given twice, the second time to document " +
                                           std::to_string(one.document)});
        } else if (one.sequence > expected) {
            found.push_back({"number", name_of(key) + ": nothing has the number " + std::to_string(expected) +
                                           ", the next is of document " + std::to_string(one.document)});
        }
        expected = one.sequence + 1;
    }
    if (last != expected - 1) {
        found.push_back({"number", name_of(key) + ": the series stands at " + std::to_string(last) +
                                       ", the greatest number is " + std::to_string(expected - 1)});
    }
}

store::promise_reader into(findings& found) {
    return [&found](const store::broken_promise& one) {
        found.push_back({one.rule, of(one.company, one.table, one.id) + ' ' + one.words});
    };
}

} // namespace

void check_stock(store::connection& with, findings& found) {
    store::each_broken_stock(with, into(found));
}

void check_ledger(store::connection& with, findings& found) {
    store::each_broken_document(with, into(found));
}

void check_documents(store::connection& with, findings& found) {
    all_series numbers;
    store::each_document_head(with,
                              [&](const store::document_head& one) { check_head(one, numbers, found); });
    store::each_number_series(with, [&](const store::number_series& one) {
        const auto at = numbers.find({one.company, one.kind, one.day});
        if (at == numbers.end()) {
            found.push_back({"number", name_of({one.company, one.kind, one.day}) + ": no document has one"});
            return;
        }
        check_series(at->first, at->second, one.last, found);
        numbers.erase(at);
    });
    for (auto& [key, left] : numbers) {
        found.push_back({"number", name_of(key) + ": there is no such series, and document " +
                                       std::to_string(left.front().document) + " has a number of it"});
    }
}

/** Figures that no line could have are looked at first: their product may be too large. */
void check_counts(store::connection& with, findings& found) {
    const auto within = [](std::int64_t number, std::int64_t least, std::int64_t most) {
        return number >= least && number <= most;
    };
    store::each_counted_line(with, [&](const store::counted_line& one) {
        if (!within(one.sys_amount, 0, g_highest_amount) ||
            !within(one.amount, -one.sys_amount, g_highest_amount - one.sys_amount) ||
            !within(one.price, 0, g_highest_price)) {
            found.push_back({"document", of(one.company, "document_line", one.id) +
                                             " tells a count or a price that is out of range"});
        } else if (!truncates_to(one.amount, one.price, one.total)) {
            found.push_back({"document", of(one.company, "document_line", one.id) +
                                             " tells another money than its gain or loss at its price"});
        }
    });
}

} // namespace tavrok::domain
