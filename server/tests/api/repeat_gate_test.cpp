#include "api/repeat_gate.h"

#include <gtest/gtest.h>

namespace tavrok::api {
namespace {

/** Requests of one key, by name, with what happened to them. */
class repeat_gate_test : public testing::Test {
protected:
    void enter(const std::string& name, const std::string& key = "k") {
        m_gate->enter(key, {[this, name] { started.push_back(name); },
                            [this, name](http::response same) { answers[name] = std::move(same); }});
    }
    void finish(const std::string& name, const std::string& body, const std::string& key = "k") {
        http::response out;
        out.body = body;
        m_gate->finish(
            key, [this, name](http::response own) { answers[name] = std::move(own); }, out,
            [this] { ++arrivals; });
    }

    std::vector<std::string> started;
    std::map<std::string, http::response> answers;
    int arrivals{0};
    std::shared_ptr<repeat_gate> m_gate = std::make_shared<repeat_gate>();
};

TEST_F(repeat_gate_test, keys_do_not_wait_for_each_other) {
    enter("a", "1");
    enter("b", "2");
    EXPECT_EQ(started, (std::vector<std::string>{"a", "b"}));
}

TEST_F(repeat_gate_test, what_comes_while_it_runs_gets_its_answer) {
    enter("first");
    enter("same");
    EXPECT_EQ(started, (std::vector<std::string>{"first"}));
    finish("first", "done");
    EXPECT_EQ(answers.at("first").body, "done");
    EXPECT_EQ(answers.at("same").body, "done");
    EXPECT_EQ(started.size(), 1u);
}

TEST_F(repeat_gate_test, what_comes_while_the_answer_is_on_its_way_waits_until_it_arrived) {
    enter("first");
    finish("first", "done");
    enter("later");
    EXPECT_EQ(started.size(), 1u);
    answers.at("first").on_sent(true);
    EXPECT_EQ(arrivals, 1);
    EXPECT_EQ(started, (std::vector<std::string>{"first", "later"}));
}

TEST_F(repeat_gate_test, a_lost_answer_lets_the_next_one_in_without_an_arrival) {
    enter("first");
    finish("first", "done");
    enter("later");
    answers.at("first").on_sent(false);
    EXPECT_EQ(arrivals, 0);
    EXPECT_EQ(started, (std::vector<std::string>{"first", "later"}));
}

TEST_F(repeat_gate_test, one_of_two_answers_that_arrives_is_an_arrival) {
    enter("first");
    enter("same");
    finish("first", "done");
    enter("later");
    answers.at("first").on_sent(false);
    EXPECT_EQ(started.size(), 1u);
    answers.at("same").on_sent(true);
    EXPECT_EQ(arrivals, 1);
    EXPECT_EQ(started, (std::vector<std::string>{"first", "later"}));
}

TEST_F(repeat_gate_test, an_answer_that_is_dropped_counts_as_lost) {
    enter("first");
    finish("first", "done");
    enter("later");
    answers.clear();
    EXPECT_EQ(arrivals, 0);
    EXPECT_EQ(started.size(), 2u);
}

TEST_F(repeat_gate_test, a_second_report_changes_nothing) {
    enter("first");
    finish("first", "done");
    const auto report = answers.at("first").on_sent;
    report(false);
    report(true);
    EXPECT_EQ(arrivals, 0);
}

TEST_F(repeat_gate_test, several_that_wait_go_one_at_a_time) {
    enter("first");
    finish("first", "done");
    enter("second");
    enter("third");
    answers.at("first").on_sent(true);
    EXPECT_EQ(started, (std::vector<std::string>{"first", "second"}));
    finish("second", "again");
    EXPECT_EQ(answers.at("third").body, "again");
}

TEST_F(repeat_gate_test, nothing_waits_for_the_arrival_of_an_answer_that_changed_nothing) {
    enter("first");
    m_gate->finish("k", [this](http::response own) { answers["first"] = std::move(own); }, {}, {});
    enter("next");
    EXPECT_EQ(started, (std::vector<std::string>{"first", "next"}));
}

} // namespace
} // namespace tavrok::api
