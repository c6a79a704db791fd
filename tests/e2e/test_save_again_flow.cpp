#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QTableWidget>

#include "e2e/document_flow.h"
#include "net/http.h"
#include "support/screen.h"

namespace {

/** Runs `act` at the moment when the answer to the n-th request to `path` from now on has come, or when the
 * request has failed. */
class after_answer : public QObject {
public:
    after_answer(const QString& path, int n, const std::function<void()>& act) : left(n) {
        connect(g_http.findChild<QNetworkAccessManager*>(), &QNetworkAccessManager::finished, this,
                [this, path, act](QNetworkReply* reply) {
                    if (reply->url().path() == QLatin1Char('/') + path && --left == 0) act();
                });
    }
    bool happened() const { return left <= 0; }

private:
    int left;
};

/** What befalls a save between its two lines. The service has answered all that came before. */
struct interruption {
    const char* name;
    void (*between_lines)(service_process& service);
    /** After the second line has failed. */
    void (*after_lines)(service_process& service);
    /** Before the user presses the button once more. */
    void (*at_last)(service_process& service);
    /** Whether the save fails by it. */
    bool fails;
};

void nothing(service_process&) {}
void stop(service_process& service) {
    EXPECT_EQ(service.stop(), 0);
}
void kill(service_process& service) {
    service.kill();
}
void start(service_process& service) {
    service.start_again();
}
/** A draft outlives the process that opened it. */
void stop_and_start(service_process& service) {
    stop(service);
    start(service);
}
/** As if a day had passed. */
void end_sessions(service_process& service) {
    service.change_database("UPDATE session SET created_at = 0, last_used_at = 0");
}

const interruption interruptions[] = {
    {"stopped, and back for the second line", stop_and_start, nothing, nothing, false},
    {"stopped, and back for the closing call", stop, start, nothing, true},
    {"stopped, and back for the second save", stop, nothing, start, true},
    {"killed, and back for the closing call", kill, start, nothing, true},
    {"killed, and back for the second save", kill, nothing, start, true},
    {"the session ended", end_sessions, nothing, nothing, true},
};

/** A save that is interrupted, and "保存" pressed once more. */
class save_again_flow : public document_flow {
protected:
    /** Interrupts the save of a document that is written, and saves it again when that failed. A line ends
     * with the answer to `end_of_line`. */
    void save_twice(QWidget* editor, const interruption& what, const QString& end_of_line) {
        {
            const after_answer first(end_of_line, 1, [&] { what.between_lines(*service); });
            const after_answer second(end_of_line, 2, [&] { what.after_lines(*service); });
            click(editor, "btn_submit");
            EXPECT_TRUE(first.happened());
            EXPECT_TRUE(second.happened());
        }
        ASSERT_EQ(editor->isVisible(), what.fails) << "a failure is known by the dialog that stays";
        if (!what.fails) return;
        EXPECT_EQ(shown_tip(), QString());
        what.at_last(*service);
        EXPECT_EQ(documents(), before) << "nothing of it is there";
        click(editor, "btn_submit");
        EXPECT_FALSE(editor->isVisible());
        if (editor->isVisible()) click(editor, "btn_cancel");
    }

    int documents() const { return value(QStringLiteral("SELECT count(*) FROM document")).toInt(); }

    void expect_one_more() {
        EXPECT_EQ(documents(), before + 1);
        before = documents();
    }

    QString place_of(int round, const char* line) const {
        return QStringLiteral("续%1-%2").arg(QString::number(round), QLatin1String(line));
    }

    int before = 0;
};

} // namespace

TEST_F(save_again_flow, an_inbound_document_is_there_once) {
    open_as(QStringLiteral("demo_admin"));
    go("instore_purchase");
    before = documents();
    int round = 0;
    for (const interruption& what : interruptions) {
        SCOPED_TRACE(what.name);
        ++round;
        with_new([&](QWidget* editor) {
            pick_people(editor, inbound_rows[0]);
            write_line(editor,
                       {0, 6, QStringLiteral("1.25"), place_of(round, "a"), QStringLiteral("甲&place=乙")});
            write_line(editor, {1, 2, QStringLiteral("3.1"), place_of(round, "b"), QString()});
            save_twice(editor, what, QStringLiteral("wms_stock_detail/do_add"));
        });
        expect_one_more();
        const QStringList expected{place_of(round, "b 2"), place_of(round, "a 6")};
        const QString all = QStringLiteral("续%1-").arg(round);
        EXPECT_EQ(ledger_says(all), expected);
        EXPECT_EQ(picker_shows(all), expected);
    }
    expect_sound();
}

TEST_F(save_again_flow, an_outbound_document_is_there_once) {
    open_as(QStringLiteral("demo_admin"));
    bring_in({{0, 100, QStringLiteral("1.25"), QStringLiteral("出-a"), QString()},
              {1, 50, QStringLiteral("3.1"), QStringLiteral("出-b"), QString()}});
    go("outstore_sale_take");
    before = documents();
    int round = 0;
    for (const interruption& what : interruptions) {
        SCOPED_TRACE(what.name);
        ++round;
        with_new([&](QWidget* editor) {
            pick_people(editor, outbound_rows[1]);
            take_line(editor, QStringLiteral("出-a"), 6);
            take_line(editor, QStringLiteral("出-b"), 2);
            save_twice(editor, what, QStringLiteral("wms_outstore_detail/do_add"));
        });
        expect_one_more();
        const QStringList expected{QStringLiteral("出-b %1").arg(50 - 2 * round),
                                   QStringLiteral("出-a %1").arg(100 - 6 * round)};
        EXPECT_EQ(ledger_says(QStringLiteral("出-")), expected);
        EXPECT_EQ(picker_shows(QStringLiteral("出-")), expected);
        EXPECT_EQ(value(QStringLiteral("SELECT count(*) FROM claim WHERE state = 1")), QStringLiteral("0"));
    }
    expect_sound();
}
