#pragma once
#include <QMetaType>
#include <QString>

/** The types of an account. */
enum user_type { user_administrator = 1, user_ordinary = 2 };

/** The states of an account. */
enum user_state { user_enabled = 1, user_disabled = 2 };

/** An account. */
struct struct_user {
    QString id;
    QString username;
    QString realname;
    QString password;
    /** As shown, "yyyy-MM-dd hh:mm"; empty if never. */
    QString last_login_time;
    /** A user_type. */
    int type = 0;
    QString mobile;
    QString email;
    /** A user_state. */
    int state = 0;
    /** In a row the shown text, after an add the seconds. */
    QString reg_time;
};
Q_DECLARE_METATYPE(struct_user)
