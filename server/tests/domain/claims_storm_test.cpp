#include <atomic>
#include <random>
#include <thread>

#include "domain/stock_scene.h"

namespace tavrok::domain {
namespace {

using test::g_now;

constexpr int g_threads = 32;
constexpr std::int64_t g_stock = 600;

/** 32 at work on one stock row, over one database object or by turns over two: they claim, give back, save
 * and bring in, until nothing is left. */
class claims_storm : public test::on_stock {
protected:
    void SetUp() override {
        on_stock::SetUp();
        if (IsSkipped()) return;
        for (int i = 0; i < 8; ++i)
            users.push_back(in->clerk("clerk" + std::to_string(i)));
        row = in->bring_in(g_stock);
        out = in->line_out(row, 1);
        databases.push_back(&*in->database());
    }
    /** As a second instance of the service has it. */
    void open_second() {
        auto how = in->database().options();
        how.readers = 8;
        second = store::open(how);
        databases.push_back(second.get());
    }
    void run() {
        std::vector<std::jthread> threads;
        for (int i = 0; i < g_threads; ++i)
            threads.emplace_back([this, i] { work(i); });
        threads.clear();
    }
    void prove() {
        EXPECT_EQ(got, g_stock);
        EXPECT_EQ(in->on_hand(row), 0);
        EXPECT_EQ(in->claimed(row), 0);
        in->sound();
        EXPECT_GE(saved, 50);
        for (const char* kind : {"QC", "QR"}) {
            const auto of_kind = std::string(" FROM document WHERE sn LIKE '") + kind + "%'";
            const auto count = in->number("SELECT count(DISTINCT sn)" + of_kind);
            EXPECT_EQ(in->number("SELECT count(*)" + of_kind), count);
            EXPECT_EQ(in->number(std::string("SELECT last FROM document_number WHERE kind = '") + kind + "'"),
                      count)
                << "no gap: the last number is how many there are";
        }
        EXPECT_EQ(in->number("SELECT count(*) FROM document WHERE sn IS NULL"), 0);
        EXPECT_EQ(in->number("SELECT count(*) FROM draft"), 0);
    }

private:
    /** False where it was refused. */
    bool attempt(store::database& where, const store::job& deed) {
        try {
            store::write_now(where, deed);
            return true;
        } catch (const refused&) {
            return false;
        } catch (const std::exception& failure) {
            ADD_FAILURE() << failure.what();
            return false;
        }
    }
    bool save(store::database& where, const principal& who, document_module module,
              const document_line& line) {
        std::string reason;
        std::int64_t draft = 0;
        const bool opened = attempt(where, [&](store::connection& with) {
            document_header header;
            header.type = module == document_module::inbound ? 7 : 6;
            header.operater = in->handler;
            draft = open_draft(with, who, module, header, g_now).id;
            add_line(with, who, module, draft, line);
            if (module == document_module::inbound) announce_stock(with, who, line);
        });
        return opened &&
               attempt(where,
                       [&](store::connection& with) {
                           reason = close_draft(with, who, module, draft, line.total, g_now);
                       }) &&
               reason.empty();
    }
    void work(int number) {
        auto& where = *databases[static_cast<std::size_t>(number) % databases.size()];
        const auto who = users[static_cast<std::size_t>(number) % users.size()];
        std::mt19937 random(static_cast<unsigned>(number));
        auto line = out;
        while (got < g_stock && !HasFailure()) {
            line.amount = 1 + static_cast<std::int64_t>(random() % 9);
            line.total = line.amount * line.price;
            line.token.clear();
            std::string token;
            const bool held = attempt(where, [&](store::connection& with) {
                token = take_claim(with, who, {claim_use::outbound, row, line.amount}, g_now);
            });
            if (held) line.token = token;
            if (random() % 4 == 0) save(where, who, document_module::inbound, in->line_in(1));
            if (held && random() % 3 == 0) {
                attempt(where, [&](store::connection& with) { give_back_claim(with, who, token, g_now); });
                continue;
            }
            if (!save(where, who, document_module::outbound, line)) {
                EXPECT_FALSE(held) << "what is claimed is there";
                continue;
            }
            got += line.amount;
            ++saved;
        }
    }

    std::atomic<std::int64_t> got{0};
    std::atomic<int> saved{0};
    std::unique_ptr<store::database> second;
    std::vector<store::database*> databases;
    std::vector<principal> users;
    std::int64_t row{0};
    document_line out; // of the row
};
ON_EVERY_ENGINE(claims_storm);

TEST_P(claims_storm, gets_out_what_was_in) {
    run();
    prove();
}

class two_instances : public claims_storm {};
INSTANTIATE_TEST_SUITE_P(engines, two_instances, testing::Values("postgresql"),
                         [](const auto& one) { return one.param; });

TEST_P(two_instances, get_out_what_was_in) {
    open_second();
    run();
    prove();
}

} // namespace
} // namespace tavrok::domain
