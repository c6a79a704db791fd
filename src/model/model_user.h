#pragma once
#include <QObject>
#include <QString>

/** The accounts module. */
class model_user : public QObject {
    Q_OBJECT

public:
    model_user();

    /** What check_login found. */
    enum login_result { no_contact = 1, logged_in = 2, refused = 3 };

    /**
     * Asks the service for a session and, when it is granted, fills the session state of g_http: the user and
     * the granted menu rows. Any other outcome leaves that state alone. Returns a login_result.
     */
    int check_login(QString username, QString password_md5);

private:
    QString args;
};
