#include <rapidcheck.h>

#include <map>
#include <set>

#include "domain/check.h"
#include "domain/staff_scene.h"

namespace tavrok::domain {
namespace {

using test::some_employee;
using test::utf8;

class employee_references : public test::on_staff {
protected:
    std::optional<std::int64_t> find(const std::string& text) { return find_in(in->company, text); }
    std::optional<std::int64_t> find_in(std::int64_t company, const std::string& text) {
        return in->read([&](store::connection& with) { return find_employee(with, company, text); });
    }
    std::int64_t resolve(const std::string& text) {
        return in->read([&](store::connection& with) { return resolve_employee(with, in->company, text); });
    }
};
ON_EVERY_ENGINE(employee_references);

/** Written down a second time, byte by byte. */
bool fits(std::int64_t id) {
    static const std::set<std::int64_t> no{0,   '0', '1', '2', '3', '4', '5', '6', '7',  '8',  '9', '&',
                                           '=', '+', '%', 9,   10,  11,  12,  13,  0x20, 0x85, 0xa0};
    return !no.contains(id % 256);
}

TEST(employee_ids, have_a_low_byte_that_can_stand_for_them) {
    int good = 0;
    for (std::int64_t id = 1024; id < 1024 + 256; ++id) {
        EXPECT_EQ(may_name_employee(id), fits(id)) << id;
        if (may_name_employee(id)) ++good;
    }
    EXPECT_EQ(good, 256 - 23);
    EXPECT_TRUE(rc::check([] {
        const auto id = *rc::gen::inRange<std::int64_t>(1001, INT64_MAX);
        RC_ASSERT(may_name_employee(id) == fits(id));
    }));
}

TEST_P(employee_references, ids_leave_out_what_cannot_stand_for_an_employee) {
    std::int64_t last = 1000;
    for (int i = 0; i < 260; ++i) {
        const auto id = in->hire(in->chief, some_employee(std::to_string(i)));
        EXPECT_TRUE(fits(id)) << id;
        for (auto between = last + 1; between < id; ++between)
            EXPECT_FALSE(fits(between)) << "left out for no reason: " << between;
        last = id;
    }
    EXPECT_GT(last, 1000 + 256) << "once around";
    const auto found = in->read([](store::connection& with) { return check(with); });
    EXPECT_TRUE(found.empty()) << found.front().text;
}

TEST_P(employee_references, are_ids_in_digits_or_the_letter_of_the_low_byte) {
    in->continue_ids_after(1200);
    const auto id = in->hire(in->chief, some_employee("1")); // 1201 = 0x4b1
    ASSERT_EQ(id, 1201);
    EXPECT_EQ(find("1201"), id);
    EXPECT_EQ(find("\xc2\xb1"), id) << "U+00B1";
    EXPECT_EQ(resolve("±"), id);
    for (const std::string text : {"",
                                   " ",
                                   "1",
                                   "7",
                                   "01",
                                   "1202",
                                   " 1201",
                                   "1201 ",
                                   "+1201",
                                   "-1201",
                                   "1201.0",
                                   "0x4b1",
                                   "±±",
                                   "±1",
                                   "\xb1",
                                   "\xc2",
                                   "ű",
                                   "仓",
                                   "99999999999999999999",
                                   "１２０１",
                                   "\xf0\x9f\x98\x80"}) {
        EXPECT_EQ(find(text), std::nullopt) << text;
        EXPECT_THROW(resolve(text), refused) << text;
    }
    EXPECT_EQ(find(std::string(1, '\0')), std::nullopt);
    EXPECT_EQ(find_in(in->another("二号").company, "1201"), std::nullopt);
    EXPECT_EQ(find_in(in->another("三号").company, "±"), std::nullopt);
}

TEST_P(employee_references, a_letter_that_could_be_two_is_nobodys) {
    in->continue_ids_after(1200);
    const auto first = in->hire(in->chief, some_employee("1"));
    in->continue_ids_after(1200 + 256);
    const auto second = in->hire(in->chief, some_employee("2"));
    ASSERT_EQ(first % 256, second % 256);
    EXPECT_EQ(find("±"), std::nullopt);
    EXPECT_EQ(find(std::to_string(first)), first);
    in->dismiss(in->chief, first);
    EXPECT_EQ(find("±"), second) << "who has gone is not meant";
    EXPECT_EQ(find(std::to_string(first)), std::nullopt);
    in->continue_ids_after(1200 + 512);
    in->hire(in->another("二号"), some_employee("1"));
    EXPECT_EQ(find("±"), second) << "nor is another company's";
}

/** Random staff of two companies, ids strewn over the whole range, some gone; then any text. */
TEST_P(employee_references, mean_what_an_oracle_says) {
    const auto other = in->another("二号");
    std::map<std::int64_t, std::int64_t> live; // id and company
    std::vector<std::int64_t> ids;
    std::int64_t last = 1000;
    EXPECT_TRUE(rc::check([&] {
        const auto steps = *rc::gen::inRange(0, 4);
        for (int i = 0; i < steps; ++i) {
            last += *rc::gen::inRange(0, 400);
            in->continue_ids_after(last);
            const auto& who = *rc::gen::inRange(0, 2) == 0 ? in->chief : other;
            last = in->hire(who, some_employee(std::to_string(last)));
            RC_ASSERT(fits(last));
            live[last] = who.company;
            ids.push_back(last);
            if (*rc::gen::inRange(0, 3) != 0) continue;
            const auto gone = std::next(live.begin(), *rc::gen::inRange<int>(0, live.size()));
            in->dismiss(gone->second == other.company ? other : in->chief, gone->first);
            live.erase(gone);
        }
        for (int i = 0; i < 20; ++i) {
            const bool digits = *rc::gen::arbitrary<bool>() && !ids.empty();
            const auto letter = *rc::gen::inRange<unsigned>(1, 0x120);
            const auto number = digits ? *rc::gen::elementOf(ids) + *rc::gen::element(0, 0, 1) : 0;
            const auto company = *rc::gen::element(in->company, other.company);
            std::vector<std::int64_t> meant;
            for (const auto& [id, of] : live) {
                if (of != company) continue;
                const bool by_letter = letter < 0x100 && (letter < '0' || letter > '9') && id % 256 == letter;
                if (digits ? id == number : by_letter) meant.push_back(id);
            }
            const auto found = find_in(company, digits ? std::to_string(number) : utf8(letter));
            RC_ASSERT(found == (meant.size() == 1 ? std::optional(meant.front()) : std::nullopt));
        }
    }));
}

} // namespace
} // namespace tavrok::domain
