#pragma once
#include <QHash>
#include <QJsonObject>
#include <QList>
#include <QObject>
#include <QString>
#include <QVariant>

#include "model/model_interface.h"
#include "model/record_columns.h"
#include "model/struct_stock_allot.h"

class QTableWidget;

/** The transfers module. A header carries no total, so none is posted after the lines. */
class model_stock_allot : public QObject, public model_interface {
    Q_OBJECT
    Q_INTERFACES(model_interface)

public:
    explicit model_stock_allot(QTableWidget* table = nullptr);

    /** `html` of the answer is the page as it is printed. */
    QHash<QString, QVariant> get_page(QString args, int page_num, int page_size) override;
    /** `http_state` 1 is done; then `insert_id` is the id of the transfer. */
    QJsonObject do_add(struct_stock_allot stock_allot);
    bool do_delete(QString id);
    /** The lines of a transfer, without totals. */
    QList<struct_stock_allot_detail> get_detail(QString id);

    /** The search arguments for what a record holds. */
    static QString search_args(const struct_stock_allot& search);
    /** The list's columns: each name before its id. */
    static const record_columns<struct_stock_allot>& columns();

private:
    QTableWidget* table;
    QString args;
};
