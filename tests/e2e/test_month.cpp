#include <gtest/gtest.h>

#include <QJsonObject>
#include <QProcess>
#include <QTreeWidget>
#include <set>

#include "e2e/month/books.h"
#include "e2e/service_process.h"
#include "model/answers.h"
#include "model/model_permission.h"
#include "model/model_user.h"
#include "net/http.h"
#include "net/md5_hex.h"

namespace {

constexpr int clerks = 4;
constexpr int days = 22;
constexpr int deadline_ms = 240000;

/** A company's month: four users work at once, and books that nobody but the test keeps say what is there. */
class month : public testing::Test {
protected:
    ~month() override {
        g_http.base_url = former_base_url;
        g_http.current_user = struct_user();
    }

    /** Logs the test itself in, at the first of the services. */
    static void log_in(const QString& name) {
        ASSERT_EQ(model_user().check_login(name, md5_hex(demo_password)), model_user::logged_in);
    }

    /** Accounts for the clerks, with every row of the menu granted. */
    static void hire() {
        for (int number = 1; number <= clerks; ++number) {
            struct_user user;
            user.username = name_of(number);
            user.realname = QStringLiteral("员工%1").arg(number);
            user.password = demo_password;
            user.type = user_ordinary;
            user.state = user_enabled;
            user.mobile = QStringLiteral("1540000900%1").arg(number);
            user.email = name_of(number) + QStringLiteral("@example.org");
            ASSERT_TRUE(take_id(user, model_user().do_add(user)));
            grant_everything(user);
        }
    }

    static bool take_id(struct_user& user, const QJsonObject& answer) {
        const auto added = read_added(answer);
        if (added) user.id = added->id;
        return added.has_value();
    }

    static void grant_everything(const struct_user& user) {
        QTreeWidget tree;
        tree.setColumnCount(7);
        model_permission grants(nullptr, &tree, user);
        grants.get_permission_tree();
        for (QTreeWidgetItemIterator item(&tree); *item != nullptr; ++item)
            ASSERT_TRUE(grants.set_checked((*item)->text(1)));
    }

    static QString name_of(int number) { return QStringLiteral("month_%1").arg(number); }

    /** Lets the clerks work, each at one of the services; gives the kinds of what was done. */
    std::set<QString> work(const QStringList& services, books& kept) {
        QProcess workers[clerks];
        for (int i = 0; i < clerks; ++i) {
            workers[i].setProcessChannelMode(QProcess::ForwardedErrorChannel);
            workers[i].start(QStringLiteral(WMS_MONTH_CLERK),
                             {services[i % services.size()], name_of(i + 1), demo_password,
                              QString::number(i + 1), QString::number(days)});
        }
        std::set<QString> kinds;
        for (QProcess& worker : workers) {
            EXPECT_TRUE(worker.waitForFinished(deadline_ms));
            EXPECT_EQ(worker.exitStatus(), QProcess::NormalExit);
            EXPECT_EQ(worker.exitCode(), 0);
            for (const QByteArray& line : worker.readAllStandardOutput().split('\n')) {
                if (line.isEmpty()) continue;
                const deed done = deed_of(line);
                kinds.insert(done.kind);
                kept.enter(done);
                ++deeds;
            }
        }
        return kinds;
    }

    /** What stands in a ledger, in the form of books::ledger(). */
    static QString ledger_query() {
        return QStringLiteral(
            "SELECT s.place || ' ' || sum(m.amount) || ' ' || sum(m.value) FROM stock s "
            "JOIN movement m ON m.company = s.company AND m.stock = s.id "
            "WHERE s.company = (SELECT company FROM app_user WHERE username = 'month_1') "
            "GROUP BY s.id, s.place HAVING sum(m.amount) <> 0");
    }

    void live_through(const QList<service_process*>& services) {
        QStringList addresses;
        for (const service_process* one : services)
            addresses.append(one->base_url());
        g_http.base_url = addresses.first();
        log_in(QStringLiteral("demo_admin"));
        hire();
        books kept;
        kept.open();
        EXPECT_EQ(kept.rows(), books::rows_shown());
        const auto kinds = work(addresses, kept);

        EXPECT_EQ(books::rows_shown(), kept.rows());
        EXPECT_EQ(books::sums_shown(), kept.sums());
        QStringList ledger = services.first()->read_database(ledger_query());
        ledger.sort();
        EXPECT_EQ(ledger, kept.ledger());
        for (int type = 1; type <= 7; ++type)
            EXPECT_EQ(kinds.count(QStringLiteral("in%1").arg(type)), 1U) << type;
        for (int type = 1; type <= 6; ++type)
            EXPECT_EQ(kinds.count(QStringLiteral("out%1").arg(type)), 1U) << type;
        EXPECT_EQ(kinds.count(QStringLiteral("taking")), 1U);
        EXPECT_EQ(kinds.count(QStringLiteral("allot")), 1U);
        EXPECT_GT(deeds, clerks * days * 5);
        for (service_process* one : services)
            EXPECT_EQ(one->stop(), 0);
        EXPECT_EQ(services.first()->check(), 0);
    }

    int deeds = 0;
    const QStringList without_brake{QStringLiteral("--requests-per-second"), QStringLiteral("0")};

private:
    const QString former_base_url = g_http.base_url;
};

} // namespace

TEST_F(month, one_service_and_the_books_agree_to_the_unit_and_the_cent) {
    service_process service(without_brake);
    live_through({&service});
}

TEST_F(month, two_instances_on_one_postgresql_are_one_service) {
    const auto shared = shared_database::make();
    if (!shared) GTEST_SKIP() << "no PostgreSQL at hand";
    service_process one(*shared, without_brake);
    service_process other(*shared, without_brake);
    live_through({&one, &other});
}
