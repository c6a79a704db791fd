#pragma once
#include <QObject>
#include <QString>

#include "master/dlg_search_emp.h"

/** Lets the user pick an employee, who goes to `slot_emp_selected` of the screen that asks. */
template <class screen>
void pick_emp(screen* asker, const QString& title) {
    dlg_search_emp picker(asker);
    QObject::connect(&picker, &dlg_search_emp::signal_emp_selected, asker, &screen::slot_emp_selected);
    picker.setWindowTitle(title);
    picker.exec();
}
