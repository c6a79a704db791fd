#pragma once
#include <gtest/gtest.h>

#include <QString>
#include <QStringList>
#include <memory>

#include "e2e/service_process.h"
#include "gui/app/shell.h"

class QTableWidget;
class QWidget;
class window;

/** A test of the real client against the real service, with nobody logged in. */
class e2e_test : public testing::Test {
protected:
    e2e_test();
    ~e2e_test() override;

    /** Starts the service; its options are those of `serve`. */
    void serve(const QStringList& options = {});
    /** Fills in a login dialog and submits it. */
    static void submit(QWidget* login, const QString& name, const QString& password);
    /** Logs in through the dialog and shows the window, as the start of the program does. */
    static void log_in(window& shell, const QString& name);
    /** The tab in front. */
    static QWidget* front(const window& shell);
    /** The pages of the navigation tree by their keys, groups left out. */
    static QStringList pages(const window& shell);
    static QTableWidget* table(const QWidget* screen);
    /** Texts of one column, from the top. */
    static QStringList column(const QWidget* screen, int index);
    /** Types a name into the search field and searches. */
    static void search_name(const QWidget* screen, const QString& name);
    /** Adds a partner through the dialog that "添加" opens. */
    static void add_partner(QWidget* tab, const QString& name, const QString& remark = QString());

    std::unique_ptr<service_process> service;
    browser web;

private:
    QString former_base_url;
};
