#include <barrier>
#include <functional>
#include <thread>

#include "domain/check.h"
#include "domain/staff_scene.h"

namespace tavrok::domain {
namespace {

using test::some_employee;
using test::some_warehouse;

/** How many of the wishes that were made at the same instant came true; the others must have been refused. */
int at_once(int count, const std::function<void(int)>& wish) {
    std::barrier start(count);
    std::atomic<int> done{0};
    std::vector<std::jthread> threads;
    for (int i = 0; i < count; ++i) {
        threads.emplace_back([&, i] {
            start.arrive_and_wait();
            try {
                wish(i);
                ++done;
            } catch (const refused&) {
                return;
            } catch (const std::exception& failure) {
                ADD_FAILURE() << "neither done nor refused: " << failure.what();
            }
        });
    }
    threads.clear();
    return done;
}

class staff_races : public test::on_staff {
protected:
    static constexpr int rounds = 15;
    static constexpr int racers = 4;
    std::int64_t defaults(const std::string& table) {
        return in->number("SELECT count(*) FROM " + table + " WHERE isdefault = 1 AND state = 1");
    }
    void prove() {
        for (const auto& one : in->read([](store::connection& with) { return check(with); }))
            ADD_FAILURE() << one.text;
    }
};
ON_EVERY_ENGINE(staff_races);

TEST_P(staff_races, many_new_default_employees_leave_one) {
    for (int round = 0; round < rounds; ++round) {
        const auto done = at_once(racers, [&](int i) {
            auto what = some_employee(std::to_string(round) + "-" + std::to_string(i));
            what.isdefault = 1;
            in->hire(in->chief, what);
        });
        ASSERT_EQ(done, racers);
        ASSERT_EQ(defaults("employee"), 1);
    }
    EXPECT_EQ(in->employees(in->chief).total, rounds * racers);
    prove();
}

TEST_P(staff_races, many_edits_to_the_default_employee_leave_one) {
    std::vector<employee> all;
    for (int i = 0; i < racers; ++i) {
        all.push_back(some_employee(std::to_string(i)));
        all.back().id = in->hire(in->chief, all.back());
        all.back().isdefault = 1;
    }
    for (int round = 0; round < rounds; ++round) {
        ASSERT_EQ(at_once(racers, [&](int i) { in->edit(in->chief, all.at(static_cast<std::size_t>(i))); }),
                  racers);
        ASSERT_EQ(defaults("employee"), 1);
    }
}

TEST_P(staff_races, many_default_warehouses_leave_one) {
    const auto keeper = std::to_string(in->hire(in->chief, some_employee("1")));
    auto what = some_warehouse("甲");
    what.isdefault = 1;
    auto kept = what;
    kept.id = in->open(in->chief, kept, keeper);
    for (int round = 0; round < rounds; ++round) {
        const auto done = at_once(racers, [&](int i) {
            if (i % 2 == 0) {
                in->open(in->chief, what, keeper);
            } else {
                in->edit(in->chief, kept, keeper);
            }
        });
        ASSERT_EQ(done, racers);
        ASSERT_EQ(defaults("warehouse"), 1);
    }
    prove();
}

TEST_P(staff_races, one_mark_goes_to_one_employee) {
    for (int round = 0; round < rounds; ++round) {
        const auto done = at_once(racers, [&](int i) {
            // the same mark as another kind of letter
            in->hire(in->chief, some_employee((i % 2 == 0 ? "a-" : "A-") + std::to_string(round)));
        });
        ASSERT_EQ(done, 1);
    }
    EXPECT_EQ(in->employees(in->chief).total, rounds);
    prove();
}

TEST_P(staff_races, an_employee_goes_once) {
    for (int round = 0; round < rounds; ++round) {
        const auto id = in->hire(in->chief, some_employee("1"));
        ASSERT_EQ(at_once(racers, [&](int) { in->dismiss(in->chief, id); }), 1);
    }
    EXPECT_EQ(in->employees(in->chief).total, 0);
    prove();
}

TEST_P(staff_races, companies_that_hire_at_once_get_ids_of_their_own) {
    const auto other = in->another("二号");
    for (int round = 0; round < rounds; ++round) {
        ASSERT_EQ(at_once(racers,
                          [&](int i) {
                              in->hire(i % 2 == 0 ? in->chief : other,
                                       some_employee(std::to_string(round) + "-" + std::to_string(i)));
                          }),
                  racers);
    }
    EXPECT_EQ(in->number("SELECT count(DISTINCT id) FROM employee"), rounds * racers);
    prove();
}

} // namespace
} // namespace tavrok::domain
