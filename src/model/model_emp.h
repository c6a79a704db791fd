#pragma once
#include <QHash>
#include <QJsonObject>
#include <QObject>
#include <QString>
#include <QVariant>

#include "model/model_interface.h"
#include "model/record_columns.h"
#include "model/struct_emp.h"

class QComboBox;
class QTableWidget;

/** The employees module. */
class model_emp : public QObject, public model_interface {
    Q_OBJECT
    Q_INTERFACES(model_interface)

public:
    /** Without a table it can ask and tell the service, and show nothing. */
    explicit model_emp(QTableWidget* table = nullptr);

    QHash<QString, QVariant> get_page(QString args, int page_num, int page_size) override;
    /** `http_state` 1 is done; then `insert_id` and `datetime` belong to the new record. */
    QJsonObject do_add(struct_emp emp);
    /** On success rewrites the table's current row; otherwise nothing happens. */
    void do_edit(struct_emp emp);
    bool do_delete(int id);

    /** Whether another employee than the one with that id (empty: any) has the number already. */
    bool check_mobile(QString mobile, QString id);
    bool check_jobnum_exist(QString jobnum, QString id);
    bool check_idnum_exist(QString idnum, QString id);

    /** Fills a combo box with all employees, their ids as numbers; the first entry asks for one. */
    void get_option(QComboBox* combo);

    /** Puts a saved record at the top of the table. */
    void add_row(struct_emp emp);

    /** The search arguments for the words that a record holds. */
    static QString search_args(const struct_emp& search);
    /** The list's columns. */
    static const record_columns<struct_emp>& columns();

signals:
    /** Never emitted. */
    void signal_emp_to_edit(struct_emp emp);

private:
    void append_values(const struct_emp& emp);

    QTableWidget* table;
    QString args;
};
