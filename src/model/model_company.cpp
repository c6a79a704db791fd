#include "model/model_company.h"

#include <QTableWidget>

#include "model/answers.h"
#include "model/form_body.h"
#include "model/record_page.h"
#include "net/http.h"

namespace {

constexpr int type_column = 10;
constexpr int time_added_column = 11;

} // namespace

const record_columns<struct_company>& model_company::columns() {
    using c = struct_company;
    static const record_columns<c> table = {
        hidden(fitted(text_column(QStringLiteral("id"), QStringLiteral("id"), &c::id))),
        text_column(QStringLiteral("名称"), QStringLiteral("name"), &c::name),
        text_column(QStringLiteral("电话"), QStringLiteral("phone"), &c::phone),
        text_column(QStringLiteral("联系人"), QStringLiteral("linkman"), &c::linkman),
        text_column(QStringLiteral("手机"), QStringLiteral("mobile"), &c::mobile),
        text_column(QStringLiteral("传真"), QStringLiteral("fax"), &c::fax),
        text_column(QStringLiteral("地址"), QStringLiteral("address"), &c::address),
        text_column(QStringLiteral("开户行"), QStringLiteral("bank"), &c::bank),
        text_column(QStringLiteral("银行帐号"), QStringLiteral("account"), &c::account),
        text_column(QStringLiteral("备注"), QStringLiteral("remark"), &c::remark),
        hidden(code_column(QStringLiteral("类型"), QStringLiteral("type"), &c::type)),
        time_column(QStringLiteral("添加时间"), QStringLiteral("datetime"), &c::datetime, &c::datetime_text),
    };
    return table;
}

QString model_company::search_args(const struct_company& search) {
    QString args;
    append(args, "type=", search.type);
    append_if(args, "&name=", search.name);
    append_if(args, "&address=", search.address);
    append_if(args, "&bank=", search.bank);
    append_if(args, "&account=", search.account);
    append_if(args, "&remark=", search.remark);
    return args;
}

model_company::model_company(QTableWidget* table_to_fill) : table(table_to_fill) {
    qRegisterMetaType<struct_company>("struct_company");
}

QHash<QString, QVariant> model_company::get_page(QString search, int page_num, int page_size) {
    return load_page(table, QStringLiteral("wms_company/get_page"), columns(), search, page_num, page_size);
}

QJsonObject model_company::do_add(struct_company company) {
    args.clear();
    append(args, "&type=", company.type);
    append_filled(company);
    return g_http.post_object(QStringLiteral("wms_company/do_add"), args);
}

void model_company::do_edit(struct_company company) {
    args.clear();
    append(args, "&id=", company.id);
    append_filled(company);
    if (!post_count(QStringLiteral("wms_company/do_edit"), args)) return;
    patch_record(table, table->currentRow(), columns(), company, 0, type_column);
    // The add time goes to the top row, whichever row was edited: kept on purpose.
    patch_record(table, 0, columns(), company, time_added_column, time_added_column);
}

bool model_company::do_delete(QString id) {
    args.clear();
    append(args, "id=", id);
    return post_count(QStringLiteral("wms_company/do_delete"), args);
}

void model_company::add_row(struct_company company) {
    insert_record(table, columns(), company);
}

/** The keys that go out only when they have a value, on add and on edit alike. */
void model_company::append_filled(const struct_company& company) {
    append_if(args, "&name=", company.name);
    append_if(args, "&phone=", company.phone);
    append_if(args, "&linkman=", company.linkman);
    append_if(args, "&mobile=", company.mobile);
    append_if(args, "&fax=", company.fax);
    append_if(args, "&address=", company.address);
    append_if(args, "&account=", company.account);
    append_if(args, "&bank=", company.bank);
    append_if(args, "&remark=", company.remark);
}
