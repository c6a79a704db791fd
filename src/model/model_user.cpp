#include "model/model_user.h"

#include "model/answers.h"
#include "model/form_body.h"
#include "model/record_page.h"
#include "net/http.h"
#include "net/md5_hex.h"

namespace {

QString type_word(int type) {
    return type == user_administrator ? QStringLiteral("管理员") : QStringLiteral("普通用户");
}

QString state_word(int state) {
    return state == user_enabled ? QStringLiteral("启用") : QStringLiteral("停用");
}

/** A time that the record keeps as the list shows it; `added` is what it shows for an account just added. */
record_column<struct_user> shown_time_column(QString header, QString key, QString struct_user::*field,
                                             QString (*added)(const struct_user&)) {
    record_column<struct_user> c = text_column(header, key, field);
    c.face.read = cell::time;
    c.added = added;
    return c;
}

} // namespace

const record_columns<struct_user>& model_user::columns() {
    using u = struct_user;
    static const record_columns<u> table = {
        hidden(fitted(text_column(QStringLiteral("id"), QStringLiteral("id"), &u::id))),
        text_column(QStringLiteral("用户名"), QStringLiteral("username"), &u::username),
        text_column(QStringLiteral("姓名"), QStringLiteral("realname"), &u::realname),
        word_column<type_word>(QStringLiteral("用户类型"), QStringLiteral("type"), &u::type),
        text_column(QStringLiteral("手机"), QStringLiteral("mobile"), &u::mobile),
        text_column(QStringLiteral("邮件"), QStringLiteral("email"), &u::email),
        word_column<state_word>(QStringLiteral("状态"), QStringLiteral("state"), &u::state),
        shown_time_column(QStringLiteral("最后登录时间"), QStringLiteral("last_login_time"),
                          &u::last_login_time, [](const u&) { return QString(); }),
        hidden(code_column(QStringLiteral("用户类型id"), QStringLiteral("type"), &u::type)),
        hidden(code_column(QStringLiteral("状态数值"), QStringLiteral("state"), &u::state)),
        shown_time_column(QStringLiteral("注册时间"), QStringLiteral("reg_time"), &u::reg_time,
                          [](const u& user) { return shown_time(user.reg_time.toLongLong()); }),
    };
    return table;
}

QString model_user::search_args(const struct_user& search) {
    QString args;
    append_if(args, "username=", search.username);
    append_if(args, "&realname=", search.realname);
    if (search.type != 0) append(args, "&type=", search.type);
    if (search.state != 0) append(args, "&state=", search.state);
    return args;
}

model_user::model_user(QTableWidget* table_to_fill) : table(table_to_fill) {
    qRegisterMetaType<struct_user>("struct_user");
}

int model_user::check_login(QString username, QString password_md5) {
    args.clear();
    append(args, "username=", username);
    append(args, "&password=", password_md5);
    const QJsonObject answer = g_http.post_object(QStringLiteral("login/check_login"), args);
    if (answer.isEmpty()) return no_contact;

    // The answer has no status: it is accepted when it is about the very name that was sent.
    const QJsonObject user = answer.value(QLatin1String("user")).toObject();
    if (user.value(QLatin1String("username")).toString() != username) return refused;

    g_http.permissions.clear();
    const QJsonArray granted = answer.value(QLatin1String("wms_permission")).toArray();
    for (const QJsonValue& value : granted) {
        const QJsonObject row = value.toObject();
        g_http.permissions[row.value(QLatin1String("id")).toString()] =
            row.value(QLatin1String("action")).toString();
    }
    struct_user& current = g_http.current_user;
    current.username = user.value(QLatin1String("username")).toString();
    current.password = user.value(QLatin1String("password")).toString();
    current.id = user.value(QLatin1String("user_id")).toString();
    current.realname = user.value(QLatin1String("realname")).toString();
    current.type = user.value(QLatin1String("type")).toVariant().toInt();
    return logged_in;
}

QJsonObject model_user::check_reg_exist(QString reg_args) {
    return g_http.post_object(QStringLiteral("user_reg/check_reg_exist"), reg_args);
}

QJsonObject model_user::do_reg(QString reg_args) {
    return g_http.post_object(QStringLiteral("user_reg/do_reg"), reg_args);
}

QHash<QString, QVariant> model_user::get_page(QString search, int page_num, int page_size) {
    return load_page(table, QStringLiteral("user/get_page"), columns(), search, page_num, page_size);
}

/** The password goes out as its hash here and as typed in do_edit: the service takes it so. */
QJsonObject model_user::do_add(struct_user user) {
    args.clear();
    append(args, "username=", user.username);
    append(args, "&realname=", user.realname);
    append(args, "&password=", md5_hex(user.password));
    append(args, "&mobile=", user.mobile);
    append(args, "&email=", user.email);
    append(args, "&type=", user.type);
    append(args, "&state=", user.state);
    return g_http.post_object(QStringLiteral("user/do_add"), args);
}

/** User name and type never change, so they are not sent; without a new password the old one stays. */
void model_user::do_edit(struct_user user) {
    args.clear();
    append(args, "&realname=", user.realname);
    append_if(args, "&password=", user.password);
    append(args, "&mobile=", user.mobile);
    append(args, "&email=", user.email);
    append(args, "&state=", user.state);
    append(args, "&id=", user.id);
    if (!post_count(QStringLiteral("user/do_edit"), args)) return;
    patch_record(table, table->currentRow(), columns(), user);
}

bool model_user::do_delete(int id) {
    args.clear();
    append(args, "id=", id);
    return post_count(QStringLiteral("user/do_delete"), args);
}

bool model_user::check_username(QString value, QString id) {
    return is_taken(QStringLiteral("user/check_username"), "username=", value, id);
}

bool model_user::check_mobile(QString value, QString id) {
    return is_taken(QStringLiteral("user/check_mobile"), "mobile=", value, id);
}

bool model_user::check_email(QString value, QString id) {
    return is_taken(QStringLiteral("user/check_email"), "email=", value, id);
}

void model_user::add_row(struct_user user) {
    insert_record(table, columns(), user);
}
