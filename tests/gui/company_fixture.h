#pragma once
#include <QJsonArray>
#include <QJsonObject>
#include <QTableWidget>

#include "model/list_table.h"
#include "support/client_fixture.h"
#include "support/modal.h"
#include "support/pages.h"
#include "support/screen.h"
#include "support/time_zone.h"

/** Screens of trading partners against a scripted service. Partner n has the id n and the name "单位n". */
class company_test : public client_test {
protected:
    ~company_test() override { clear_tip(); }

    static QJsonObject partner(int n) {
        const QString number = QString::number(n);
        QJsonObject p;
        for (const char* key : {"phone", "linkman", "fax", "address", "bank", "account", "remark"})
            p.insert(QLatin1String(key), QLatin1String(key) + number);
        p.insert(QStringLiteral("id"), number);
        p.insert(QStringLiteral("name"), QStringLiteral("单位") + number);
        p.insert(QStringLiteral("mobile"), QStringLiteral("1380000000") + number.right(1));
        p.insert(QStringLiteral("type"), QStringLiteral("1"));
        // One minute apart.
        p.insert(QStringLiteral("datetime"), 1586696160 + n * 60);
        return p;
    }

    /** A page with the partners `first` to `last`. */
    static QByteArray page_of(int first, int last, int page_count = 1, int page_num = 1) {
        QJsonArray list;
        for (int n = first; n <= last; ++n)
            list.append(partner(n));
        return page_body(list, page_count, page_num);
    }

    /** The names in the list, top to bottom. */
    static QStringList names(const QTableWidget* table) { return column_texts(table, 1); }

    const scoped_time_zone zone{"UTC"};
};
