#pragma once
#include <QLayout>
#include <QTableWidget>

#include "widgets/paging.h"

/** Puts a page bar below the table of a screen, which sends it the search arguments. */
template <class screen>
paging* add_page_bar(screen* owner, QLayout* layout, QTableWidget* table, const QString& module,
                     int rows_per_page) {
    auto* bar = new paging(owner, table, module, rows_per_page);
    QObject::connect(owner, &screen::signal_send_args, bar, &paging::slot_set_args);
    layout->addWidget(bar);
    return bar;
}
