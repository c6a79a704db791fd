#pragma once
#include <QMetaType>
#include <QString>

/** An account. */
struct struct_user {
    QString id;
    QString username;
    QString realname;
    QString password;
    /** As shown, "yyyy-MM-dd hh:mm"; empty if never. */
    QString last_login_time;
    /** 1 administrator, 2 ordinary user. */
    int type = 0;
    QString mobile;
    QString email;
    /** 1 enabled, 2 disabled. */
    int state = 0;
    /** In a row the shown text, after an add the seconds. */
    QString reg_time;
};
Q_DECLARE_METATYPE(struct_user)
