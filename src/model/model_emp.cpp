#include "model/model_emp.h"

#include <QComboBox>
#include <QTableWidget>

#include "model/answers.h"
#include "model/form_body.h"
#include "model/record_page.h"
#include "net/http.h"

namespace {

QString yes_word(int flag) {
    return flag == 1 ? QStringLiteral("是") : QString();
}

} // namespace

const record_columns<struct_emp>& model_emp::columns() {
    using e = struct_emp;
    static const record_columns<e> table = {
        hidden(fitted(text_column(QStringLiteral("id"), QStringLiteral("id"), &e::id))),
        text_column(QStringLiteral("姓名"), QStringLiteral("name"), &e::name),
        text_column(QStringLiteral("身份证"), QStringLiteral("idnum"), &e::idnum),
        text_column(QStringLiteral("工号"), QStringLiteral("jobnum"), &e::jobnum),
        text_column(QStringLiteral("手机"), QStringLiteral("mobile"), &e::mobile),
        text_column(QStringLiteral("地址"), QStringLiteral("address"), &e::address),
        text_column(QStringLiteral("备注"), QStringLiteral("remark"), &e::remark),
        hidden(code_column(QStringLiteral("默认数值"), QStringLiteral("isdefault"), &e::isdefault)),
        hidden(code_column(QStringLiteral("离职数值"), QStringLiteral("dimission"), &e::dimission)),
        word_column<yes_word>(QStringLiteral("默认"), QStringLiteral("isdefault"), &e::isdefault),
        word_column<yes_word>(QStringLiteral("离职"), QStringLiteral("dimission"), &e::dimission),
        time_column(QStringLiteral("添加时间"), QStringLiteral("datetime"), &e::datetime, &e::datetime_text),
    };
    return table;
}

QString model_emp::search_args(const struct_emp& search) {
    QString args;
    append_if(args, "name=", search.name);
    append_if(args, "&idnum=", search.idnum);
    append_if(args, "&jobnum=", search.jobnum);
    append_if(args, "&mobile=", search.mobile);
    return args;
}

model_emp::model_emp(QTableWidget* table_to_fill) : table(table_to_fill) {
    qRegisterMetaType<struct_emp>("struct_emp");
}

QHash<QString, QVariant> model_emp::get_page(QString search, int page_num, int page_size) {
    return load_page(table, QStringLiteral("wms_emp/get_page"), columns(), search, page_num, page_size);
}

QJsonObject model_emp::do_add(struct_emp emp) {
    args.clear();
    append(args, "name=", emp.name);
    append_values(emp);
    return g_http.post_object(QStringLiteral("wms_emp/do_add"), args);
}

void model_emp::do_edit(struct_emp emp) {
    args.clear();
    append(args, "id=", emp.id);
    append(args, "&name=", emp.name);
    append_values(emp);
    if (!post_count(QStringLiteral("wms_emp/do_edit"), args)) return;
    patch_record(table, table->currentRow(), columns(), emp);
}

bool model_emp::do_delete(int id) {
    args.clear();
    append(args, "id=", id);
    return post_count(QStringLiteral("wms_emp/do_delete"), args);
}

bool model_emp::check_mobile(QString mobile, QString id) {
    return is_taken(QStringLiteral("wms_emp/check_mobile"), "mobile=", mobile, id);
}

bool model_emp::check_jobnum_exist(QString jobnum, QString id) {
    return is_taken(QStringLiteral("wms_emp/check_jobnum_exist"), "jobnum=", jobnum, id);
}

bool model_emp::check_idnum_exist(QString idnum, QString id) {
    return is_taken(QStringLiteral("wms_emp/check_idnum_exist"), "idnum=", idnum, id);
}

void model_emp::get_option(QComboBox* combo) {
    combo->clear();
    combo->addItem(QStringLiteral("【选择员工】"), 0);
    for (const QJsonValue& value : g_http.get_array(QStringLiteral("wms_emp/get_option"))) {
        const QJsonObject emp = value.toObject();
        combo->addItem(emp.value(QLatin1String("name")).toString() + QStringLiteral("\t[工号:") +
                           emp.value(QLatin1String("jobnum")).toString() + QStringLiteral("]"),
                       emp.value(QLatin1String("id")).toVariant().toInt());
    }
}

void model_emp::add_row(struct_emp emp) {
    insert_record(table, columns(), emp);
}

/** What follows the name on add and on edit alike: always all of it, so that a field can be emptied. */
void model_emp::append_values(const struct_emp& emp) {
    append(args, "&jobnum=", emp.jobnum);
    append(args, "&mobile=", emp.mobile);
    append(args, "&address=", emp.address);
    append(args, "&idnum=", emp.idnum);
    append(args, "&remark=", emp.remark);
    append(args, "&isdefault=", emp.isdefault);
    append(args, "&dimission=", emp.dimission);
}
