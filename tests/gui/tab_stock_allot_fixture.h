#pragma once
#include "gui/stock_fixture.h"
#include "stock/dlg_stock_allot_add.h"
#include "stock/tab_stock_allot.h"
#include "support/pick.h"

/**
 * The tab of transfers with three of them in it. Transfer n has the id n, the number "DB-n", goes from fn to
 * tn, is of the employee on and the user wn and came in n minutes after 12:56.
 */
class allot_tab : public list_tab_test<tab_stock_allot, stock_test> {
protected:
    static QJsonObject transfer(int n) {
        const QString number = QString::number(n);
        const auto named = [&number](const char* name) { return QString::fromUtf8(name) + number; };
        return {{QStringLiteral("id"), number},
                {QStringLiteral("sn"), named("DB-")},
                {QStringLiteral("warehouse_out"), named("f")},
                {QStringLiteral("warehouse_out_name"), named("出仓")},
                {QStringLiteral("warehouse_in"), named("t")},
                {QStringLiteral("warehouse_in_name"), named("入仓")},
                {QStringLiteral("operater"), named("o")},
                {QStringLiteral("operater_name"), named("员工")},
                {QStringLiteral("writer"), named("w")},
                {QStringLiteral("writer_name"), named("用户")},
                {QStringLiteral("remark"), named("附注")},
                {QStringLiteral("datetime"), 1586696160 + n * 60}};
    }

    void open_with(const std::vector<const char*>& rights) {
        g_http.rights.clear();
        grant("stock_allot", rights);
        server.always("wms_stock_allot/get_page", page_body({transfer(1), transfer(2), transfer(3)}));
        server.always("wms_stock_allot/get_detail",
                      R"([{"id":"71","main_id":"2","product_name":"钉","price":"2","amount":"3"}])");
        server.always("wms_warehouse/get_option_with_stat", "[]");
        show(std::make_unique<tab_stock_allot>(nullptr));
    }

    /** Opens the tab with all rights; the whole of 2020 is searched for. */
    void open() {
        open_with({"search", "add", "view", "delete", "print"});
        set_dates(tab.get(), QDate(2020, 1, 1), QDate(2020, 12, 31));
        server.forget();
    }

    QComboBox* box(const char* name) { return child<QComboBox>(tab.get(), name); }
    QList<QByteArray> searches() const { return server.bodies("wms_stock_allot/get_page"); }

    /** The form of a first page of 2020 with these criteria. */
    static QByteArray searched(const QByteArray& criteria) {
        return "date_start=1577836800&date_end=1609459199" + criteria + "&page_num=1&page_size=20";
    }
    /** Searches and gives the form that went out. */
    QByteArray search() {
        click(tab.get(), "btn_search");
        return searches().last();
    }

    void with_editor(const std::function<void()>& act,
                     const std::function<void(dlg_stock_allot_add*)>& drive) {
        with_modal_of<dlg_stock_allot_add>(act, [&](dlg_stock_allot_add* editor) {
            EXPECT_EQ(editor->parentWidget(), tab.get());
            drive(editor);
            editor->close();
        });
    }
};
