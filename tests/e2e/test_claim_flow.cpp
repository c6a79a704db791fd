#include <QLineEdit>
#include <QTableWidget>
#include <QTest>
#include <QTimer>

#include "e2e/document_flow.h"
#include "e2e/rival.h"
#include "support/modal.h"
#include "support/screen.h"

namespace {

constexpr int stock_id_column = 14;
constexpr int locked_id_column = 17;
const known_kind& other_out = outbound_rows[g_kind_other_out - 1];

/** Two users want the same goods: one at the screens, the other by a client of his own. */
class claim_flow : public document_flow {
protected:
    /** There is one batch of so many, and demo_clerk may write the documents that take from it. */
    void lay_out(int amount) {
        open_as(QStringLiteral("demo_admin"));
        bring_in({{0, amount, QStringLiteral("2.00"), place, QString()}});
        service->change_database(
            "INSERT INTO user_grant (company, user_id, menu_id) SELECT u.company, u.id, r.id FROM app_user u "
            "JOIN menu r JOIN menu p ON r.parent = p.id WHERE u.username = 'demo_clerk' "
            "AND p.action = 'outstore_other'");
        other = std::make_unique<rival>(service->base_url(), QStringLiteral("demo_clerk"));
        row = other->row_at(place);
        stock = row.value(QLatin1String("id")).toString();
        operater = value(QStringLiteral("SELECT operater FROM document WHERE remark = '进货'"));
        go(other_out.page);
    }

    QStringList shown(int amount) const { return {place + QLatin1Char(' ') + QString::number(amount)}; }

    static QString lock_of(const QWidget* editor, int line) { return column(editor, locked_id_column)[line]; }

    /** Documents of that kind that the users have written. */
    QString documents() const {
        return value(
            QStringLiteral("SELECT count(*) FROM document WHERE module = 2 AND type = %1 AND state "
                           "= 1 AND id IN (SELECT l.document FROM document_line l WHERE l.stock = %2)")
                .arg(QString::number(g_kind_other_out), stock));
    }

    QString active_claims() const {
        return value(QStringLiteral("SELECT count(*) FROM claim WHERE state = 1 AND stock = ") + stock);
    }

    /** Both ask at the same moment; who asks first takes turns. Gives what the other one was answered. */
    QString race(QWidget* dialog, bool screen_first) {
        QString answer;
        if (screen_first) {
            QTimer::singleShot(0, dialog, [&] { answer = other->claim(stock, 1); });
            click(dialog, "btn_save");
        } else {
            QTimer::singleShot(0, dialog, [&] { click(dialog, "btn_save"); });
            answer = other->claim(stock, 1);
        }
        return answer;
    }

    /** Both save their line of one piece, who has no claim on it first. */
    void both_save(QWidget* editor, bool got_it, const QString& theirs) {
        if (got_it) {
            EXPECT_FALSE(other->take_out(operater, row, 1, theirs));
            click(editor, "btn_submit");
            EXPECT_FALSE(editor->isVisible());
        } else {
            click(editor, "btn_submit");
            EXPECT_TRUE(editor->isVisible());
            EXPECT_TRUE(other->take_out(operater, row, 1, theirs));
            click(editor, "btn_cancel");
        }
    }

    const QString place = QStringLiteral("争-1");
    std::unique_ptr<rival> other;
    QJsonObject row;
    QString stock;
    QString operater;
};

/** How a document that is being written is left. */
struct way_out {
    const char* name;
    void (*leave)(QWidget* editor);
};

const way_out ways_out[] = {
    {"button", [](QWidget* editor) { click(editor, "btn_cancel"); }},
    {"close_box", [](QWidget* editor) { editor->close(); }},
    {"escape", [](QWidget* editor) { QTest::keyClick(editor, Qt::Key_Escape); }},
};

} // namespace

TEST_F(claim_flow, what_one_has_claimed_the_other_does_not_see) {
    lay_out(10);
    with_new([this](QWidget* editor) {
        take_line(editor, place, 4);
        EXPECT_TRUE(lock_of(editor, 0).startsWith(QLatin1Char('L'))) << lock_of(editor, 0).toStdString();
        EXPECT_EQ(column(editor, stock_id_column), QStringList{stock});
        EXPECT_EQ(other->free_at(place), 6);
        EXPECT_EQ(picker_shows(place), shown(6)) << "one's own claims count as well";
        EXPECT_EQ(other->claim(stock, 7), QStringLiteral("0"));
        const QString rest = other->claim(stock, 6);
        EXPECT_TRUE(rest.startsWith(QLatin1Char('L')));
        EXPECT_EQ(picker_shows(place), shown(0)) << "a row stays in the list while something is on hand";
        EXPECT_EQ(ledger_says(place), shown(0));
        other->give_back(rest);
        EXPECT_EQ(picker_shows(place), shown(6));
        delete_line(editor, 0);
        EXPECT_EQ(table(editor)->rowCount(), 0);
        EXPECT_EQ(other->free_at(place), 10);
        click(editor, "btn_cancel");
    });
    EXPECT_EQ(active_claims(), QStringLiteral("0"));
    expect_sound();
}

TEST_F(claim_flow, a_refused_claim_stays_in_its_line_and_stops_the_save) {
    lay_out(10);
    with_new([this](QWidget* editor) {
        pick_people(editor, other_out);
        QString theirs;
        with_line_out(editor, place, 5, QString(), [&](QWidget* dialog) {
            theirs = other->claim(stock, 8);
            click(dialog, "btn_save");
        });
        EXPECT_EQ(lock_of(editor, 0), QStringLiteral("0"));
        click(editor, "btn_submit");
        EXPECT_TRUE(editor->isVisible()) << "refused, without a word";
        EXPECT_EQ(documents(), QStringLiteral("0"));
        EXPECT_EQ(other->free_at(place), 2) << "the other one's claim is as it was";
        EXPECT_TRUE(other->take_out(operater, row, 8, theirs));

        // The line goes, although there is nothing to give back, and what is left can be had.
        delete_line(editor, 0);
        EXPECT_EQ(table(editor)->rowCount(), 0);
        take_line(editor, place, 2);
        click(editor, "btn_submit");
        EXPECT_FALSE(editor->isVisible());
    });
    EXPECT_EQ(documents(), QStringLiteral("2"));
    EXPECT_EQ(picker_shows(place), QStringList());
    EXPECT_EQ(ledger_says(place), QStringList());
    expect_sound();
}

TEST_F(claim_flow, a_line_whose_claim_was_refused_is_saved_when_the_goods_are_free_again) {
    lay_out(10);
    with_new([this](QWidget* editor) {
        pick_people(editor, other_out);
        QString theirs;
        with_line_out(editor, place, 5, QString(), [&](QWidget* dialog) {
            theirs = other->claim(stock, 8);
            click(dialog, "btn_save");
        });
        click(editor, "btn_submit");
        EXPECT_TRUE(editor->isVisible());
        other->give_back(theirs);
        click(editor, "btn_submit");
        EXPECT_FALSE(editor->isVisible());
    });
    EXPECT_EQ(documents(), QStringLiteral("1"));
    EXPECT_EQ(picker_shows(place), shown(5));
    expect_sound();
}

TEST_F(claim_flow, exactly_one_gets_the_last_piece) {
    lay_out(1);
    constexpr int rounds = 10;
    int own = 0;
    with_new([&](QWidget* editor) {
        pick_people(editor, other_out);
        for (int round = 1; round <= rounds; ++round) {
            QString theirs;
            with_line_out(editor, place, 1, QString(),
                          [&](QWidget* dialog) { theirs = race(dialog, round % 2 != 0); });
            const bool got_it = lock_of(editor, 0) != QLatin1String("0");
            own += int(got_it);
            ASSERT_NE(got_it, theirs != QLatin1String("0")) << "round " << round;
            EXPECT_EQ(other->free_at(place), 0);
            EXPECT_EQ(active_claims(), QStringLiteral("1"));
            if (round == rounds) {
                both_save(editor, got_it, theirs);
                break;
            }
            if (!got_it) other->give_back(theirs);
            delete_line(editor, 0);
        }
    });
    RecordProperty("own", own);
    EXPECT_EQ(documents(), QStringLiteral("1"));
    EXPECT_EQ(active_claims(), QStringLiteral("0"));
    EXPECT_EQ(ledger_says(place), QStringList());
    expect_sound();
}

TEST_F(claim_flow, a_document_that_is_left_gives_its_claims_back) {
    lay_out(10);
    for (const way_out& way : ways_out) {
        SCOPED_TRACE(way.name);
        with_new([&](QWidget* editor) {
            pick_people(editor, other_out);
            take_line(editor, place, 3);
            take_line(editor, place, 7);
            EXPECT_EQ(other->claim(stock, 1), QStringLiteral("0"));
            way.leave(editor);
            EXPECT_FALSE(editor->isVisible());
        });
        EXPECT_EQ(active_claims(), QStringLiteral("0"));
        EXPECT_EQ(picker_shows(place), shown(10));
        const QString all = other->claim(stock, 10);
        EXPECT_TRUE(all.startsWith(QLatin1Char('L')));
        other->give_back(all);
    }
    EXPECT_EQ(documents(), QStringLiteral("0"));
    expect_sound();
}

TEST_F(claim_flow, a_client_that_dies_keeps_its_claims_until_they_lapse) {
    lay_out(10);
    with_new([this](QWidget* editor) {
        pick_people(editor, other_out);
        // The picker was read before the other one came, so that 10 may be typed.
        with_line_out(editor, place, 10, QString(), [&](QWidget* dialog) {
            EXPECT_TRUE(other->claim(stock, 7).startsWith(QLatin1Char('L')));
            other.reset();
            click(dialog, "btn_save");
        });
        EXPECT_EQ(lock_of(editor, 0), QStringLiteral("0"));
        EXPECT_EQ(picker_shows(place), shown(3));
        click(editor, "btn_submit");
        EXPECT_TRUE(editor->isVisible());
        EXPECT_EQ(active_claims(), QStringLiteral("1"));

        // Two hours and some later.
        service->change_database(
            "UPDATE session SET created_at = created_at - 7300, last_used_at = last_used_at - 7300 "
            "WHERE user_id = (SELECT id FROM app_user WHERE username = 'demo_clerk')");
        click(editor, "btn_submit");
        EXPECT_FALSE(editor->isVisible());
    });
    EXPECT_EQ(value(QStringLiteral("SELECT state FROM claim WHERE amount = 7")), QStringLiteral("4"));
    EXPECT_EQ(active_claims(), QStringLiteral("0"));
    EXPECT_EQ(documents(), QStringLiteral("1"));
    EXPECT_EQ(picker_shows(place), QStringList());
    expect_sound();
}
