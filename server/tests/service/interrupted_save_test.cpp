#include <gtest/gtest.h>

#include <csignal>
#include <ctime>
#include <tuple>

#include "documents_site.h"
#include "domain/sessions.h"

namespace tavrok::test {

namespace {

/** One save as the client sends it: the header, lines, and what closes the document if anything does. Steps
 * behind the header name the draft that the header's answer gave. */
class save {
public:
    /** `before` and `after` stand around the id of the draft; a step without `before` does not name it. */
    struct request {
        std::string path, before, after;
    };
    explicit save(std::vector<request> steps) : m_steps(std::move(steps)) {}

    /** Sends a step; true where the service will have had it whole. */
    bool send(wire& by, int step) {
        const auto& one = m_steps[static_cast<std::size_t>(step)];
        return by.send(one.path, one.before.empty() ? one.after : one.before + m_draft + one.after);
    }
    /** The answer to the step just sent; false where it was refused or none came. */
    bool read(wire& by, int step) {
        const auto answer = by.read();
        if (!answer) return false;
        if (step > 0) return *answer == "1";
        const auto made = boost::json::parse(*answer);
        if (made.at("http_state").as_int64() != 1) return false;
        m_draft = made.at("insert_id").as_string().c_str();
        return true;
    }
    /** Steps from `first` up to `end`; false from the first refusal on. */
    bool go(wire& by, int first, int end) {
        for (int step = first; step < end; ++step)
            if (!send(by, step) || !read(by, step)) return false;
        return true;
    }

private:
    std::vector<request> m_steps;
    std::string m_draft;
};

/** Each line with its stock; with lines that are alike all requests of both are. */
save inbound_of(const stock_control_world& goods, const std::string& remark, bool like_lines) {
    std::vector<save::request> steps{
        {"wms_instore/do_add", "", goods.inbound_header(1) + "&remark=" + remark}};
    for (const auto* amount : {"4", "6"}) {
        const std::string text = like_lines ? "5" : amount;
        const auto total = text == "4" ? "10.00" : text == "6" ? "15.00" : "12.50";
        const auto line = goods.line(text, "2.50", total, remark) + "&place=A-1";
        steps.push_back({"wms_instore_detail/do_add", "main_id=", "&" + line});
        steps.push_back({"wms_stock_detail/do_add", "", line});
    }
    steps.push_back({"wms_instore/update_total", "id=", "&total=25.00"});
    return save(std::move(steps));
}

/** Finds four and six more than there were, or twice five, in a row that it holds. */
save taking_of(const stock_control_world& goods, const std::string& remark, bool like_lines,
               const std::string& row, const std::string& hold) {
    std::vector<save::request> steps{
        {"wms_stock_taking/do_add", "", "&operater=" + goods.employee + "&writer=&remark=" + remark}};
    for (const int amount : {4, 6}) {
        const int more = like_lines ? 5 : amount;
        const auto* money = more == 4 ? "10.00" : more == 6 ? "15.00" : "12.00";
        steps.push_back({"wms_stock_taking_detail/do_add",
                         "main_id=", goods.counted(row, 1, 1 + more, "2.50", money, hold, remark)});
    }
    steps.push_back(
        {"wms_stock_taking/update_profitloss",
         "id=", std::string("&profitloss_amount=10&profitloss_total=") + (like_lines ? "24.00" : "25.00")});
    return save(std::move(steps));
}

/** Moves four and six out of a row, by claims that the user has on them. */
save transfer_of(const stock_control_world& goods, const std::string& remark, const std::string& row,
                 const std::string& first, const std::string& second) {
    return save(
        {{"wms_stock_allot/do_add", "", goods.transfer_header() + "&remark=" + remark},
         {"wms_stock_allot_detail/do_add", "main_id=", goods.moved(row, "4", "2.50", "10.00", first, remark)},
         {"wms_stock_allot_detail/do_add",
          "main_id=", goods.moved(row, "6", "2.50", "15.00", second, remark)}});
}

/** By engine, and by what is saved. */
class interrupted_save : public testing::TestWithParam<std::tuple<std::string, std::string>> {
protected:
    void SetUp() override {
        const auto& engine = std::get<0>(GetParam());
        SKIP_WITHOUT(engine);
        m_site = std::make_unique<documents_site>(engine, 1);
        const auto service = m_site->start();
        m_goods = std::make_unique<stock_control_world>(m_site->furnish(service->port()));
        if (what() != "inbound") m_row = m_goods->stock("1000", "2.50", "2500.00");
        ASSERT_EQ(service->stop(), 0);
    }
    static const std::string& what() { return std::get<1>(GetParam()); }
    static int steps() { return what() == "inbound" ? 6 : what() == "taking" ? 4 : 3; }

    /** A save of what the test is about, with the claims that it uses up. */
    save begin(const std::string& remark, bool like_lines = false) {
        if (what() == "inbound") return inbound_of(*m_goods, remark, like_lines);
        const auto service = m_site->start();
        wire link(service->port(), cookie());
        auto by = m_goods->by(documents_site::through(link));
        ++m_saves;
        const auto claim = [&](int use, int amount) {
            // Of the total nothing hangs; it makes the bytes unique.
            const auto token =
                by.ask("wms_stock_detail/lock_stock", "lock_type=" + std::to_string(use) + "&id=" + m_row +
                                                          "&amount=" + std::to_string(amount) +
                                                          "&total=" + std::to_string(m_saves));
            EXPECT_NE(token, "0");
            return token;
        };
        auto made = what() == "taking" ? taking_of(*m_goods, remark, like_lines, m_row, claim(2, 0))
                                       : transfer_of(*m_goods, remark, m_row, claim(1, 4), claim(1, 6));
        EXPECT_EQ(service->stop(), 0);
        return made;
    }
    /** The steps on a new service, which then gets the signal. */
    void run(save& one, int first, int end, int signal) {
        const auto service = m_site->start();
        wire link(service->port(), cookie());
        EXPECT_TRUE(one.go(link, first, end));
        end_it(*service, signal);
    }
    /** The save from its header on, on a new service, until it is made, `times` times at most. */
    void again(save& one, int times) {
        const auto service = m_site->start();
        wire link(service->port(), cookie());
        int pressed = 1;
        while (pressed <= times && !one.go(link, 0, steps()))
            ++pressed;
        EXPECT_EQ(service->stop(), 0);
        EXPECT_LE(pressed, times) << "the save was refused";
    }
    static void end_it(running_service& service, int signal) {
        service.program().signal(signal);
        EXPECT_EQ(service.program().exit_code(patience), signal == SIGKILL ? 128 + SIGKILL : 0);
    }
    const std::string& cookie() const { return m_site->actors().front().cookie; }
    std::int64_t number(const std::string& sql) {
        const auto found = number_in(*m_site->database(), sql);
        m_site->database().close();
        return found;
    }

    /** One whole document with that remark, and what it does to the stock; nothing is left of a first
     * attempt. But of a transfer each line that was answered has its effect: `before` of them were, and are a
     * document of their own. */
    void expect_whole(const std::string& remark, int before = 0) {
        EXPECT_EQ(m_site->faults(), "");
        if (what() != "transfer") before = 0;
        const int moved = before == 0 ? 0 : before == 1 ? 4 : 10;
        const std::string of = " WHERE remark = '" + remark + "'";
        EXPECT_EQ(number("SELECT count(*) FROM document" + of), before == 0 ? 1 : 2);
        EXPECT_EQ(number("SELECT count(*) FROM document_line" + of), 2 + before);
        EXPECT_EQ(number("SELECT CAST(sum(amount) AS BIGINT) FROM document_line" + of), 10 + moved);
        const bool makes_rows = what() != "taking";
        EXPECT_EQ(number("SELECT count(*) FROM stock" + of), makes_rows ? 2 + before : 0);
        EXPECT_EQ(number("SELECT CAST(coalesce(sum(on_hand), 0) AS BIGINT) FROM stock" + of),
                  makes_rows ? 10 + moved : 0);
        if (m_row.empty()) return;
        m_left += what() == "taking" ? 10 : -10 - moved;
        EXPECT_EQ(number("SELECT on_hand FROM stock WHERE id = " + m_row), m_left);
    }
    std::int64_t drafts() { return number("SELECT count(*) FROM draft WHERE document IS NULL"); }
    /** What is left of first attempts goes with the hour, and nothing else does. */
    void expect_swept() {
        const auto documents = number("SELECT count(*) FROM document");
        store::write_now(*m_site->database(), [](store::connection& with) {
            domain::sweep(with, static_cast<std::int64_t>(std::time(nullptr)) + 3600);
        });
        m_site->database().close();
        EXPECT_EQ(number("SELECT count(*) FROM draft"), 0);
        EXPECT_EQ(number("SELECT count(*) FROM draft_line"), 0);
        EXPECT_EQ(number("SELECT count(*) FROM document"), documents);
        EXPECT_EQ(m_site->faults(), "");
    }

    std::unique_ptr<documents_site> m_site;
    std::unique_ptr<stock_control_world> m_goods;
    std::string m_row; /**< what is counted, or moved away */
    int m_saves{0};
    std::int64_t m_left{1000};
};

/** Saves whose lines may be alike: claims tell those of a transfer apart. */
class save_with_like_lines : public interrupted_save {};

/** How many lines are there after so many steps of a transfer. */
int lines_in(int steps) {
    return steps > 1 ? steps - 1 : 0;
}

} // namespace

TEST_P(interrupted_save, a_service_stopped_between_two_lines_and_started_again_takes_the_whole_document) {
    for (int step = 1; step < steps(); ++step) {
        SCOPED_TRACE("stopped after step " + std::to_string(step));
        const auto remark = "stopped-" + std::to_string(step);
        auto one = begin(remark);
        run(one, 0, step, SIGTERM);
        again(one, 1);
        expect_whole(remark, lines_in(step));
        EXPECT_EQ(drafts(), what() == "transfer" ? 1 : step) << "each first attempt has left a draft";
    }
    expect_swept();
}

TEST_P(interrupted_save, a_service_killed_between_two_lines_and_started_again_takes_the_whole_document) {
    for (int step = 1; step < steps(); ++step) {
        SCOPED_TRACE("killed after step " + std::to_string(step));
        const auto remark = "killed-" + std::to_string(step);
        auto one = begin(remark);
        run(one, 0, step, SIGKILL);
        again(one, 1);
        expect_whole(remark, lines_in(step));
    }
    expect_swept();
}

TEST_P(interrupted_save, what_is_known_of_the_first_attempt_may_end_at_any_step) {
    // The stop writes down that the answers so far arrived; of those after it nothing is known.
    for (int known = 1; known + 1 < steps(); ++known) {
        SCOPED_TRACE("known up to step " + std::to_string(known));
        const auto remark = "known-" + std::to_string(known);
        auto one = begin(remark);
        run(one, 0, known, SIGTERM);
        run(one, known, steps() - 1, SIGKILL);
        again(one, 1);
        expect_whole(remark, lines_in(steps() - 1));
    }
    expect_swept();
}

TEST_P(interrupted_save, a_service_killed_while_it_answers_makes_one_document) {
    for (int step = 0; step < steps(); ++step) {
        SCOPED_TRACE("killed in step " + std::to_string(step));
        const auto remark = "cut-" + std::to_string(step);
        auto one = begin(remark);
        const auto service = m_site->start();
        wire link(service->port(), cookie());
        EXPECT_TRUE(one.go(link, 0, step));
        EXPECT_TRUE(one.send(link, step));
        end_it(*service, SIGKILL);
        // The network library first brings the same bytes again, and then the user goes on.
        const auto next = m_site->start();
        wire second(next->port(), cookie());
        EXPECT_TRUE(one.send(second, step) && one.read(second, step));
        EXPECT_TRUE(one.go(second, step + 1, steps()));
        EXPECT_EQ(next->stop(), 0);
        expect_whole(remark);
    }
    EXPECT_EQ(drafts(), 0);
}

TEST_P(save_with_like_lines, is_made_once_at_the_second_time_at_the_latest) {
    for (int step = 1; step < steps(); ++step) {
        SCOPED_TRACE("killed after step " + std::to_string(step));
        const auto remark = "alike-" + std::to_string(step);
        auto one = begin(remark, true);
        run(one, 0, step, SIGKILL);
        again(one, 2);
        expect_whole(remark);
    }
    expect_swept();
}

std::string name_of(const testing::TestParamInfo<std::tuple<std::string, std::string>>& chosen) {
    return std::get<0>(chosen.param) + "_" + std::get<1>(chosen.param);
}

INSTANTIATE_TEST_SUITE_P(engine, interrupted_save,
                         testing::Combine(testing::ValuesIn(engines()),
                                          testing::Values("inbound", "taking", "transfer")),
                         name_of);
INSTANTIATE_TEST_SUITE_P(engine, save_with_like_lines,
                         testing::Combine(testing::ValuesIn(engines()), testing::Values("inbound", "taking")),
                         name_of);

} // namespace tavrok::test
