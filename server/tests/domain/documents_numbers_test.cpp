#include <cstdlib>
#include <ctime>

#include "domain/document_numbers.h"
#include "domain/documents_scene.h"

namespace tavrok::domain {
namespace {

using test::g_in;
using test::g_now;
using test::g_out;

/** The process's time zone, put back at the end. */
class time_zone {
public:
    explicit time_zone(const char* name) {
        if (const char* former = std::getenv("TZ")) m_former = former;
        set(name);
    }
    ~time_zone() { m_former ? set(m_former->c_str()) : unset(); }
    time_zone(const time_zone&) = delete;
    time_zone& operator=(const time_zone&) = delete;

private:
    static void set(const char* name) {
        setenv("TZ", name, 1);
        tzset();
    }
    static void unset() {
        unsetenv("TZ");
        tzset();
    }
    std::optional<std::string> m_former;
};

TEST(document_numbers, are_kind_day_and_four_digits_or_more) {
    EXPECT_EQ(document_number("CG", 20261121, 1), "CG20261121-0001");
    EXPECT_EQ(document_number("XS", 20261121, 9999), "XS20261121-9999");
    EXPECT_EQ(document_number("XS", 20261121, 10000), "XS20261121-10000");
    EXPECT_EQ(document_number("XS", 20261121, 1234567), "XS20261121-1234567");
}

TEST(document_numbers, have_the_day_of_the_services_time_zone) {
    constexpr std::int64_t new_year = 1'767'225'600; // 2026-01-01 00:00 UTC
    {
        const time_zone here("UTC");
        EXPECT_EQ(day_of(new_year), 20260101);
        EXPECT_EQ(day_of(new_year - 1), 20251231);
        EXPECT_EQ(day_of(0), 19700101);
    }
    {
        const time_zone here("CST-8");
        EXPECT_EQ(day_of(new_year - 1), 20260101);
        EXPECT_EQ(day_of(new_year - 8 * 3600), 20260101);
        EXPECT_EQ(day_of(new_year - 8 * 3600 - 1), 20251231);
    }
    const time_zone here("AST4");
    EXPECT_EQ(day_of(new_year), 20251231);
}

class documents_numbers : public test::documents_test {};
ON_EVERY_ENGINE(documents_numbers);

TEST_P(documents_numbers, tell_the_kinds_apart) {
    const time_zone here("UTC");
    const auto day = std::to_string(day_of(g_now));
    const auto number = [&](std::int64_t document) {
        const auto sn = sn_of(document);
        EXPECT_EQ(test::sn_day(sn), day) << sn;
        EXPECT_EQ(sn.substr(10), "-0001") << sn;
        return sn.substr(0, 2);
    };
    std::string letters;
    for (std::int64_t type = 1; type <= 7; ++type)
        letters += number(receive({line()}, type));
    EXPECT_EQ(letters, "CGSCXTLTJRJHQR");
    const auto stock = lines_of(g_in, newest_document()).at(0).stock;
    letters.clear();
    for (std::int64_t type = 1; type <= 6; ++type)
        letters += number(issue({from(stock, 1)}, type));
    EXPECT_EQ(letters, "CTXSLYJCHHQC");
}

TEST_P(documents_numbers, count_for_each_kind_day_and_company) {
    const time_zone here("UTC");
    constexpr std::int64_t day = 24 * 3600;
    const auto sequence = [&](std::int64_t document) { return sn_of(document).substr(11); };
    EXPECT_EQ(sequence(receive({line()}, 7)), "0001");
    EXPECT_EQ(sequence(receive({line()}, 7)), "0002");
    EXPECT_EQ(sequence(receive({line()}, 1)), "0001") << "another kind";
    EXPECT_EQ(sequence(receive({line()}, 7, g_now + day)), "0001") << "another day";
    EXPECT_EQ(sequence(receive({line()}, 7, g_now)), "0003") << "a clock that went back";
    us = them;
    boss = them.boss;
    EXPECT_EQ(sequence(receive({line()}, 7)), "0001") << "another company";
    EXPECT_EQ(in->number("SELECT count(*) FROM document WHERE sn IS NULL"), 0);
}

TEST_P(documents_numbers, have_no_gaps_after_refusals_and_are_never_given_twice) {
    const auto first = receive({line()});
    for (int i = 0; i < 3; ++i) {
        const auto draft = open(g_in, 7);
        put(g_in, draft, line());
        announce(line());
        EXPECT_NE(close(g_in, draft, 1), "");
        EXPECT_NE(attempt(g_out, header(g_out, 6), {from(lines_of(g_in, first).at(0).stock, 11)}), "");
    }
    const auto second = receive({line()});
    remove(g_in, second);
    const auto third = receive({line()});
    EXPECT_EQ(sn_of(first).substr(11), "0001");
    EXPECT_EQ(sn_of(second).substr(11), "0002");
    EXPECT_EQ(sn_of(third).substr(11), "0003") << "a deleted document keeps its number";
    EXPECT_EQ(in->number("SELECT count(*) FROM document_number WHERE kind = 'QC'"), 0);
}

TEST_P(documents_numbers, go_on_beyond_four_digits) {
    receive({line()});
    in->write([](store::connection& with) {
        with.execute({"test numbers", "UPDATE document_number SET last = 9999"}, {});
    });
    EXPECT_EQ(sn_of(receive({line()})).substr(10), "-10000");
}

} // namespace
} // namespace tavrok::domain
