#include <gtest/gtest.h>

#include <csignal>
#include <ctime>

#include "documents_site.h"
#include "domain/sessions.h"

namespace tavrok::test {

namespace {

/** One save as the client sends it: the header, two lines each with its stock, the closing call. The lines
 * name the draft that the header's answer gave. */
class save {
public:
    save(const documents_world& goods, std::string remark, bool like_lines)
        : m_header(goods.inbound_header(1) + "&remark=" + remark) {
        for (const auto* amount : {"4", "6"}) {
            const std::string text = like_lines ? "5" : amount;
            const auto total = text == "4" ? "10.00" : text == "6" ? "15.00" : "12.50";
            m_lines.push_back(goods.line(text, "2.50", total, remark) + "&place=A-1");
        }
    }
    static constexpr int steps = 6;

    /** Sends a step; true where the service will have had it whole. */
    bool send(wire& by, int step) {
        if (step == 0) return by.send("wms_instore/do_add", m_header);
        if (step == steps - 1) return by.send("wms_instore/update_total", "id=" + m_draft + "&total=25.00");
        const auto& line = m_lines[static_cast<std::size_t>(step - 1) / 2];
        if (step % 2 == 1) return by.send("wms_instore_detail/do_add", "main_id=" + m_draft + "&" + line);
        return by.send("wms_stock_detail/do_add", line);
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
    std::string m_header;
    std::vector<std::string> m_lines;
    std::string m_draft;
};

class interrupted_save : public testing::TestWithParam<std::string> {
protected:
    void SetUp() override {
        SKIP_WITHOUT(GetParam());
        m_site = std::make_unique<documents_site>(GetParam(), 1);
        const auto service = m_site->start();
        m_goods = std::make_unique<documents_world>(m_site->furnish(service->port()));
        ASSERT_EQ(service->stop(), 0);
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
        while (pressed <= times && !one.go(link, 0, save::steps))
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

    /** One whole document with that remark, and its stock. */
    void expect_one(const std::string& remark) {
        EXPECT_EQ(m_site->faults(), "");
        const std::string of = " WHERE remark = '" + remark + "'";
        EXPECT_EQ(number("SELECT count(*) FROM document" + of), 1);
        EXPECT_EQ(number("SELECT count(*) FROM document_line" + of), 2);
        EXPECT_EQ(number("SELECT count(*) FROM stock" + of), 2);
        EXPECT_EQ(number("SELECT CAST(coalesce(sum(on_hand), 0) AS BIGINT) FROM stock" + of), 10);
    }
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
    std::unique_ptr<documents_world> m_goods;
};

} // namespace

TEST_P(interrupted_save, a_service_stopped_between_two_lines_and_started_again_makes_one_document) {
    for (int step = 1; step < save::steps; ++step) {
        SCOPED_TRACE("stopped after step " + std::to_string(step));
        const auto remark = "stopped-" + std::to_string(step);
        save one(*m_goods, remark, false);
        run(one, 0, step, SIGTERM);
        again(one, 1);
        expect_one(remark);
        EXPECT_EQ(number("SELECT count(*) FROM draft"), step) << "each first attempt has left a draft";
    }
    expect_swept();
}

TEST_P(interrupted_save, a_service_killed_between_two_lines_and_started_again_makes_one_document) {
    for (int step = 1; step < save::steps; ++step) {
        SCOPED_TRACE("killed after step " + std::to_string(step));
        const auto remark = "killed-" + std::to_string(step);
        save one(*m_goods, remark, false);
        run(one, 0, step, SIGKILL);
        again(one, 1);
        expect_one(remark);
    }
    expect_swept();
}

TEST_P(interrupted_save, what_is_known_of_the_first_attempt_may_end_at_any_step) {
    // The stop writes down that the answers so far arrived; of those after it nothing is known.
    for (int known = 1; known + 1 < save::steps; ++known) {
        SCOPED_TRACE("known up to step " + std::to_string(known));
        const auto remark = "known-" + std::to_string(known);
        save one(*m_goods, remark, false);
        run(one, 0, known, SIGTERM);
        run(one, known, save::steps - 1, SIGKILL);
        again(one, 1);
        expect_one(remark);
    }
    expect_swept();
}

TEST_P(interrupted_save, a_service_killed_while_it_answers_makes_one_document) {
    for (int step = 0; step < save::steps; ++step) {
        SCOPED_TRACE("killed in step " + std::to_string(step));
        const auto remark = "cut-" + std::to_string(step);
        save one(*m_goods, remark, false);
        const auto service = m_site->start();
        wire link(service->port(), cookie());
        EXPECT_TRUE(one.go(link, 0, step));
        EXPECT_TRUE(one.send(link, step));
        end_it(*service, SIGKILL);
        // The network library first brings the same bytes again, and then the user goes on.
        const auto next = m_site->start();
        wire second(next->port(), cookie());
        EXPECT_TRUE(one.send(second, step) && one.read(second, step));
        EXPECT_TRUE(one.go(second, step + 1, save::steps));
        EXPECT_EQ(next->stop(), 0);
        expect_one(remark);
    }
    EXPECT_EQ(number("SELECT count(*) FROM draft"), 0);
}

TEST_P(interrupted_save, with_lines_that_are_alike_it_is_made_once_at_the_second_time_at_the_latest) {
    for (int step = 1; step < save::steps; ++step) {
        SCOPED_TRACE("killed after step " + std::to_string(step));
        const auto remark = "alike-" + std::to_string(step);
        save one(*m_goods, remark, true);
        run(one, 0, step, SIGKILL);
        again(one, 2);
        expect_one(remark);
    }
    expect_swept();
}

INSTANTIATE_TEST_SUITE_P(engine, interrupted_save, testing::ValuesIn(engines()),
                         [](const auto& chosen) { return chosen.param; });

} // namespace tavrok::test
