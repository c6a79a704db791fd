#pragma once
#include <QHash>
#include <QJsonObject>
#include <QList>
#include <QObject>
#include <QString>
#include <QVariant>

#include "model/model_interface.h"
#include "model/struct_instore.h"

class QTableWidget;

/** The inbound documents module. */
class model_instore : public QObject, public model_interface {
    Q_OBJECT
    Q_INTERFACES(model_interface)

public:
    model_instore();
    explicit model_instore(QTableWidget* table);
    explicit model_instore(int type);
    model_instore(QTableWidget* table, int type);

    /** The kind is taken from the arguments. `html` of the answer is the page as it is printed. */
    QHash<QString, QVariant> get_page(QString args, int page_num, int page_size) override;
    /** The lines of a document. */
    QList<struct_instore_detail> get_detail(QString id);
    bool do_delete(QString id);
    /** `http_state` 1 is done; then `insert_id` is the id of the document. */
    QJsonObject do_add(struct_instore instore);
    bool update_total(QString id, double total);

    /** The search arguments for what a record holds. */
    static QString search_args(const struct_instore& search);

private:
    QTableWidget* table = nullptr;
    int type = 0;
    QString args;
};
