#pragma once
#include "gui/list_fixture.h"

/** Screens of trading partners against a scripted service. Partner n has the id n and the name "单位n". */
class company_test : public list_test {
protected:
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
};
