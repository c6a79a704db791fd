#pragma once
#include <QDateEdit>
#include <QTest>

#include "documents/tab_instore.h"
#include "documents/tab_outstore.h"
#include "gui/list_fixture.h"
#include "support/kinds.h"
#include "support/pick.h"

/**
 * A tab of documents of any kind, with three documents in it. Document n has the id n, the number "N-n", the
 * partner c-n, the department d-n, the employee o-n and the user w-n, costs n and a quarter and came in n
 * minutes after 12:56. There is one of each to pick: a partner, an employee, a user and two departments.
 */
class document_tab : public list_test {
protected:
    document_tab() {
        server.always(
            "wms_company/get_page",
            page_body({QJsonObject{{QStringLiteral("id"), u("31")}, {QStringLiteral("name"), u("甲行")}}}));
        server.always(
            "wms_emp/get_page",
            page_body({QJsonObject{{QStringLiteral("id"), u("41")}, {QStringLiteral("name"), u("顾员")}}}));
        server.always("user/get_page", page_body({QJsonObject{{QStringLiteral("id"), u("51")},
                                                              {QStringLiteral("username"), u("login")},
                                                              {QStringLiteral("realname"), u("姜用")}}}));
        server.always("wms_dept/get_dept", R"([{"id":"61","name":"一部","child":[]}])");
    }

    static QString u(const char* text) { return QString::fromUtf8(text); }

    static QJsonObject document(int n) {
        const QString number = QString::number(n);
        QJsonObject d{{QStringLiteral("id"), number},
                      {QStringLiteral("sn"), QStringLiteral("N-") + number},
                      {QStringLiteral("company"), QStringLiteral("c-") + number},
                      {QStringLiteral("company_name"), u("单位") + number},
                      {QStringLiteral("dept"), QStringLiteral("d-") + number},
                      {QStringLiteral("dept_name"), u("部门") + number},
                      {QStringLiteral("operater"), QStringLiteral("o-") + number},
                      {QStringLiteral("operater_name"), u("员工") + number},
                      {QStringLiteral("writer"), QStringLiteral("w-") + number},
                      {QStringLiteral("writer_name"), u("用户") + number},
                      {QStringLiteral("total"), number + QStringLiteral(".25")},
                      {QStringLiteral("remark"), u("附注") + number},
                      {QStringLiteral("datetime"), 1586696160 + n * 60}};
        return d;
    }

    /** Opens the tab of a kind with these rights, as the main window does. */
    void open_with(const known_kind& opened, const std::vector<const char*>& rights) {
        kind = &opened;
        grant(kind->page, rights);
        server.always(path("get_page"), page_body({document(1), document(2), document(3)}));
        server.always(path("get_detail"), R"([{"id":"71","product_name":"钉","price":"2","amount":"3"}])");
        if (kind->inbound)
            tab = std::make_unique<tab_instore>(nullptr, kind->type);
        else
            tab = std::make_unique<tab_outstore>(nullptr, kind->type);
        tab->show();
        table = child<QTableWidget>(tab.get(), "tablewidget");
    }

    /** Opens the tab of a kind with all rights; the whole of 2020 is searched for. */
    void open(const known_kind& opened) {
        open_with(opened, {"search", "add", "view", "delete", "print"});
        child<QDateEdit>(tab.get(), "date_start")->setDate(QDate(2020, 1, 1));
        child<QDateEdit>(tab.get(), "date_end")->setDate(QDate(2020, 12, 31));
        server.forget();
    }

    QByteArray path(const char* endpoint) const { return kind->module() + "/" + endpoint; }
    const char* remark_field() const { return kind->inbound ? "txt_remark" : "txt_main_remark"; }
    QLineEdit* field(const char* name) { return child<QLineEdit>(tab.get(), name); }
    QAction* action(const char* text) { return menu_action(table, text); }
    QList<QByteArray> searches() const { return server.bodies(path("get_page")); }

    /** The form of a first page of 2020 with these criteria. */
    QByteArray searched(const QByteArray& criteria) const {
        const QByteArray dates = "date_start=1577836800&date_end=1609459199";
        const QByteArray type = QByteArray::number(kind->type);
        const QByteArray args = kind->inbound ? dates + criteria + "&instore_type=" + type
                                              : "outstore_type=" + type + "&" + dates + criteria;
        return args + "&page_num=1&page_size=20";
    }

    /** Searches and gives the form that went out. */
    QByteArray search() {
        click(tab.get(), "btn_search");
        return searches().last();
    }

    /** Presses a field that is picked and does something in the picker that comes. */
    void press(const char* name, const std::function<void(QWidget*)>& act) {
        with_modal([&] { QTest::mousePress(field(name), Qt::LeftButton); }, act);
    }

    /** Clicks twice on a row of the list. */
    void double_click(int row) {
        click_row(table, row);
        QTest::mouseDClick(table->viewport(), Qt::LeftButton, Qt::NoModifier,
                           table->visualItemRect(table->item(row, 1)).center());
    }

    /** Expects the editor to come, lets `drive` see it and closes it. */
    void with_editor(const std::function<void()>& act, const std::function<void(QWidget*)>& drive) {
        with_modal(act, [&](QWidget* editor) {
            EXPECT_EQ(QLatin1String(editor->metaObject()->className()),
                      kind->inbound ? QLatin1String("dlg_instore_add") : QLatin1String("dlg_outstore_add"));
            EXPECT_EQ(editor->parentWidget(), tab.get());
            drive(editor);
            editor->close();
        });
    }

    /** Presses the button that deletes, and answers the question. */
    void remove(QMessageBox::StandardButton answer = QMessageBox::Yes) {
        with_question([this] { click(tab.get(), "btn_delete"); }, QStringLiteral("确认删除"),
                      QStringLiteral("确认删除吗？"), answer);
    }

    const known_kind* kind = nullptr;
    std::unique_ptr<QWidget> tab;
    QTableWidget* table = nullptr;
};

/** The same for every kind. */
class any_document_tab : public document_tab, public testing::WithParamInterface<known_kind> {
protected:
    void open() { document_tab::open(GetParam()); }
};
