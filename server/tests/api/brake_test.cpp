#include "api/brake.h"

#include <gtest/gtest.h>

namespace tavrok::api {
namespace {

int allowed(brake& held, const std::string& peer, std::int64_t now, int tries = 100) {
    int count = 0;
    for (int i = 0; i < tries; ++i)
        count += held.allow(peer, now) ? 1 : 0;
    return count;
}

TEST(brake, lets_a_burst_through_and_then_one_every_so_often) {
    brake held(20, 3);
    EXPECT_EQ(allowed(held, "192.0.2.1", 1000), 20);
    EXPECT_EQ(allowed(held, "192.0.2.1", 1002), 0);
    EXPECT_EQ(allowed(held, "192.0.2.1", 1003), 1);
    EXPECT_EQ(allowed(held, "192.0.2.1", 1012), 3);
    EXPECT_EQ(allowed(held, "192.0.2.1", 2000), 20) << "never more than the burst";
}

TEST(brake, counts_each_address_by_itself) {
    brake held(2, 3);
    EXPECT_EQ(allowed(held, "192.0.2.1", 1000), 2);
    EXPECT_EQ(allowed(held, "192.0.2.2", 1000), 2);
    EXPECT_EQ(allowed(held, "2001:db8:1:2::1", 1000), 2);
    EXPECT_EQ(allowed(held, "2001:db8:1:2:ffff::9", 1000), 0) << "one network, one peer";
    EXPECT_EQ(allowed(held, "2001:db8:1:3::1", 1000), 2);
    EXPECT_EQ(allowed(held, "::ffff:192.0.2.7", 1000), 2);
    EXPECT_EQ(allowed(held, "::ffff:192.0.2.8", 1000), 2);
}

TEST(brake, forgets_the_quietest_address_when_it_knows_too_many) {
    brake held(2, 3, 2);
    EXPECT_EQ(allowed(held, "a", 1000, 1), 1);
    EXPECT_EQ(allowed(held, "b", 1000), 2);
    EXPECT_EQ(allowed(held, "c", 1000), 2);
    EXPECT_EQ(allowed(held, "b", 1000), 0) << "the busy one is still known";
    EXPECT_EQ(allowed(held, "a", 1000), 2) << "the quiet one had to go";
}

TEST(brake, a_clock_that_is_set_back_holds_nobody_for_long) {
    brake held(2, 3);
    EXPECT_EQ(allowed(held, "a", 1'000'000), 2);
    EXPECT_EQ(allowed(held, "a", 1000), 0);
    EXPECT_EQ(allowed(held, "a", 1006), 2);
}

} // namespace
} // namespace tavrok::api
