#pragma once
#include "model/struct_dept.h"
#include "model/struct_outstore.h"
#include "model/struct_stock.h"

/**
 * Records of outbound documents. Stock row n has the id n, the product pn with the name "货n", costs n and a
 * half and has n times 10 units; it lies at place An of the warehouse wn.
 */
struct outstore_records {
    static struct_stock stock(int n) {
        const QString number = QString::number(n);
        struct_stock row;
        row.id = number;
        row.product = QStringLiteral("p") + number;
        row.product_name = QStringLiteral("货") + number;
        row.category = QStringLiteral("5");
        row.category_name = QStringLiteral("类");
        row.price = n + 0.5;
        row.amount = n * 10;
        row.total = row.price * row.amount;
        row.warehouse = QStringLiteral("w") + number;
        row.warehouse_name = QStringLiteral("仓") + number;
        row.remark = QStringLiteral("批") + number;
        row.spec = QStringLiteral("s") + number;
        row.place = QStringLiteral("A") + number;
        row.code = QStringLiteral("c") + number;
        return row;
    }

    static struct_dept dept() {
        struct_dept picked;
        picked.id = QStringLiteral("4");
        picked.name = QStringLiteral("部门");
        return picked;
    }

    /** A line that the service gave with a saved document. */
    static struct_outstore_detail saved_line(int n) {
        const struct_stock row = stock(n);
        struct_outstore_detail line;
        line.id = QStringLiteral("L") + row.id;
        line.main_id = QStringLiteral("77");
        line.product = row.product;
        line.product_name = row.product_name;
        line.category_name = row.category_name;
        line.category = row.category;
        line.price = row.price;
        line.amount = n;
        line.total = 1000;
        line.remark = row.remark;
        line.warehouse = row.warehouse;
        line.warehouse_name = row.warehouse_name;
        line.stock_id = row.id;
        line.code = row.code;
        line.spec = row.spec;
        line.place = row.place;
        return line;
    }

    static struct_outstore saved_document() {
        struct_outstore saved{};
        saved.id = QStringLiteral("77");
        saved.sn = QStringLiteral("CK1");
        saved.operater_name = QStringLiteral("李");
        saved.writer_name = QStringLiteral("王");
        saved.company_name = QStringLiteral("单位");
        saved.dept_name = QStringLiteral("部门");
        saved.remark = QStringLiteral("急");
        saved.details = {saved_line(1), saved_line(2)};
        return saved;
    }
};
