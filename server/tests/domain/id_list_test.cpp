#include "domain/id_list.h"

#include <gtest/gtest.h>
#include <rapidcheck.h>

#include <limits>
#include <set>

namespace tavrok::domain {
namespace {

id_list list_of(const std::set<std::int64_t>& ids) {
    id_list made;
    for (auto at = ids.rbegin(); at != ids.rend(); ++at)
        made.add(*at);
    made.close();
    return made;
}

TEST(id_list, holds_nothing_at_first) {
    const id_list nothing;
    EXPECT_EQ(nothing.size(), 0);
    EXPECT_TRUE(nothing.part(0, 20).empty());
}

TEST(id_list, holds_the_greatest_and_the_least_ids) {
    constexpr auto greatest = std::numeric_limits<std::int64_t>::max();
    const auto ids = list_of({greatest, greatest - 1, 1 << 20, 2, 1});
    EXPECT_EQ(ids.part(0, 5), (std::vector<std::int64_t>{greatest, greatest - 1, 1 << 20, 2, 1}));
}

/** The union of the pages is the list, whatever the size of a page, without a double and without a hole. */
TEST(id_list, gives_any_part_of_any_list) {
    const bool held = rc::check([] {
        const auto widest = *rc::gen::inRange<std::int64_t>(1, 100'000);
        std::set<std::int64_t> ids;
        std::int64_t id = 1000;
        for (auto left = *rc::gen::inRange(0, 2000); left > 0; --left)
            ids.insert(id += *rc::gen::resize(100, rc::gen::inRange<std::int64_t>(1, widest + 1)));
        const auto list = list_of(ids);
        RC_ASSERT(list.size() == static_cast<std::int64_t>(ids.size()));
        const auto page_size = *rc::gen::inRange<std::int64_t>(1, 200);
        auto next = ids.rbegin();
        for (std::int64_t first = 0; first < list.size(); first += page_size) {
            for (const auto one : list.part(first, page_size))
                RC_ASSERT(one == *next++);
        }
        RC_ASSERT(next == ids.rend());
        RC_ASSERT(list.part(list.size(), 1).empty());
    });
    EXPECT_TRUE(held);
}

TEST(id_list, takes_little_memory) {
    id_list dense;
    id_list sparse;
    constexpr std::int64_t count = 100'000;
    for (std::int64_t i = count; i > 0; --i) {
        dense.add(1000 + i);
        sparse.add(1000 + 100 * i);
    }
    dense.close();
    sparse.close();
    EXPECT_LT(dense.bytes(), 5 * count / 4);
    EXPECT_LT(sparse.bytes(), 9 * count / 4);
}

} // namespace
} // namespace tavrok::domain
