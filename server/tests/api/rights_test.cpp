#include <gtest/gtest.h>

#include <algorithm>
#include <functional>

#include "api/endpoint.h"
#include "api/harness.h"
#include "api/registry.h"
#include "api/rights_samples.h"

namespace tavrok::test {
namespace {

class rights_test : public testing::TestWithParam<std::string> {
protected:
    struct request {
        const api::endpoint* what;
        sample one;
    };

    void SetUp() override {
        SKIP_WITHOUT(GetParam());
        world = std::make_unique<harness>(GetParam());
        owner = world->administrator("owner");
    }

    std::string fresh_partner(int kind) { return std::to_string(world->add_partner(owner, kind, "partner")); }

    std::vector<sample> samples(const std::string& path) { return samples_of(*world, owner, path); }

    /** The endpoints that need a session. */
    std::vector<const api::endpoint*> guarded() const {
        std::vector<const api::endpoint*> list;
        for (const auto& what : world->service->endpoints().all())
            if (what->allowed.needs != api::access::who::open) list.push_back(what.get());
        return list;
    }

    /** The samples of all these endpoints, made once: the n-th of each endpoint stand together. */
    std::vector<std::vector<request>> rounds() {
        std::vector<std::vector<request>> list;
        for (const auto* what : guarded()) {
            auto all = samples(what->path());
            list.resize(std::max(list.size(), all.size()));
            for (std::size_t i = 0; i < all.size(); ++i)
                list[i].push_back({what, std::move(all[i])});
        }
        return list;
    }

    /** Makes the requests and tells which were served and which refused from the service's own figures. As no
     * two of a round go to the same endpoint, the figures tell of each; reading them once a round is what
     * makes this test quick. */
    void expect_served(std::vector<request>& round, const std::string& cookie,
                       const std::function<bool(const sample&)>& open, const std::string& asker) {
        const auto before = world->figures();
        std::vector<std::string> answers;
        for (const auto& [what, one] : round)
            answers.push_back(
                world->ask({what->path(), one.body, cookie, "192.0.2.9", std::string(what->method)}).body);
        const auto after = world->figures();
        for (std::size_t i = 0; i < round.size(); ++i) {
            auto& [what, one] = round[i];
            const auto path = what->path();
            const auto more = [&](const char* outcome) {
                return after.at({path, outcome}) - before.at({path, outcome});
            };
            const bool opened = open(one);
            const auto label = path + " " + one.label + " for " + asker;
            EXPECT_EQ(more("answered"), opened ? 1 : 0) << label;
            EXPECT_EQ(more("refused"), opened ? 0 : 1) << label;
            if (!opened) {
                EXPECT_EQ(answers[i], api::failure_of(*what)) << label;
            }
            if (more("answered") == 1 && one.fresh) one.body = one.fresh();
        }
    }

    bool served(const api::endpoint& what, const std::string& body, const std::string& cookie) {
        const auto refused = world->counted(what.path(), "refused");
        const auto answered = world->counted(what.path(), "answered");
        const auto got = world->ask({what.path(), body, cookie, "192.0.2.9", std::string(what.method)}).body;
        const bool was_refused = world->counted(what.path(), "refused") == refused + 1;
        EXPECT_EQ(world->counted(what.path(), "answered"), answered + (was_refused ? 0 : 1)) << got;
        if (was_refused) {
            EXPECT_EQ(got, api::failure_of(what)) << what.path();
        }
        return !was_refused;
    }

    std::unique_ptr<harness> world;
    std::string owner;
};

TEST_P(rights_test, without_a_live_session_every_endpoint_answers_the_session_code) {
    const std::string dead(64, 'a');
    ASSERT_FALSE(guarded().empty());
    for (const auto* what : guarded()) {
        for (const auto& one : samples(what->path())) {
            for (const auto& cookie : {std::string(), dead}) {
                const wish asked{what->path(), one.body, cookie, "192.0.2.9", std::string(what->method)};
                EXPECT_EQ(world->ask(asked).body, "7") << what->path();
            }
        }
        for (const auto* garbled : {"", "nonsense", "\xFF"})
            EXPECT_EQ(world->ask(what->path(), garbled, dead).body, "7") << what->path();
    }
}

TEST_P(rights_test, an_administrator_may_do_everything_in_his_company) {
    for (auto& round : rounds())
        expect_served(
            round, owner, [](const sample& one) { return !one.operators_alone; }, "an administrator");
}

TEST_P(rights_test, an_administrator_of_the_operator_may_do_what_is_left_to_him_too) {
    const auto house = world->principal_of(world->operators_session()).company;
    const auto clerk = world->session_of(world->make_user(house, "clerk", 2, world->all_grants()));
    std::size_t count = 0;
    for (auto& round : rounds()) {
        std::erase_if(round, [](const request& each) { return !each.one.operators_alone; });
        count += round.size();
        expect_served(
            round, clerk, [](const sample&) { return false; }, "an ordinary user of the operator");
        expect_served(
            round, world->operators_session(), [](const sample&) { return true; },
            "the operator's administrator");
    }
    EXPECT_GE(count, 4u);
}

TEST_P(rights_test, without_a_grant_only_what_any_session_may_is_served) {
    const auto nobody = world->session_of(world->make_user(world->principal_of(owner).company, "nobody", 2));
    for (auto& round : rounds())
        expect_served(
            round, nobody, [](const sample& one) { return one.open({}); }, "nobody");
}

TEST_P(rights_test, each_single_grant_opens_what_it_should_and_nothing_else) {
    const auto company = world->principal_of(owner).company;
    auto requests = rounds();
    const auto grants = world->all_grants();
    ASSERT_GT(grants.size(), 60u);
    int number = 0;
    for (const auto& granted : grants) {
        const auto user = world->make_user(company, "user" + std::to_string(++number), 2, {granted});
        const auto cookie = world->session_of(user);
        for (auto& round : requests)
            expect_served(
                round, cookie, [&](const sample& one) { return one.open(granted); },
                granted.first + " " + granted.second);
    }
}

TEST_P(rights_test, any_partner_is_open_to_who_may_search_all_three_kinds) {
    const auto company = world->principal_of(owner).company;
    const std::vector<grant> two{{"company_supplier", "search"}, {"company_client", "search"}};
    auto three = two;
    three.emplace_back("company_other", "search");
    const auto some = world->session_of(world->make_user(company, "some", 2, two));
    const auto all = world->session_of(world->make_user(company, "all", 2, three));
    const auto& what = *world->service->endpoints().find("wms_company/get_page");
    EXPECT_FALSE(served(what, "type=4&page_num=1&page_size=10", some));
    EXPECT_TRUE(served(what, "type=4&page_num=1&page_size=10", all));
}

TEST_P(rights_test, no_company_sees_or_touches_the_data_of_another) {
    const auto other = world->administrator("other");
    const auto before = world->ask("wms_company/get_page", "type=4&page_num=1&page_size=200", owner).body;
    for (auto& round : rounds()) {
        // an id among the criteria of a page names no row: it finds nothing
        std::erase_if(round, [](const request& each) {
            const auto& keys = each.what->keys;
            const bool names_a_row = std::any_of(keys.begin(), keys.end(),
                                                 [](const auto& k) { return k.kind == api::key_kind::id; });
            return !names_a_row || each.what->answer == api::form::page || each.one.operators_alone;
        });
        expect_served(
            round, other, [](const sample&) { return false; }, "another company");
        expect_served(
            round, owner, [](const sample&) { return true; }, "the company itself");
    }
    const auto id = fresh_partner(1);
    for (const int kind : {1, 2, 3, 4}) {
        const auto body = "type=" + std::to_string(kind) + "&page_num=1&page_size=200";
        EXPECT_EQ(world->ask("wms_company/get_page", body, other).body,
                  R"({"list":[],"total":0,"page_count":0,"page_num":1})");
    }
    EXPECT_EQ(world->ask("wms_company/do_edit", "&id=" + id + "&name=stolen", other).body, "0");
    EXPECT_EQ(world->ask("wms_company/do_delete", "id=" + id, other).body, "0");
    EXPECT_NE(world->ask("wms_company/get_page", "type=1&name=partner&page_num=1&page_size=1", owner)
                  .body.find("\"id\":\"" + id + "\""),
              std::string::npos);
}

TEST_P(rights_test, the_operator_sees_no_customer_data_either) {
    const auto& chief = world->operators_session();
    const auto id = fresh_partner(2);
    EXPECT_EQ(world->ask("wms_company/do_delete", "id=" + id, chief).body, "0");
    EXPECT_EQ(world->ask("wms_company/get_page", "type=4&page_num=1&page_size=20", chief).body,
              R"({"list":[],"total":0,"page_count":0,"page_num":1})");
}

TEST(permitted, only_administrators_of_the_operator_pass_as_such) {
    const api::access rule{.needs = api::access::who::operator_administrator};
    const http::request request;
    const api::fields none;
    std::string answer;
    for (const bool chief : {false, true}) {
        for (const bool house : {false, true}) {
            domain::principal who;
            who.administrator = chief;
            who.operator_company = house;
            const api::context with{none, request, 0, nullptr, &who, answer};
            EXPECT_EQ(api::permitted(rule, with), chief && house);
        }
    }
}

INSTANTIATE_TEST_SUITE_P(engines, rights_test, testing::ValuesIn(engines()));

} // namespace
} // namespace tavrok::test
