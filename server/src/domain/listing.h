#pragma once

#include <algorithm>
#include <cstdint>
#include <optional>
#include <string_view>
#include <utility>
#include <vector>

#include "domain/count_cache.h"
#include "store/records/listing.h"

namespace tavrok::domain {

/** A page of a list. */
template <typename record>
struct list_page {
    std::vector<record> list; /**< newest first */
    std::int64_t total{0};
    std::int64_t page_count{0}; /**< 0 when nothing fits */
    std::int64_t page_num{1};   /**< the page that `list` is */
};

/** What a new record got. */
struct added {
    std::int64_t id;
    std::int64_t datetime;
};

/** Which page is asked for: -1 is the last one, a number outside is brought into the range. */
struct page_wish {
    std::int64_t page_num{1};
    std::int64_t page_size{20}; /**< 1 to 200, else refused */
};

/** The LIKE pattern of a criterion's word, empty for an empty word. Refuses a word that is no text. */
std::string criterion_pattern(std::string_view word);

/** What a list holds: how many rows and, of a filtered list, which. */
struct list_extent {
    /** Of a list whose rows are counted elsewhere. */
    list_extent(std::int64_t rows) : total(rows) {} // NOLINT(google-explicit-constructor)
    explicit list_extent(count_cache::shared_ids all) : total(all->size()), ids(std::move(all)) {}

    std::int64_t total;
    count_cache::shared_ids ids;
};

/** The rows that fit a filter, looked for once for each state of the company's data. */
list_extent filtered_total(store::connection& with, const store::listing& what,
                           const store::list_filter& filter, count_cache& counts);
/** The same, from the kept counter where nothing is filtered. */
list_extent list_total(store::connection& with, const store::listing& what, const store::list_filter& filter,
                       count_cache& counts);

void check_page_size(std::int64_t page_size);

/** The page of a list; `make(row)` gives a record. Where it is not known which rows the list holds, they are
 * counted off from the nearer end. */
template <typename record, typename maker>
list_page<record> read_page(store::connection& with, const store::listing& what,
                            const store::list_filter& filter, const list_extent& holds, const page_wish& wish,
                            maker make) {
    check_page_size(wish.page_size);
    list_page<record> page;
    const auto total = holds.total;
    page.total = total;
    page.page_count = (total + wish.page_size - 1) / wish.page_size;
    if (total == 0) return page;
    page.page_num =
        wish.page_num == -1 ? page.page_count : std::clamp<std::int64_t>(wish.page_num, 1, page.page_count);
    const auto first = (page.page_num - 1) * wish.page_size;
    const auto count = std::min(wish.page_size, total - first);
    page.list.reserve(static_cast<std::size_t>(count));
    const auto add = [&](const store::row& one) { page.list.push_back(make(one)); };
    if (holds.ids) {
        store::each_listed_of(with, what, filter.company, holds.ids->part(first, count), add);
        return page;
    }
    const bool newest = first <= total / 2;
    store::each_listed(with, what, filter, newest ? store::list_end::newest : store::list_end::oldest, count,
                       newest ? first : total - first - count, add);
    if (!newest) std::reverse(page.list.begin(), page.list.end());
    return page;
}

} // namespace tavrok::domain
