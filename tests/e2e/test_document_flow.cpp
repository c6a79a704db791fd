#include <QDateEdit>
#include <QDateTime>
#include <QFont>
#include <QLineEdit>
#include <QRegularExpression>
#include <QTableWidget>
#include <QTemporaryDir>
#include <QTreeView>

#include "access/dlg_search_user.h"
#include "app/startup.h"
#include "e2e/document_flow.h"
#include "master/dlg_dept.h"
#include "master/dlg_search_company.h"
#include "master/dlg_search_emp.h"
#include "net/http.h"
#include "support/modal.h"
#include "support/paper.h"
#include "support/screen.h"
#include "support/tree.h"

namespace {

/** Letters of the numbers of the kinds, in the order of the kinds. */
const char* const inbound_letters[] = {"CG", "SC", "XT", "LT", "JR", "JH", "QR"};
const char* const outbound_letters[] = {"CT", "XS", "LY", "JC", "HH", "QC"};

QString no_blanks(QString text) {
    return text.remove(QRegularExpression(QStringLiteral("\\s")));
}

/** A document of each kind from its first line to its deletion. */
class any_document_flow : public document_flow, public testing::WithParamInterface<known_kind> {
protected:
    any_document_flow() { stand_in_for_missing_font(); }
    ~any_document_flow() override { QFont::removeSubstitutions(QStringLiteral("Microsoft YaHei")); }

    /** Where the lists differ. */
    int list_column(int inbound, int outbound) const { return GetParam().inbound ? inbound : outbound; }

    QList<typed_line> brought() const {
        return {{0, 9, QStringLiteral("12.35"), place + QStringLiteral("甲"), QStringLiteral("轻放 100%+1")},
                {1, 4, QStringLiteral("0.07"), place + QStringLiteral("乙"), QString()}};
    }

    void write() {
        if (GetParam().inbound) {
            go(GetParam().page);
            seen = write_in(GetParam(), brought(), remark);
        } else {
            bring_in(brought());
            go(GetParam().page);
            // A part at a price of its own, and the whole of the other.
            seen = write_out(GetParam(),
                             {{0, 5, QStringLiteral("20.5"), place + QStringLiteral("甲"), QString()},
                              {0, 4, QString(), place + QStringLiteral("乙"), QString()}},
                             remark);
        }
        ASSERT_EQ(seen.lines.size(), 2);
    }

    QStringList left_over() const {
        if (GetParam().inbound) return {place + QStringLiteral("乙 4"), place + QStringLiteral("甲 9")};
        return {place + QStringLiteral("甲 4")};
    }

    QLineEdit* field(const char* name) { return child<QLineEdit>(tab, name); }
    QLineEdit* remark_field() { return field(GetParam().inbound ? "txt_remark" : "txt_main_remark"); }

    /** Searches with the criteria as they stand; gives the numbers found. */
    QStringList found() {
        click(tab, "btn_search");
        return column(tab, 1);
    }

    /** The document is the only one found when the field has that text, and not found when it has another. */
    void expect_text_criterion(QLineEdit* by, const QString& text) {
        by->setText(text);
        EXPECT_EQ(found(), QStringList{sn}) << by->objectName().toStdString();
        by->setText(text + QStringLiteral("?"));
        EXPECT_EQ(found(), QStringList()) << by->objectName().toStdString();
        by->clear();
    }

    /** With the first row of a picker the document is found, with the second it is not, with all it is. */
    template <class picker>
    void expect_picked_criterion(const char* by, const std::function<void(picker*)>& right,
                                 const std::function<void(picker*)>& wrong) {
        with_modal_of<picker>([&] { press(tab, by); }, right);
        EXPECT_EQ(found(), QStringList{sn}) << by;
        with_modal_of<picker>([&] { press(tab, by); }, wrong);
        EXPECT_EQ(found(), QStringList()) << by;
        with_modal_of<picker>([&] { press(tab, by); }, [](picker* shown) { click(shown, "btn_all"); });
        EXPECT_EQ(field(by)->text(), QStringLiteral("【全部】"));
        EXPECT_EQ(found(), QStringList{sn}) << by;
    }

    static void pick_user(dlg_search_user* picker, const char* name) {
        child<QLineEdit>(picker, "txt_username")->setText(QLatin1String(name));
        click(picker, "btn_search");
        ASSERT_EQ(table(picker)->rowCount(), 1);
        take_row(picker, 0);
    }

    void pick_dept(int row) {
        with_modal_of<dlg_dept>([this] { press(tab, "txt_dept"); },
                                [row](dlg_dept* picker) {
                                    auto* tree = child<QTreeView>(picker, "treeview");
                                    const QModelIndex root = tree->model()->index(0, 0);
                                    double_click_node(tree,
                                                      tree->model()->index(row, 0, root).data().toString());
                                });
    }

    void expect_criteria() {
        expect_text_criterion(remark_field(), remark.mid(1).toLower());
        remark_field()->setText(remark);
        expect_text_criterion(field("txt_sn"), sn.right(9));
        expect_picked_criterion<dlg_search_emp>(
            "txt_operater", [](dlg_search_emp* picker) { take_row(picker, 0); },
            [](dlg_search_emp* picker) { take_row(picker, 1); });
        expect_picked_criterion<dlg_search_user>(
            "txt_writer", [](dlg_search_user* picker) { pick_user(picker, "demo_admin"); },
            [](dlg_search_user* picker) { pick_user(picker, "demo_keeper"); });
        if (GetParam().has("company"))
            expect_picked_criterion<dlg_search_company>(
                "txt_company", [](dlg_search_company* picker) { take_row(picker, 0); },
                [](dlg_search_company* picker) { take_row(picker, 1); });
        if (GetParam().has("dept")) {
            pick_dept(0);
            EXPECT_EQ(field("txt_dept")->text(), seen.partner);
            EXPECT_EQ(found(), QStringList{sn});
            // The outbound list shows its department and does not search for it.
            pick_dept(1);
            EXPECT_EQ(found(), GetParam().inbound ? QStringList() : QStringList{sn});
            pick_dept(0);
        }
        auto* start = child<QDateEdit>(tab, "date_start");
        const QDate first = start->date();
        start->setDate(QDate::currentDate().addDays(1));
        EXPECT_EQ(found(), QStringList());
        start->setDate(first);
        EXPECT_EQ(found(), QStringList{sn});
    }

    void expect_listed(const QDateTime& before) {
        ASSERT_GT(table(tab)->rowCount(), 0);
        const auto cell = [this](int inbound, int outbound) {
            return column(tab, list_column(inbound, outbound)).value(0);
        };
        sn = cell(1, 1);
        const char* letters =
            GetParam().inbound ? inbound_letters[GetParam().type - 1] : outbound_letters[GetParam().type - 1];
        EXPECT_TRUE(sn.startsWith(QLatin1String(letters))) << sn.toStdString();
        EXPECT_EQ(cell(5, 2), seen.partner);
        EXPECT_EQ(cell(6, 3), seen.operater);
        EXPECT_EQ(cell(7, 4), g_http.current_user.realname);
        EXPECT_EQ(cell(8, 5), QString::number(seen.total, 'f', 2));
        EXPECT_EQ(cell(9, 6), remark);
        const QString format = QStringLiteral("yyyy-MM-dd hh:mm");
        EXPECT_GE(cell(10, 10), before.toString(format));
        EXPECT_LE(cell(10, 10), QDateTime::currentDateTime().toString(format));
    }

    /** What the screen's button for it puts on paper, all pages in one, without blanks. */
    QString printed(QWidget* screen) {
        const QString file = folder.filePath(QStringLiteral("paper.pdf"));
        with_preview([screen] { click(screen, "btn_print"); }, [](QPrintPreviewDialog*) {}, file);
        QMetaObject::invokeMethod(screen, "slot_print");
        return paper_texts(file).join(QString());
    }

    static void expect_on(const QString& paper, const QStringList& texts) {
        for (const QString& text : texts)
            EXPECT_TRUE(paper.contains(no_blanks(text)))
                << text.toStdString() << " is not on " << paper.toStdString();
    }

    void expect_view() {
        click_row(table(tab), 0);
        with_modal(
            [this] { click(tab, "btn_view"); },
            [this](QWidget* editor) {
                EXPECT_EQ(editor->windowTitle(), QStringLiteral("查看") + QString::fromUtf8(GetParam().name));
                const auto text = [editor](const char* name) {
                    return child<QLineEdit>(editor, name)->text();
                };
                EXPECT_EQ(text("txt_sn"), sn);
                EXPECT_EQ(text("txt_operater"), seen.operater);
                EXPECT_EQ(text("txt_writer"), g_http.current_user.realname);
                EXPECT_EQ(text("txt_remark"), remark);
                EXPECT_EQ(text(GetParam().has("dept") ? "txt_dept" : "txt_company"), seen.partner);
                EXPECT_EQ(visible_rows(editor), seen.lines);
                const QString paper = printed(editor);
                expect_on(paper,
                          {GetParam().inbound ? QStringLiteral("入库明细") : QStringLiteral("出库明细"), sn,
                           seen.operater, g_http.current_user.realname, remark});
                for (const QStringList& line : seen.lines)
                    expect_on(paper, line);
                if (GetParam().has("company")) expect_on(paper, {seen.partner});
                click(editor, "btn_cancel");
            });
    }

    /** List, picker and ledger say the same of what lies at the places of this test. */
    void expect_stock(const QStringList& expected) {
        EXPECT_EQ(ledger_says(place), expected);
        EXPECT_EQ(picker_shows(place), expected);
        go("stock_detail");
        child<QLineEdit>(tab, "txt_place")->setText(place);
        click(tab, "btn_search");
        QStringList shown;
        for (int row = 0; row < table(tab)->rowCount(); ++row)
            shown.append(column(tab, 3)[row] + QLatin1Char(' ') + column(tab, 11)[row]);
        EXPECT_EQ(shown, expected);
    }

    const QString place = QStringLiteral("架") + QString::fromStdString(GetParam().word());
    const QString remark = QStringLiteral("A急件=1+50%") + QString::fromStdString(GetParam().word());
    seen_document seen;
    QString sn;
    QTemporaryDir folder;
};

INSTANTIATE_TEST_SUITE_P(inbound, any_document_flow, testing::ValuesIn(inbound_rows),
                         [](const auto& p) { return p.param.word(); });
INSTANTIATE_TEST_SUITE_P(outbound, any_document_flow, testing::ValuesIn(outbound_rows),
                         [](const auto& p) { return p.param.word(); });

} // namespace

TEST_P(any_document_flow, is_written_listed_found_viewed_printed_and_deleted) {
    const QDateTime before = QDateTime::currentDateTime();
    open_as(QStringLiteral("demo_admin"));
    write();
    expect_listed(before);
    expect_criteria();
    expect_view();
    expect_on(printed(tab), {GetParam().inbound ? QStringLiteral("入库记录") : QStringLiteral("出库记录"), sn,
                             seen.partner, QString::number(seen.total, 'f', 2), remark});
    expect_stock(left_over());
    if (!GetParam().inbound) {
        // What brought the goods in cannot be undone while a part of them is out.
        go("instore_other");
        const int rows = table(tab)->rowCount();
        delete_first();
        EXPECT_EQ(table(tab)->rowCount(), rows);
    }
    go(GetParam().page);
    ASSERT_EQ(column(tab, 1), QStringList{sn}) << "the tab stayed open with its criteria";
    delete_first();
    EXPECT_EQ(table(tab)->rowCount(), 0);
    EXPECT_EQ(found(), QStringList());
    expect_stock(GetParam().inbound
                     ? QStringList()
                     : QStringList{place + QStringLiteral("乙 4"), place + QStringLiteral("甲 9")});
    EXPECT_EQ(value(QStringLiteral("SELECT count(*) FROM draft")), QStringLiteral("0"));
    EXPECT_EQ(value(QStringLiteral("SELECT count(*) FROM claim WHERE state = 1")), QStringLiteral("0"));
    expect_sound();
}
