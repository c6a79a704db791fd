#include "domain/count_cache.h"

#include <gtest/gtest.h>

namespace tavrok::domain {
namespace {

TEST(count_cache, a_count_holds_for_its_company_version_and_criteria) {
    count_cache cache;
    cache.keep(1, 5, "a", 42);
    EXPECT_EQ(cache.find(1, 5, "a"), 42);
    EXPECT_EQ(cache.find(1, 6, "a"), std::nullopt);
    EXPECT_EQ(cache.find(2, 5, "a"), std::nullopt);
    EXPECT_EQ(cache.find(1, 5, "b"), std::nullopt);
}

TEST(count_cache, a_late_count_of_an_older_version_replaces_nothing) {
    count_cache cache;
    cache.keep(1, 6, "a", 43);
    cache.keep(1, 5, "a", 42);
    EXPECT_EQ(cache.find(1, 6, "a"), 43);
    cache.keep(1, 7, "a", 44);
    EXPECT_EQ(cache.find(1, 7, "a"), 44);
    EXPECT_EQ(cache.size(), 1U);
}

TEST(count_cache, is_bounded_and_forgets_what_was_not_asked_for) {
    count_cache cache(3);
    for (const char* one : {"a", "b", "c"})
        cache.keep(1, 1, one, 1);
    EXPECT_EQ(cache.find(1, 1, "a"), 1);
    cache.keep(1, 1, "d", 1);
    EXPECT_EQ(cache.size(), 3U);
    EXPECT_EQ(cache.find(1, 1, "a"), 1);
    EXPECT_EQ(cache.find(1, 1, "b"), std::nullopt);
}

} // namespace
} // namespace tavrok::domain
