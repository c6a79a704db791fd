#pragma once
#include <QObject>
#include <QString>

#include "model/record_columns.h"
#include "model/struct_outstore_detail.h"

/** The lines of outbound documents. */
class model_outstore_detail : public QObject {
    Q_OBJECT

public:
    model_outstore_detail();

    /** The answer is not looked at. */
    void do_add(struct_outstore_detail detail);

    /** The editor's line table. */
    static const record_columns<struct_outstore_detail>& columns();

private:
    QString args;
};
