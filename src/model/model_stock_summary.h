#pragma once
#include <QHash>
#include <QObject>
#include <QString>
#include <QVariant>

#include "model/model_interface.h"
#include "model/struct_stock.h"

class QTableWidget;

/** The stock summed up by product, as the service sums it. */
class model_stock_summary : public QObject, public model_interface {
    Q_OBJECT
    Q_INTERFACES(model_interface)

public:
    explicit model_stock_summary(QTableWidget* table);

    /** `html` of the answer is the page as it is printed. */
    QHash<QString, QVariant> get_page(QString args, int page_num, int page_size) override;

    /** The search arguments for dates, product name, code and specification of a record. They begin with "&".
     */
    static QString search_args(const struct_stock& search);

private:
    QTableWidget* table;
};
