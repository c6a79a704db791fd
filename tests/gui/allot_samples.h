#pragma once
#include "gui/outstore_samples.h"
#include "model/struct_emp.h"
#include "model/struct_stock_allot.h"

/** Records of transfers; stock rows are those of outbound documents. */
struct allot_records : outstore_records {
    static struct_emp employee(const char* id, const char* name) {
        struct_emp picked;
        picked.id = QString::fromUtf8(id);
        picked.name = QString::fromUtf8(name);
        return picked;
    }

    /** A line that the service gave with a saved transfer. */
    static struct_stock_allot_detail transfer_line(int n) {
        const struct_stock row = stock(n);
        struct_stock_allot_detail line;
        line.id = QStringLiteral("L") + row.id;
        line.main_id = QStringLiteral("77");
        line.product = row.product;
        line.product_name = row.product_name;
        line.code = row.code;
        line.spec = row.spec;
        line.place = row.place;
        line.price = row.price;
        line.amount = n;
        line.total = 1000;
        line.remark = row.remark;
        line.changed = 1;
        line.stock_id = row.id;
        return line;
    }

    /** A saved transfer from 一号仓 to 二号仓. */
    static struct_stock_allot saved_transfer() {
        struct_stock_allot saved;
        saved.id = QStringLiteral("77");
        saved.sn = QStringLiteral("DB1");
        saved.operater = QStringLiteral("3");
        saved.operater_name = QStringLiteral("李");
        saved.writer_name = QStringLiteral("王");
        saved.warehouse_out = QStringLiteral("3");
        saved.warehouse_out_name = QStringLiteral("一号仓");
        saved.warehouse_in = QStringLiteral("8");
        saved.warehouse_in_name = QStringLiteral("二号仓");
        saved.remark = QStringLiteral("急");
        saved.details = {transfer_line(1), transfer_line(2)};
        return saved;
    }

    static QStringList words(std::initializer_list<const char*> texts) {
        QStringList result;
        for (const char* text : texts)
            result.append(QString::fromUtf8(text));
        return result;
    }
};
