#pragma once
#include <QLayout>
#include <QTableWidget>

#include "widgets/paging.h"

/** How many rows a page of a list has: in a tab, and in a dialog that picks a record. */
constexpr int g_rows_of_a_tab = 20;
constexpr int g_rows_of_a_picker = 10;

/** Puts a page bar below the table of a screen, which sends it the search arguments. */
template <class screen>
paging* add_page_bar(screen* owner, QLayout* layout, QTableWidget* table, const QString& module,
                     int rows_per_page) {
    auto* bar = new paging(owner, table, module, rows_per_page);
    QObject::connect(owner, &screen::signal_send_args, bar, &paging::slot_set_args);
    layout->addWidget(bar);
    return bar;
}
