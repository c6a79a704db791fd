#pragma once
#include <QHash>
#include <QJsonObject>
#include <QObject>
#include <QString>
#include <QVariant>

#include "model/model_interface.h"
#include "model/record_columns.h"
#include "model/struct_warehouse.h"

class QComboBox;
class QTableWidget;

/** The warehouses module: the list of them, or the options of combo boxes. */
class model_warehouse : public QObject, public model_interface {
    Q_OBJECT
    Q_INTERFACES(model_interface)

public:
    explicit model_warehouse(QTableWidget* table);
    /** For the option lists alone; with mode 4 their first entry means all warehouses, else it asks for one.
     */
    explicit model_warehouse(int option_mode);

    QHash<QString, QVariant> get_page(QString args, int page_num, int page_size) override;
    /** `http_state` 1 is done; then `insert_id` and `datetime` belong to the new record. */
    QJsonObject do_add(struct_warehouse warehouse);
    /** On success rewrites the table's current row; otherwise nothing happens. */
    void do_edit(struct_warehouse warehouse);
    bool do_delete(QString id);

    /**
     * Fills a combo box with all warehouses, their ids as text and an empty one for the first entry. With
     * `default_mode` 1 the default warehouse becomes the current entry.
     */
    void get_option(QComboBox* combo, int default_mode);
    /** The same with the stock on hand behind each name, in whole units, and the first entry current. */
    void get_option_with_stat(QComboBox* combo);

    /** Puts a saved record at the top of the table. */
    void add_row(struct_warehouse warehouse);

    /** The search arguments for the words that a record holds. */
    static QString search_args(const struct_warehouse& search);
    /** The list's columns. */
    static const record_columns<struct_warehouse>& columns();

private:
    void start_options(QComboBox* combo) const;

    QTableWidget* table = nullptr;
    int option_mode = 0;
    QString args;
};
