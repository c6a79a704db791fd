#pragma once
#include <QHash>
#include <QObject>
#include <QString>
#include <QVariant>

#include "model/model_interface.h"
#include "model/record_columns.h"
#include "model/struct_stock.h"

class QTableWidget;

/** What a stock row is locked for. */
enum lock_type { lock_for_allot = 1, lock_for_taking = 2, lock_for_outstore = 3 };

/** The stock rows, and the locks on them while a document is written. */
class model_stock_detail : public QObject, public model_interface {
    Q_OBJECT
    Q_INTERFACES(model_interface)

public:
    model_stock_detail();
    /** `mode` is kept and never read. */
    model_stock_detail(QTableWidget* table, int mode);

    /** `html` of the answer is the page as it is printed. */
    QHash<QString, QVariant> get_page(QString args, int page_num, int page_size) override;
    /** Makes the stock of an inbound line; gives the answer as it came. */
    QString do_add(struct_stock stock);
    /** Gives the answer as it came: the lock's id. A `total` of 0 and an `amount` of 0 are not sent. */
    QString lock_stock(struct_stock stock, int lock_type);
    bool unlock_stock(QString locked_id, int lock_type);

    /** The search arguments for what a record holds. They begin with "&". */
    static QString search_args(const struct_stock& search);
    /** The list's columns. */
    static const record_columns<struct_stock>& columns();

signals:
    /** Never emitted. */
    void signal_stock_to_edit(struct_stock stock);
    /** Never emitted. */
    void signal_send_args(QString args);

private:
    QTableWidget* table = nullptr;
    int mode = 0;
    QString args;
};
