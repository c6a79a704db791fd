#include <algorithm>
#include <cstdlib>
#include <iostream>

#include "domain/check.h"
#include "domain/ledger_player.h"

namespace tavrok::domain {
namespace {

class ledger_model : public test::on_engine {};
ON_EVERY_ENGINE(ledger_model);

constexpr int g_plays_on_one_database = 40;
constexpr int g_most_steps = 36;

std::uint64_t environment(const char* name, std::uint64_t otherwise) {
    const char* set = std::getenv(name);
    return set != nullptr && *set != '\0' ? std::strtoull(set, nullptr, 10) : otherwise;
}

/** Plays one sequence; false where it failed, with all that is needed to play it again. */
bool play(test::scene& in, std::uint64_t seed, test::play_figures& figures) {
    test::ledger_player player(in, seed, figures);
    try {
        player.begin();
        player.play(5 + static_cast<int>(seed * 7919 % g_most_steps));
    } catch (const std::exception& wrong) {
        ADD_FAILURE() << "TAVROK_LEDGER_SEED=" << seed << " plays it again\n"
                      << player.story() << wrong.what();
        return false;
    }
    const auto found = in.read([](store::connection& with) { return check(with); });
    for (const auto& one : found)
        ADD_FAILURE() << "TAVROK_LEDGER_SEED=" << seed << " plays it again\n"
                      << player.story() << one.rule << ": " << one.text;
    return found.empty();
}

/** 300 sequences, 100 where each statement goes to a server; TAVROK_NIGHTLY=1 plays 10,000 others on each,
 * TAVROK_LEDGER_SEED=number plays one. */
TEST_P(ledger_model, is_what_an_oracle_expects_whatever_fails) {
    // The play is about what is undone, not about what a power cut leaves: the server need not wait for its
    // disk.
    const std::string relax =
        "DO 'BEGIN EXECUTE format($$ALTER DATABASE %I SET synchronous_commit = off$$, "
        "current_database()); END'";
    const auto one = environment("TAVROK_LEDGER_SEED", 0);
    const bool nightly = environment("TAVROK_NIGHTLY", 0) != 0;
    const auto first = one != 0 ? one : nightly ? 1'000'001 : 1;
    const auto count = one != 0 ? 1 : nightly ? 10'000 : GetParam() == "sqlite" ? 300 : 100;
    test::play_figures figures;
    std::unique_ptr<test::scene> in;
    for (std::uint64_t i = 0; i < static_cast<std::uint64_t>(count); ++i) {
        if (i % g_plays_on_one_database == 0) {
            in = std::make_unique<test::scene>(GetParam());
            if (GetParam() == "postgresql") {
                in->write([&](store::connection& with) { with.execute({"", relax}, {}); });
                in->database().close();
            }
        }
        if (!play(*in, first + i, figures)) return;
    }
    if (one != 0) return;
    for (const auto& [what, times] : figures)
        std::cout << what << ' ' << times << '\n';
    for (const char* what : {"open done",
                             "open refused",
                             "line done",
                             "line refused",
                             "announce done",
                             "announce refused",
                             "drop done",
                             "drop refused",
                             "close inbound done",
                             "close inbound dropped",
                             "close inbound refused",
                             "close outbound done",
                             "close outbound dropped",
                             "close outbound refused",
                             "delete inbound done",
                             "delete inbound refused",
                             "delete outbound done",
                             "delete outbound refused",
                             "count done",
                             "count refused",
                             "close taking done",
                             "close taking dropped",
                             "close taking refused",
                             "delete taking done",
                             "delete taking refused",
                             "move done",
                             "move refused",
                             "delete transfer done",
                             "delete transfer refused",
                             "summary done",
                             "claim done",
                             "claim refused",
                             "claim over",
                             "hold done",
                             "hold refused",
                             "give back done",
                             "retire done",
                             "retire refused",
                             "add goods done"}) {
        EXPECT_GT(figures[what], 1) << "too rare to say anything: " << what;
    }
    EXPECT_GT(figures["failure injected"], count);
}

} // namespace
} // namespace tavrok::domain
