#pragma once
#include <QObject>
#include <QString>

#include "model/record_columns.h"
#include "model/struct_instore_detail.h"

/** The lines of inbound documents. */
class model_instore_detail : public QObject {
    Q_OBJECT

public:
    model_instore_detail();

    /** The answer is not looked at. */
    void do_add(struct_instore_detail detail);
    bool do_delete(QString id);

    /** The editor's line table. */
    static const record_columns<struct_instore_detail>& columns();

signals:
    /** Never emitted. */
    void signal_instore_to_edit(struct_instore_detail instore);

private:
    QString args;
};
