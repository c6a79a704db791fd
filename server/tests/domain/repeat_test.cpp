#include "domain/repeat.h"

#include "domain/passwords.h"
#include "domain/scene.h"

namespace tavrok::domain {
namespace {

using test::g_now;

class repeats : public test::on_engine {
protected:
    std::optional<std::string> find(test::scene& in, const principal& who, const std::string& body,
                                    std::int64_t now = g_now, const std::string& path = "a/b") {
        return in.read([&](store::connection& with) -> std::optional<std::string> {
            auto kept = recall(with, who, path, body_hash("pepper", body), now);
            if (kept.id == 0 || kept.delivered) return std::nullopt;
            return std::move(kept.answer);
        });
    }
    std::int64_t keep(test::scene& in, const principal& who, const std::string& body,
                      const std::string& answer, std::int64_t now = g_now) {
        return in.write([&](store::connection& with) {
            const auto hash = body_hash("pepper", body);
            return remember(with, who, "a/b", hash, answer, now, recall(with, who, "a/b", hash, now).id);
        });
    }
};
ON_EVERY_ENGINE(repeats);

TEST_P(repeats, get_the_former_answer) {
    test::scene in(GetParam());
    const auto who = in.log_in(in.boss);
    EXPECT_EQ(find(in, who, "x=1"), std::nullopt);
    keep(in, who, "x=1", "answer");
    EXPECT_EQ(find(in, who, "x=1"), "answer");
    EXPECT_EQ(find(in, who, "x=2"), std::nullopt);
    EXPECT_EQ(find(in, who, "x=1", g_now, "a/c"), std::nullopt);
    EXPECT_EQ(find(in, in.log_in(in.boss), "x=1"), std::nullopt);
}

TEST_P(repeats, are_none_once_the_answer_arrived) {
    test::scene in(GetParam());
    const auto who = in.log_in(in.boss);
    const auto id = keep(in, who, "x=1", "answer");
    const auto other = in.log_in(in.boss);
    in.write([&](store::connection& with) { delivered(with, other, id); });
    EXPECT_EQ(find(in, who, "x=1"), "answer") << "another session delivered nothing";
    in.write([&](store::connection& with) { delivered(with, who, id); });
    EXPECT_EQ(find(in, who, "x=1"), std::nullopt);
}

TEST_P(repeats, a_new_wish_replaces_the_old_answer_and_its_delivery) {
    test::scene in(GetParam());
    const auto who = in.log_in(in.boss);
    const auto first = keep(in, who, "x=1", "one");
    in.write([&](store::connection& with) { delivered(with, who, first); });
    keep(in, who, "x=1", "two", g_now + 1);
    EXPECT_EQ(find(in, who, "x=1", g_now + 1), "two");
    in.write([&](store::connection& with) { delivered(with, who, first); });
    EXPECT_EQ(find(in, who, "x=1", g_now + 1), "two") << "a late mark for the first must not hit the second";
}

TEST_P(repeats, an_answer_that_nobody_looked_at_is_not_replaced) {
    test::scene in(GetParam());
    const auto who = in.log_in(in.boss);
    keep(in, who, "x=1", "elsewhere");
    const auto hash = body_hash("pepper", "x=1");
    const auto blindly = [&](store::connection& with) { remember(with, who, "a/b", hash, "here", g_now, 0); };
    try {
        in.write(blindly);
        ADD_FAILURE() << "the same request takes effect twice";
    } catch (const store::error& error) {
        EXPECT_EQ(error.kind(), store::error_kind::unique);
    }
    EXPECT_EQ(find(in, who, "x=1"), "elsewhere");
}

TEST_P(repeats, are_forgotten_after_two_minutes) {
    test::scene in(GetParam());
    const auto who = in.log_in(in.boss);
    keep(in, who, "x=1", "answer");
    EXPECT_EQ(find(in, who, "x=1", g_now + 119), "answer");
    EXPECT_EQ(find(in, who, "x=1", g_now + 120), std::nullopt);
    keep(in, who, "x=2", "other", g_now + 121);
    EXPECT_EQ(in.number("SELECT count(*) FROM repeat_record"), 1);
}

TEST_P(repeats, go_with_their_session) {
    test::scene in(GetParam());
    keep(in, in.log_in(in.boss), "x=1", "answer");
    in.write([&](store::connection& with) { void_access(with, in.company, in.boss.user); });
    EXPECT_EQ(in.number("SELECT count(*) FROM repeat_record"), 0);
}

} // namespace
} // namespace tavrok::domain
