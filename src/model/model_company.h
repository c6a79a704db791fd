#pragma once
#include <QHash>
#include <QJsonObject>
#include <QObject>
#include <QString>
#include <QVariant>

#include "model/model_interface.h"
#include "model/record_columns.h"
#include "model/struct_company.h"

class QTableWidget;

/** The trading partners module. */
class model_company : public QObject, public model_interface {
    Q_OBJECT
    Q_INTERFACES(model_interface)

public:
    explicit model_company(QTableWidget* table);

    QHash<QString, QVariant> get_page(QString args, int page_num, int page_size) override;
    /** `http_state` 1 is done; then `insert_id` and `datetime` belong to the new record. */
    QJsonObject do_add(struct_company company);
    /** On success rewrites the table's current row; otherwise nothing happens. */
    void do_edit(struct_company company);
    bool do_delete(QString id);

    /** Puts a saved record at the top of the table. */
    void add_row(struct_company company);

    /** The search arguments for the words that a record holds. */
    static QString search_args(const struct_company& search);
    /** The list's columns. */
    static const record_columns<struct_company>& columns();

private:
    void append_filled(const struct_company& company);

    QTableWidget* table;
    QString args;
};
