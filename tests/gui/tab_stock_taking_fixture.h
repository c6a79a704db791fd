#pragma once
#include <QDateEdit>
#include <QTest>

#include "gui/list_fixture.h"
#include "stock/tab_stock_taking.h"
#include "support/pick.h"

/**
 * The list of stocktakings with three of them in it. Stocktaking n has the id n, the number "P-n", the
 * employee o-n and the user w-n, makes n units less and n and a quarter in money, and came in n minutes after
 * 12:56. There is an employee and a user to pick.
 */
class taking_tab : public list_tab_test<tab_stock_taking> {
protected:
    taking_tab() {
        server.always(
            "wms_emp/get_page",
            page_body({QJsonObject{{QStringLiteral("id"), u("41")}, {QStringLiteral("name"), u("顾员")}}}));
        server.always("user/get_page", page_body({QJsonObject{{QStringLiteral("id"), u("51")},
                                                              {QStringLiteral("username"), u("login")},
                                                              {QStringLiteral("realname"), u("姜用")}}}));
        server.always(path("get_detail"),
                      R"([{"id":"71","stock_id":"k","product_name":"钉","price":"2","sys_amount":"10",)"
                      R"("real_amount":"8","profitloss_amount":"-2","profitloss_total":"-4"}])");
    }

    static QString u(const char* text) { return QString::fromUtf8(text); }

    static QByteArray path(const char* endpoint) { return QByteArray("wms_stock_taking/") + endpoint; }

    static QJsonObject taking(int n) {
        const QString number = QString::number(n);
        return {{QStringLiteral("id"), number},
                {QStringLiteral("sn"), QStringLiteral("P-") + number},
                {QStringLiteral("operater"), QStringLiteral("o-") + number},
                {QStringLiteral("operater_name"), u("员工") + number},
                {QStringLiteral("writer"), QStringLiteral("w-") + number},
                {QStringLiteral("writer_name"), u("用户") + number},
                {QStringLiteral("profitloss_amount"), QStringLiteral("-") + number},
                {QStringLiteral("profitloss_total"), QStringLiteral("-%1.25").arg(number)},
                {QStringLiteral("remark"), u("附注") + number},
                {QStringLiteral("datetime"), 1586696160 + n * 60}};
    }

    void open_with(const std::vector<const char*>& rights) {
        grant("stock_taking", rights);
        server.always(path("get_page"), page_body({taking(1), taking(2), taking(3)}));
        show(std::make_unique<tab_stock_taking>(nullptr));
    }

    /** Opens the tab with all rights; the whole of 2020 is searched for. */
    void open() {
        open_with({"search", "add", "view", "delete", "print"});
        child<QDateEdit>(tab.get(), "date_start")->setDate(QDate(2020, 1, 1));
        child<QDateEdit>(tab.get(), "date_end")->setDate(QDate(2020, 12, 31));
        server.forget();
    }

    QList<QByteArray> searches() const { return server.bodies(path("get_page")); }

    /** The form of a first page of 2020 with these criteria. */
    static QByteArray searched(const QByteArray& criteria) {
        return "&date_start=1577836800&date_end=1609459199" + criteria + "&page_num=1&page_size=20";
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
    /** A press that is expected to open nothing. */
    void press_in_vain(const char* name, Qt::MouseButton button = Qt::LeftButton) {
        QMouseEvent press(QEvent::MouseButtonPress, QPointF(3, 3), button, button, Qt::NoModifier);
        QApplication::sendEvent(field(name), &press);
        EXPECT_EQ(QApplication::activeModalWidget(), nullptr) << name;
    }

    /** Clicks twice on a row of the list. */
    void double_click(int row) {
        click_row(table, row);
        QTest::mouseDClick(table->viewport(), Qt::LeftButton, Qt::NoModifier,
                           table->visualItemRect(table->item(row, 1)).center());
    }
};
