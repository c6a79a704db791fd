#pragma once
#include <QHash>
#include <QJsonObject>
#include <QObject>
#include <QString>
#include <QVariant>

#include "model/model_interface.h"
#include "model/record_columns.h"
#include "model/struct_product.h"

class QTableWidget;

/** The products module. */
class model_product : public QObject, public model_interface {
    Q_OBJECT
    Q_INTERFACES(model_interface)

public:
    explicit model_product(QTableWidget* table);

    QHash<QString, QVariant> get_page(QString args, int page_num, int page_size) override;
    /** `http_state` 1 is done; then `insert_id` and `datetime` belong to the new record. */
    QJsonObject do_add(struct_product product);
    /** On success rewrites the table's current row; otherwise nothing happens. */
    void do_edit(struct_product product);
    bool do_delete(QString id);

    /** Puts a saved record at the top of the table. */
    void add_row(struct_product product);

    /** The search arguments for the words that a record holds. Each pair has its leading "&". */
    static QString search_args(const struct_product& search);
    /** The list's columns. */
    static const record_columns<struct_product>& columns();

signals:
    /** Never emitted. */
    void signal_product_to_edit(struct_product product);

private:
    void append_category_and_price(const struct_product& product);

    QTableWidget* table;
    QString args;
};
