#pragma once
#include <QHash>
#include <QJsonObject>
#include <QObject>
#include <QString>
#include <QVariant>

#include "model/model_interface.h"
#include "model/record_columns.h"
#include "model/struct_user.h"

class QTableWidget;

/** The accounts module, with login and sign-up. */
class model_user : public QObject, public model_interface {
    Q_OBJECT
    Q_INTERFACES(model_interface)

public:
    /** A dialog that only asks needs no table; `get_page`, `do_edit` and `add_row` need one. */
    explicit model_user(QTableWidget* table = nullptr);

    /** What check_login found. */
    enum login_result { no_contact = 1, logged_in = 2, refused = 3 };

    /**
     * Asks the service for a session and, when it is granted, fills the session state of g_http: the user and
     * the granted menu rows. Any other outcome leaves that state alone. Returns a login_result.
     */
    int check_login(QString username, QString password_md5);

    /**
     * Asks about a sign-up before it is made. Answer: how many there are of this `company`, `username`,
     * `mobile` and `email`, and whether the `captcha` is right (0: wrong).
     */
    QJsonObject check_reg_exist(QString args);
    /** What do_reg answers as `state`. */
    enum reg_state {
        reg_same_name = 2,
        reg_wrong_captcha = 3,
        reg_repeated = 4,
        reg_done = 5,
        reg_failed = 6
    };
    /** Signs a company and its first user up. Answer: `state`. */
    QJsonObject do_reg(QString args);

    QHash<QString, QVariant> get_page(QString args, int page_num, int page_size) override;
    /** `http_state` 1 is done; then `insert_id` and `datetime` belong to the new account. */
    QJsonObject do_add(struct_user user);
    /** On success rewrites the table's current row; otherwise nothing happens. */
    void do_edit(struct_user user);
    bool do_delete(int id);

    /** Whether another account than that of `id` has this value; an empty `id` excludes none. */
    bool check_username(QString value, QString id);
    bool check_mobile(QString value, QString id);
    bool check_email(QString value, QString id);

    /** Puts a saved account, `reg_time` in seconds, at the top of the table. */
    void add_row(struct_user user);

    /** The search arguments for a user name, a name, a type and a state; an empty text and a 0 ask for any.
     */
    static QString search_args(const struct_user& search);
    /** The list's columns. */
    static const record_columns<struct_user>& columns();

private:
    QTableWidget* table;
    QString args;
};
