#include "domain/count_cache.h"

#include <gtest/gtest.h>

#include <atomic>
#include <future>
#include <latch>
#include <stdexcept>
#include <vector>

namespace tavrok::domain {
namespace {

count_cache::shared_ids some_ids(int count) {
    auto made = std::make_shared<id_list>();
    for (std::int64_t id = 1000 + count; id > 1000; --id)
        made->add(id);
    made->close();
    return made;
}

TEST(count_cache, a_list_holds_for_its_company_version_and_criteria) {
    count_cache cache;
    const auto ids = some_ids(42);
    cache.keep(1, 5, "a", ids);
    EXPECT_EQ(cache.find(1, 5, "a"), ids);
    EXPECT_EQ(cache.find(1, 6, "a"), nullptr);
    EXPECT_EQ(cache.find(2, 5, "a"), nullptr);
    EXPECT_EQ(cache.find(1, 5, "b"), nullptr);
}

TEST(count_cache, a_late_list_of_an_older_version_replaces_nothing) {
    count_cache cache;
    const auto newer = some_ids(43);
    cache.keep(1, 6, "a", newer);
    cache.keep(1, 5, "a", some_ids(42));
    EXPECT_EQ(cache.find(1, 6, "a"), newer);
    const auto newest = some_ids(44);
    cache.keep(1, 7, "a", newest);
    EXPECT_EQ(cache.find(1, 7, "a"), newest);
    EXPECT_EQ(cache.size(), 1U);
}

TEST(count_cache, is_bounded_and_forgets_what_was_not_asked_for) {
    count_cache measure;
    measure.keep(1, 1, "a", some_ids(1000));
    count_cache cache(3 * measure.bytes());
    for (const char* one : {"a", "b", "c"})
        cache.keep(1, 1, one, some_ids(1000));
    EXPECT_NE(cache.find(1, 1, "a"), nullptr);
    cache.keep(1, 1, "d", some_ids(1000));
    EXPECT_EQ(cache.size(), 3U);
    EXPECT_NE(cache.find(1, 1, "a"), nullptr);
    EXPECT_EQ(cache.find(1, 1, "b"), nullptr);
    EXPECT_EQ(cache.bytes(), 3 * measure.bytes());
}

TEST(count_cache, makes_room_for_a_large_list_and_keeps_none_that_is_too_large) {
    count_cache cache(20'000);
    for (int i = 0; i < 20; ++i)
        cache.keep(1, 1, std::to_string(i), some_ids(100));
    EXPECT_EQ(cache.size(), 20U);
    cache.keep(1, 1, "large", some_ids(10'000));
    EXPECT_NE(cache.find(1, 1, "large"), nullptr);
    EXPECT_LT(cache.size(), 20U);
    EXPECT_LE(cache.bytes(), 20'000U);
    cache.keep(1, 2, "large", some_ids(100'000));
    EXPECT_EQ(cache.find(1, 2, "large"), nullptr);
    EXPECT_EQ(cache.find(1, 1, "large"), nullptr) << "it is of an older version";
    EXPECT_NE(cache.find(1, 1, "19"), nullptr);
}

TEST(count_cache, a_list_lives_while_somebody_reads_it) {
    count_cache cache(2'000);
    cache.keep(1, 1, "a", some_ids(1000));
    const auto reading = cache.find(1, 1, "a");
    cache.keep(1, 1, "b", some_ids(1000));
    EXPECT_EQ(cache.find(1, 1, "a"), nullptr);
    EXPECT_EQ(reading->part(999, 5), std::vector<std::int64_t>{1001});
}

TEST(count_cache, is_asked_by_many_and_made_by_one) {
    count_cache cache;
    std::latch all_there(8);
    std::atomic<int> made{0};
    std::vector<std::future<count_cache::shared_ids>> answers;
    for (int i = 0; i < 8; ++i) {
        answers.push_back(std::async(std::launch::async, [&] {
            all_there.arrive_and_wait();
            return cache.find_or_make(1, 1, "a", [&] {
                ++made;
                return some_ids(1000);
            });
        }));
    }
    const auto first = answers.front().get();
    for (std::size_t i = 1; i < answers.size(); ++i)
        EXPECT_EQ(answers[i].get(), first);
    EXPECT_EQ(made, 1);
}

TEST(count_cache, a_list_that_cannot_be_made_is_made_by_the_next) {
    count_cache cache;
    const auto fail = []() -> count_cache::shared_ids { throw std::runtime_error("no"); };
    EXPECT_THROW(cache.find_or_make(1, 1, "a", fail), std::runtime_error);
    const auto ids = some_ids(3);
    EXPECT_EQ(cache.find_or_make(1, 1, "a", [&] { return ids; }), ids);
    EXPECT_EQ(cache.find_or_make(1, 2, "a", [&] { return some_ids(4); })->size(), 4);
}

} // namespace
} // namespace tavrok::domain
