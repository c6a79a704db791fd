#pragma once
#include <QMetaType>
#include <QString>

/** One line of a stocktaking: what was counted of one stock row, and what that makes more or less. */
struct struct_stock_taking_detail {
    /** "0" for a line that is not on the server. */
    QString id;
    /** The stock row that was counted. */
    QString stock_id;
    /** Id of the document. */
    QString main_id;
    QString product;
    QString product_name;
    QString code;
    /** Reference price: that of the stock row, unless the user gave another. */
    double price = 0;
    /** What the system had when the row was picked; whole units, as all quantities. */
    int sys_amount = 0;
    int real_amount = 0;
    QString remark;
    /** 1 once the stock row that was picked brought another product; never sent. */
    int changed = 0;
    QString spec;
    /** Counted quantity less that of the system. */
    int profitloss_amount = 0;
    /** The same in money: always a whole number. */
    double profitloss_total = 0;
    QString warehouse;
    QString warehouse_name;
    QString place;
    /** The lock of the line, opaque. */
    QString locked_id;
};
Q_DECLARE_METATYPE(struct_stock_taking_detail)
