#pragma once
#include <QObject>
#include <QString>

#include "model/record_columns.h"
#include "model/struct_stock_taking_detail.h"

/** The lines of stocktakings. */
class model_stock_taking_detail : public QObject {
    Q_OBJECT

public:
    model_stock_taking_detail();

    bool do_add(struct_stock_taking_detail detail);

    /** The editor's line table. */
    static const record_columns<struct_stock_taking_detail>& columns();

private:
    QString args;
};
