#pragma once
#include <QSet>

#include "gui/list_fixture.h"
#include "model/struct_user.h"

/** Screens of accounts against a scripted service. User n has the id n and the name "user" n. */
class user_test : public list_test {
protected:
    QJsonObject user(int n) const {
        const QString number = QString::number(n);
        return {
            {QStringLiteral("id"), number},
            {QStringLiteral("username"), QStringLiteral("user") + number},
            {QStringLiteral("realname"), QStringLiteral("姓名") + number},
            {QStringLiteral("type"), administrators.contains(n) ? QStringLiteral("1") : QStringLiteral("2")},
            {QStringLiteral("mobile"), QStringLiteral("1380000000") + number.right(1)},
            {QStringLiteral("email"), QStringLiteral("user") + number + QStringLiteral("@tavrok.cn")},
            {QStringLiteral("state"), n % 2 == 1 ? QStringLiteral("1") : QStringLiteral("2")},
            // One minute apart.
            {QStringLiteral("last_login_time"), 1586696160 + n * 60},
            {QStringLiteral("reg_time"), 1586600000 + n * 60}};
    }

    /** A page with these users. */
    QByteArray page_of(std::initializer_list<int> numbers, int page_count = 1) const {
        QJsonArray list;
        for (int n : numbers)
            list.append(user(n));
        return page_body(list, page_count);
    }

    /** The users that are administrators. */
    QSet<int> administrators;
};

/** What the mobile number and e-mail address patterns make of a text. */
struct pattern_row {
    const char* text;
    bool accepted;
};

inline const pattern_row mobile_rows[] = {
    {"13800000000", true},  {"14012345678", true},   {"15912345678", true},    {"17700000000", true},
    {"18999999999", true},  {"19000000000", true},   {"1380000000", false},    {"138000000000", false},
    {"12800000000", false}, {"11000000000", false},  {"16000000000", false},   {"23800000000", false},
    {"1380000000a", false}, {" 13800000000", false}, {"+8613800000000", false}};

inline const pattern_row email_rows[] = {
    {"a@b.cn", true},
    {"Li.Ming_2@mail.tavrok.com", true},
    {"a.b.c@d.e.f.org", true},
    // The bar is one of the characters that may join two words.
    {"a|b@c.cn", true},
    {"a@b_c.cn", true},
    {"9@9.CN", true},
    {"a@b.c", false},
    {"a@b.info", false},
    {"a@b.c1", false},
    {"a@b", false},
    {"a.cn", false},
    {"@b.cn", false},
    {"a@", false},
    {"a@@b.cn", false},
    {".a@b.cn", false},
    {"a.@b.cn", false},
    {"a..b@c.cn", false},
    {"a._b@c.cn", false},
    {"a-b@c.cn", false},
    {"a+b@c.cn", false},
    {"a@b-c.cn", false},
    {"a@.cn", false},
    {"a b@c.cn", false},
    {" a@b.cn", false},
    {"a@b.cn ", false},
    {"a@b.cn;c@d.cn", false},
    {"李@b.cn", false},
    // A pattern that is decided at once, however long the text.
    {"aaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaa!", false}};
