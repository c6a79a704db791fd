#include <QApplication>
#include <QPushButton>
#include <memory>

#include "access/tab_user.h"
#include "documents/tab_instore.h"
#include "documents/tab_outstore.h"
#include "master/dlg_dept.h"
#include "master/dlg_prodcate.h"
#include "master/tab_company.h"
#include "master/tab_emp.h"
#include "master/tab_product.h"
#include "master/tab_warehouse.h"
#include "stock/tab_stock_allot.h"
#include "stock/tab_stock_taking.h"
#include "support/client_fixture.h"
#include "support/pages.h"
#include "support/rights_log.h"
#include "support/screen.h"

// The order of a screen's first load and of the signals about its rights. All of it happens in the
// constructor: the screen is looked at, and its signals are heard, from the moment in which the load arrives.

namespace {

struct gated_screen {
    const char* name;
    const char* page;
    const char* load;
    QWidget* (*make)();
    /** Pages whose rights are looked at besides. */
    int further_pages;
    bool declares_view;
};

const gated_screen gated_screens[] = {
    {"tab_company", "company_supplier", "wms_company/get_page",
     []() -> QWidget* { return new tab_company(nullptr, 1); }, 2, false},
    {"tab_emp", "emp", "wms_emp/get_page", []() -> QWidget* { return new tab_emp(nullptr); }, 0, true},
    {"tab_product", "product", "wms_product/get_page", []() -> QWidget* { return new tab_product(nullptr); },
     0, true},
    {"tab_warehouse", "warehouse", "wms_warehouse/get_page",
     []() -> QWidget* { return new tab_warehouse(nullptr); }, 0, false},
    {"dlg_dept", "dept", "wms_dept/get_dept", []() -> QWidget* { return new dlg_dept(nullptr, 1); }, 0, true},
    {"dlg_prodcate", "prodcate", "wms_prodcate/get_prodcate",
     []() -> QWidget* { return new dlg_prodcate(nullptr, 1); }, 0, false}};

/** The one screen of a class that there is, finished or not. */
QWidget* screen_named(const char* name) {
    const auto widgets = QApplication::allWidgets();
    for (QWidget* widget : widgets)
        if (QLatin1String(widget->metaObject()->className()) == QLatin1String(name)) return widget;
    throw std::runtime_error(std::string("no ") + name);
}

QStringList lines(std::initializer_list<const char*> texts) {
    QStringList result;
    for (const char* text : texts)
        result.append(QLatin1String(text));
    return result;
}

} // namespace

class heard_screen : public client_test {
protected:
    /** Listens to the screen `name` from its first load on; `look` is run at that load, before. */
    void listen(const char* name, const char* load, const std::function<void(QWidget*)>& look) {
        server.always(load, [this, name, look](const recorded_request&) {
            if (loads++ == 0) {
                QWidget* screen = screen_named(name);
                look(screen);
                log.follow(screen);
            }
            return scripted_answer("{}");
        });
    }

    rights_log log;
    int loads = 0;
};

class first_load : public heard_screen, public testing::WithParamInterface<gated_screen> {};

INSTANTIATE_TEST_SUITE_P(screens, first_load, testing::ValuesIn(gated_screens),
                         [](const auto& p) { return std::string(p.param.name); });

TEST_P(first_load, comes_before_the_signals_and_view_is_not_among_them) {
    const gated_screen& row = GetParam();
    grant(row.page, {"search", "view", "edit"});
    listen(row.name, row.load, [](QWidget*) {});
    const std::unique_ptr<QWidget> screen(row.make());
    QStringList expected = lines({"search on", "add off", "edit on", "delete off"});
    for (int i = 0; i < row.further_pages; ++i)
        expected += lines({"search off", "add off", "edit off", "delete off"});
    EXPECT_EQ(log.lines(), expected);
    EXPECT_EQ(loads, 1);
}

TEST_P(first_load, does_not_come_without_the_right_to_search) {
    const gated_screen& row = GetParam();
    grant(row.page, {"view", "edit"});
    const std::unique_ptr<QWidget> screen(row.make());
    EXPECT_TRUE(server.requests().isEmpty());
    EXPECT_FALSE(screen->isEnabled());
}

TEST_P(first_load, belongs_to_a_screen_whose_signal_to_view_is_connected_to_nothing) {
    const std::unique_ptr<QWidget> screen(GetParam().make());
    const bool declared = screen->metaObject()->indexOfSignal("signal_enable_view(bool)") >= 0;
    EXPECT_EQ(declared, GetParam().declares_view);
    EXPECT_EQ(connections_of(screen.get(), SIGNAL(signal_enable_view(bool))), 0);
    EXPECT_GT(connections_of(screen.get(), SIGNAL(signal_enable_add(bool))), 0);
}

class first_load_of_documents : public heard_screen {};

TEST_F(first_load_of_documents, comes_before_the_signals_and_add_before_view) {
    const struct {
        const char* name;
        const char* page;
        const char* load;
        QWidget* (*make)();
    } screens[] = {{"tab_instore", "instore_other", "wms_instore/get_page",
                    []() -> QWidget* { return new tab_instore(nullptr, 7); }},
                   {"tab_outstore", "outstore_receive", "wms_outstore/get_page",
                    []() -> QWidget* { return new tab_outstore(nullptr, 3); }},
                   {"tab_stock_allot", "stock_allot", "wms_stock_allot/get_page",
                    []() -> QWidget* { return new tab_stock_allot(nullptr); }},
                   {"tab_stock_taking", "stock_taking", "wms_stock_taking/get_page",
                    []() -> QWidget* { return new tab_stock_taking(nullptr); }}};
    QStringList expected;
    for (const auto& row : screens) {
        grant(row.page, {"search", "view", "print"});
        loads = 0;
        listen(row.name, row.load, [](QWidget*) {});
        const std::unique_ptr<QWidget> screen(row.make());
        EXPECT_EQ(loads, 1) << row.name;
        expected += lines({"search on", "add off", "view on", "delete off", "print on"});
        EXPECT_EQ(log.lines(), expected) << row.name;
    }
}

class first_load_of_accounts : public heard_screen {
protected:
    /** Makes the tab; gives how many of its buttons had been shown or hidden when the load arrived. */
    int shown_at_the_load() {
        int shown = 0;
        listen("tab_user", "user/get_page", [&shown](QWidget* screen) {
            for (const char* name : {"btn_search", "btn_add", "btn_edit", "btn_delete", "btn_grant"})
                if (child<QPushButton>(screen, name)->testAttribute(Qt::WA_WState_ExplicitShowHide)) ++shown;
        });
        tab = std::make_unique<tab_user>();
        EXPECT_EQ(loads, 1);
        return shown;
    }

    std::unique_ptr<tab_user> tab;
};

TEST_F(first_load_of_accounts, comes_before_the_signals_for_an_ordinary_user) {
    g_http.current_user.type = 2;
    grant("user", {"search", "add", "view"});
    EXPECT_EQ(shown_at_the_load(), 0);
    EXPECT_EQ(log.lines(), lines({"search on", "add off", "edit off", "delete off", "grant off"}));
}

TEST_F(first_load_of_accounts, comes_after_the_signals_for_everybody_else) {
    for (int type : {0, 1}) {
        g_http.current_user.type = type;
        tab.reset();
        loads = 0;
        EXPECT_EQ(shown_at_the_load(), 5) << type;
        EXPECT_TRUE(log.lines().isEmpty()) << type;
    }
}
