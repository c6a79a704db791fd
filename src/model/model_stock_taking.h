#pragma once
#include <QHash>
#include <QJsonObject>
#include <QList>
#include <QObject>
#include <QString>
#include <QVariant>

#include "model/model_interface.h"
#include "model/struct_stock_taking.h"

class QTableWidget;

/** The stocktakings module. */
class model_stock_taking : public QObject, public model_interface {
    Q_OBJECT
    Q_INTERFACES(model_interface)

public:
    model_stock_taking();
    explicit model_stock_taking(QTableWidget* table);

    /** `html` of the answer is the page as it is printed. */
    QHash<QString, QVariant> get_page(QString args, int page_num, int page_size) override;
    /** `http_state` 1 is done; then `insert_id` is the id of the document. */
    QJsonObject do_add(struct_stock_taking stock_taking);
    bool do_delete(QString id);
    /** Sends what the lines make more or less. */
    bool update_profitloss(struct_stock_taking stock_taking);
    /** The lines of a document. */
    QList<struct_stock_taking_detail> get_detail(QString id);
    /** Sends nothing and does nothing: the service has no call for it. */
    void do_audit(QString id);

    /** The search arguments for what a record holds. They begin with "&". */
    static QString search_args(const struct_stock_taking& search);

private:
    QTableWidget* table = nullptr;
    QString args;
};
