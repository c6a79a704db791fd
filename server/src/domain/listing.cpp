#include "domain/listing.h"

#include <memory>
#include <string>
#include <utility>

#include "domain/fold.h"
#include "domain/refused.h"
#include "domain/text_rules.h"
#include "store/records/companies.h"

namespace tavrok::domain {

namespace {

constexpr std::int64_t g_largest_page = 200;
constexpr std::size_t g_word_limit = 1000;

std::string text_of(const store::value& bound) {
    if (const auto* number = std::get_if<std::int64_t>(&bound)) return std::to_string(*number);
    const auto* text = std::get_if<std::string>(&bound);
    return text != nullptr ? *text : std::string();
}

} // namespace

std::string criterion_pattern(std::string_view word) {
    check_text("criterion", word, g_word_limit);
    return word.empty() ? std::string() : like_pattern(word);
}

list_extent filtered_total(store::connection& with, const store::listing& what,
                           const store::list_filter& filter, count_cache& counts) {
    // The lengths keep criteria apart whatever they hold.
    std::string criteria = what.name;
    for (const auto& one : filter.criteria) {
        const auto bound = text_of(one.bound) + ' ' + text_of(one.most);
        criteria.append(" ").append(one.column).append(1, ' ').append(one.text);
        criteria.append(1, ' ').append(std::to_string(static_cast<int>(one.how)) + '.');
        criteria.append(std::to_string(bound.size()) + ':').append(bound);
    }
    const auto version = store::data_version(with, filter.company);
    return list_extent(counts.find_or_make(filter.company, version, criteria, [&] {
        const auto ids = std::make_shared<id_list>();
        store::each_listed_id(with, what, filter, [&](std::int64_t id) { ids->add(id); });
        ids->close();
        return ids;
    }));
}

list_extent list_total(store::connection& with, const store::listing& what, const store::list_filter& filter,
                       count_cache& counts) {
    return filter.criteria.empty() ? list_extent(store::list_counter(with, filter.company, what))
                                   : filtered_total(with, what, filter, counts);
}

void check_page_size(std::int64_t page_size) {
    if (page_size < 1 || page_size > g_largest_page) throw refused("page size out of range");
}

} // namespace tavrok::domain
