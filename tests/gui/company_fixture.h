#pragma once
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTableWidget>
#include <vector>

#include "model/list_table.h"
#include "net/http.h"
#include "support/client_fixture.h"
#include "support/modal.h"
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
        return QJsonDocument(QJsonObject{{QStringLiteral("list"), list},
                                         {QStringLiteral("total"), last - first + 1},
                                         {QStringLiteral("page_count"), page_count},
                                         {QStringLiteral("page_num"), page_num}})
            .toJson(QJsonDocument::Compact);
    }

    /** Grants rights on one page. */
    static void grant(const char* page, const std::vector<const char*>& rights) {
        QStringList& granted = g_http.rights[QLatin1String(page)];
        for (const char* right : rights)
            granted.append(QLatin1String(right));
    }

    /** The names in the list, top to bottom. */
    static QStringList names(const QTableWidget* table) {
        QStringList result;
        for (int row = 0; row < table->rowCount(); ++row)
            result.append(cell_text(table, row, 1));
        return result;
    }

    const scoped_time_zone zone{"UTC"};
};
