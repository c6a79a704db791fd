#pragma once

#include <gtest/gtest.h>

#include <cstdint>
#include <optional>
#include <string>
#include <utility>

#include "domain/accounts.h"
#include "domain/grants.h"
#include "domain/partners.h"
#include "domain/sessions.h"
#include "support/scratch_database.h"

namespace tavrok::test {

/** The moment at which the scenes begin. */
inline constexpr std::int64_t g_now = 1'780'000'000;

/** A database with one company, its administrator "boss" and an ordinary user "hand" without grants. */
class scene {
public:
    explicit scene(const std::string& engine);

    /** Runs `what(connection&)` in one transaction and gives its result. */
    template <typename what_t>
    auto write(what_t&& what) {
        return run(what, [this](const store::job& job) { store::write_now(*m_database, job); });
    }
    template <typename what_t>
    auto read(what_t&& what) {
        return run(what, [this](const store::job& job) { store::read_now(*m_database, job); });
    }

    scratch_database& database() { return m_database; }
    std::int64_t company{0};
    domain::user_key boss{};
    domain::user_key hand{};

    /** The principal of a session that is opened for the user now. */
    domain::principal log_in(const domain::user_key& whom, std::int64_t now = g_now);
    /** An account whose stored hash is no real one: the tests say themselves what verifying gave. */
    domain::user_key user(std::int64_t company, const std::string& name, int type);
    /** One integer out of the database. */
    std::int64_t number(const std::string& sql);

private:
    template <typename what_t, typename how_t>
    auto run(what_t& what, how_t how) {
        using result = decltype(what(std::declval<store::connection&>()));
        if constexpr (std::is_void_v<result>) {
            how([&](store::connection& with) { what(with); });
        } else {
            std::optional<result> made;
            how([&](store::connection& with) { made = what(with); });
            return *std::move(made);
        }
    }

    scratch_database m_database;
};

/** A partner with every text filled. */
domain::partner some_partner(int type, const std::string& name);

/** How many rows of a list a company's statements see: all of its rows, and the row with that id. */
std::int64_t rows_seen(store::connection& with, const store::listing& list, std::int64_t company,
                       std::int64_t id);

/** Tests of a rule that must hold on every engine. */
class on_engine : public testing::TestWithParam<std::string> {
protected:
    void SetUp() override { SKIP_WITHOUT(GetParam()); }
};

#define ON_EVERY_ENGINE(suite)                                                           \
    INSTANTIATE_TEST_SUITE_P(engines, suite, testing::ValuesIn(tavrok::test::engines()), \
                             [](const auto& one) { return one.param; })

} // namespace tavrok::test
