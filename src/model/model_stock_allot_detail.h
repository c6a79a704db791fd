#pragma once
#include <QObject>
#include <QString>

#include "model/record_columns.h"
#include "model/struct_stock_allot_detail.h"

/** The lines of transfers. */
class model_stock_allot_detail : public QObject {
    Q_OBJECT

public:
    model_stock_allot_detail();

    /** The answer is not looked at. */
    void do_add(struct_stock_allot_detail detail);

    /** The editor's line table. */
    static const record_columns<struct_stock_allot_detail>& columns();

private:
    QString args;
};
