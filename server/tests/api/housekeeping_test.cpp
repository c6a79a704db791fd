#include <gtest/gtest.h>

#include <thread>

#include "api/documents_world.h"
#include "api/faulty_database.h"
#include "api/harness.h"

namespace tavrok::test {
namespace {

using fault = faulty_database::fault;
constexpr std::chrono::milliseconds at_once{0};
constexpr std::int64_t long_gone = 3 * 3600;

class housekeeping_test : public testing::TestWithParam<std::string> {
protected:
    void SetUp() override {
        SKIP_WITHOUT(GetParam());
        world = std::make_unique<harness>(GetParam());
        cookie = world->administrator("owner");
        with = std::make_unique<documents_world>(world->as(cookie));
        clerk = world->session_of(world->make_user(world->principal_of(cookie).company, "clerk", 1));
        faulty = std::make_unique<faulty_database>(*world->database);
    }
    /** A row of ten and a claim of the clerk on three of them. */
    std::string claimed_row() {
        const auto row = with->stock("10", "1.00", "10.00");
        EXPECT_EQ(
            world->ask("wms_stock_detail/lock_stock", "lock_type=3&id=" + row + "&amount=3", clerk).body[0],
            'L');
        return row;
    }
    /** From now on nobody can end a claim on that row. */
    void damage(const std::string& row) { change("UPDATE stock SET claimed = 0 WHERE id = " + row); }
    void change(const std::string& sql) {
        store::write_now(*world->database, [&](store::connection& db) { db.execute({"", sql}, {}); });
    }
    std::int64_t number(const std::string& sql) {
        std::int64_t found = -1;
        store::read_now(*world->database, [&](store::connection& db) {
            db.query({"", sql}, {}, [&](const store::row& one) { found = one.integer(0); });
        });
        return found;
    }
    std::int64_t claims_on(const std::string& row) {
        return number("SELECT count(*) FROM claim WHERE state = 1 AND stock = " + row);
    }
    /** Waits until the timer has something to do again. */
    static void wait_for(const hand_timer& timer) {
        const auto until = std::chrono::steady_clock::now() + std::chrono::seconds(60);
        while (timer.waiting() == 0 && std::chrono::steady_clock::now() < until)
            std::this_thread::yield();
        EXPECT_EQ(timer.waiting(), 1u);
    }
    /** What the first sweep of a new service does. */
    void start_and_sweep() {
        hand_timer timer;
        const auto second = api::service::make(
            *faulty, {}, [this] { return world->now.load(); },
            [&timer](std::chrono::milliseconds delay, std::function<void()> task) {
                timer.after(delay, std::move(task));
            });
        timer.turn(at_once);
        wait_for(timer);
        second->drain();
        timer.turn(std::chrono::minutes(1));
    }

    std::unique_ptr<harness> world;
    std::unique_ptr<documents_world> with;
    std::unique_ptr<faulty_database> faulty;
    std::string cookie;
    std::string clerk;
};

TEST_P(housekeeping_test, a_service_sweeps_at_its_start) {
    const auto row = claimed_row();
    world->now += long_gone;
    start_and_sweep();
    EXPECT_EQ(claims_on(row), 0);
    EXPECT_EQ(number("SELECT claimed FROM stock WHERE id = " + row), 0);
}

TEST_P(housekeeping_test, a_row_that_cannot_be_swept_keeps_no_other_from_it) {
    const auto bad = claimed_row();
    const auto good = claimed_row();
    damage(bad);
    with->inbound_draft("1", "1.00", "1.00");
    world->now += long_gone;
    start_and_sweep();
    EXPECT_EQ(claims_on(bad), 1);
    EXPECT_EQ(claims_on(good), 0);
    EXPECT_EQ(number("SELECT count(*) FROM draft"), 0);
}

TEST_P(housekeeping_test, a_part_of_the_sweep_that_fails_keeps_no_other_from_it) {
    const auto row = claimed_row();
    with->inbound_draft("1", "1.00", "1.00");
    world->now += long_gone;
    faulty->next = fault::refuse_write;
    start_and_sweep();
    EXPECT_EQ(claims_on(row), 0);
    EXPECT_EQ(number("SELECT count(*) FROM draft"), 0);
}

TEST_P(housekeeping_test, a_return_that_cannot_be_noted_keeps_no_arrival_from_it) {
    damage(claimed_row());
    world->timer.turn(std::chrono::seconds(10));
    world->now += long_gone;
    world->ask("wms_stock_detail/get_page", "&page_num=1&page_size=20", clerk);
    with->added("wms_company/do_add", "type=1&name=arrived&phone=1&address=a");
    const std::string known =
        "SELECT count(*) FROM repeat_record WHERE delivered = 1 AND path = "
        "'wms_company/do_add' AND answered_at = " +
        std::to_string(world->now.load());
    EXPECT_EQ(number(known), 0);
    wait_for(world->timer);
    world->timer.turn(std::chrono::milliseconds(100));
    wait_for(world->timer); // to try the return once more
    EXPECT_EQ(number(known), 1);
}

TEST_P(housekeeping_test, a_return_is_noted_whatever_becomes_of_the_request) {
    const auto row = claimed_row();
    world->now += long_gone;
    EXPECT_EQ(world->ask("wms_company/do_delete", "id=987654321", clerk).body, "0");
    EXPECT_EQ(claims_on(row), 0);
    EXPECT_EQ(world->principal_of(clerk).last_used, world->now.load());
}

INSTANTIATE_TEST_SUITE_P(engines, housekeeping_test, testing::ValuesIn(engines()));

} // namespace
} // namespace tavrok::test
