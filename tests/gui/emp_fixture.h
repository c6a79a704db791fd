#pragma once
#include "gui/list_fixture.h"

/** Screens that show employees. Employee n has the id n and the name "员工n"; the second has left. */
class emp_test : public list_test {
protected:
    static QJsonObject emp(int n) {
        const QString number = QString::number(n);
        return {{QStringLiteral("id"), number},
                {QStringLiteral("name"), QStringLiteral("员工") + number},
                {QStringLiteral("idnum"), QStringLiteral("11010119900101123") + number.right(1)},
                {QStringLiteral("jobnum"), QStringLiteral("A") + number},
                {QStringLiteral("mobile"), QStringLiteral("1380000000") + number.right(1)},
                {QStringLiteral("address"), QStringLiteral("address") + number},
                {QStringLiteral("remark"), QStringLiteral("remark") + number},
                {QStringLiteral("isdefault"), n == 1 ? QStringLiteral("1") : QStringLiteral("2")},
                {QStringLiteral("dimission"), n == 2 ? QStringLiteral("1") : QStringLiteral("2")},
                // One minute apart.
                {QStringLiteral("datetime"), 1586696160 + n * 60}};
    }

    /** A page with the employees of these numbers. */
    static QByteArray page_of(std::initializer_list<int> numbers, int page_count = 1, int page_num = 1) {
        QJsonArray list;
        for (int n : numbers)
            list.append(emp(n));
        return page_body(list, page_count, page_num);
    }
};
