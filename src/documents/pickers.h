#pragma once
#include <QObject>
#include <QString>

#include "access/dlg_search_user.h"
#include "master/dlg_dept.h"
#include "master/dlg_search_company.h"
#include "master/dlg_search_emp.h"

/** The pickers that document lists and editors open; each hands its record to a slot of the screen that asks.
 */

constexpr int g_pick_mode = 3;

template <class screen>
void pick_company(screen* asker, int company_type, const QString& title,
                  void (screen::*selected)(struct_company)) {
    dlg_search_company picker(asker, company_type, g_pick_mode);
    QObject::connect(&picker, &dlg_search_company::signal_company_selected, asker, selected);
    picker.setWindowTitle(title);
    picker.exec();
}

template <class screen>
void pick_dept(screen* asker, const QString& title, void (screen::*selected)(struct_dept)) {
    dlg_dept picker(asker, g_pick_mode);
    QObject::connect(&picker, &dlg_dept::signal_dept_selected, asker, selected);
    picker.setWindowTitle(title);
    picker.exec();
}

template <class screen>
void pick_operater(screen* asker, void (screen::*selected)(struct_emp)) {
    dlg_search_emp picker(asker);
    QObject::connect(&picker, &dlg_search_emp::signal_emp_selected, asker, selected);
    picker.setWindowTitle(QStringLiteral("查询选择经办人"));
    picker.exec();
}

template <class screen>
void pick_writer(screen* asker, void (screen::*selected)(struct_user),
                 const QString& title = QStringLiteral("查询选择制单人")) {
    dlg_search_user picker(asker);
    QObject::connect(&picker, &dlg_search_user::signal_user_selected, asker, selected);
    picker.setWindowTitle(title);
    picker.exec();
}
