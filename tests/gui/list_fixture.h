#pragma once
#include <QAction>
#include <QApplication>
#include <QFile>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTableWidget>
#include <memory>

#include "init_resources.h"
#include "support/client_fixture.h"
#include "support/layout.h"
#include "support/modal.h"
#include "support/pages.h"
#include "support/screen.h"
#include "support/time_zone.h"

/** Screens with lists against a scripted service. */
class list_test : public client_test {
protected:
    ~list_test() override {
        clear_tip();
        qApp->setStyleSheet(QString());
    }

    /** The second column, where the names are, top to bottom. */
    static QStringList names(const QTableWidget* table) { return column_texts(table, 1); }

    /** Shows a screen with the style sheet that the program has, and checks that nothing of it is cut off. */
    static void expect_fits_with_the_style_sheet(QWidget* screen) {
        init_resources();
        QFile sheet(QStringLiteral(":/qss/white.qss"));
        ASSERT_TRUE(sheet.open(QIODevice::ReadOnly));
        qApp->setStyleSheet(QString::fromLatin1(sheet.readAll()));
        screen->show();
        QCoreApplication::sendPostedEvents();
        expect_nothing_cut(screen);
        const auto lists = screen->findChildren<QTableWidget*>();
        for (const QTableWidget* table : lists)
            for (int i = 0; i < table->columnCount(); ++i)
                EXPECT_TRUE(table->isColumnHidden(i) ||
                            table->columnWidth(i) >= table->horizontalHeader()->sectionSizeHint(i))
                    << "header " << i << " is cut off";
    }

    const scoped_time_zone zone{"UTC"};
};

/** A tab with a list, its buttons and its context menu. */
template <class screen, class records = list_test>
class list_tab_test : public records {
protected:
    void show(std::unique_ptr<screen> made) {
        tab = std::move(made);
        tab->show();
        table = child<QTableWidget>(tab.get(), "tablewidget");
    }

    QLineEdit* field(const char* name) { return child<QLineEdit>(tab.get(), name); }

    QAction* action(const char* text) { return menu_action(table, text); }

    /** Checks whether a right is there, as the user sees it: a button and an enabled entry. */
    void expect_right(const char* button, const char* entry, bool granted) {
        EXPECT_NE(child<QPushButton>(tab.get(), button)->isHidden(), granted) << button;
        EXPECT_EQ(action(entry)->isEnabled(), granted) << entry;
    }

    /** Presses the button that deletes, and answers the question. */
    void remove(QMessageBox::StandardButton answer = QMessageBox::Yes) {
        with_question([this] { click(tab.get(), "btn_delete"); }, QStringLiteral("确认删除"),
                      QStringLiteral("确认删除吗？"), answer);
    }

    std::unique_ptr<screen> tab;
    QTableWidget* table = nullptr;
};
