#include "model/model_warehouse.h"

#include <QComboBox>
#include <QTableWidget>
#include <cmath>

#include "model/answers.h"
#include "model/form_body.h"
#include "model/record_page.h"
#include "net/http.h"

namespace {

constexpr int option_mode_all = 4;
constexpr int select_default = 1;

QString default_word(int flag) {
    return flag == 1 ? QStringLiteral("默认") : QString();
}

/** The whole units of an amount, sent as a number or as text. */
QString whole_part(const QJsonValue& amount) {
    return QString::number(std::trunc(amount.toVariant().toDouble()), 'f', 0);
}

} // namespace

const record_columns<struct_warehouse>& model_warehouse::columns() {
    using w = struct_warehouse;
    static const record_columns<w> table = {
        hidden(fitted(text_column(QStringLiteral("id"), QStringLiteral("id"), &w::id))),
        text_column(QStringLiteral("名称"), QStringLiteral("name"), &w::name),
        text_column(QStringLiteral("电话"), QStringLiteral("phone"), &w::phone),
        text_column(QStringLiteral("地址"), QStringLiteral("address"), &w::address),
        text_column(QStringLiteral("仓管员"), QStringLiteral("keeper_name"), &w::keeper_name),
        text_column(QStringLiteral("手机"), QStringLiteral("mobile"), &w::mobile),
        word_column<default_word>(QStringLiteral("默认"), QStringLiteral("isdefault"), &w::isdefault),
        text_column(QStringLiteral("备注"), QStringLiteral("remark"), &w::remark),
        hidden(text_column(QStringLiteral("仓管员id"), QStringLiteral("keeper"), &w::keeper)),
        hidden(code_column(QStringLiteral("默认值"), QStringLiteral("isdefault"), &w::isdefault)),
        time_column(QStringLiteral("添加时间"), QStringLiteral("datetime"), &w::datetime, &w::datetime_text),
    };
    return table;
}

QString model_warehouse::search_args(const struct_warehouse& search) {
    QString args;
    append_if(args, "name=", search.name);
    append_if(args, "&phone=", search.phone);
    append_if(args, "&keeper=", search.keeper);
    append_if(args, "&mobile=", search.mobile);
    return args;
}

model_warehouse::model_warehouse(QTableWidget* table_to_fill) : table(table_to_fill) {
    qRegisterMetaType<struct_warehouse>("struct_warehouse");
}

model_warehouse::model_warehouse(int mode) : option_mode(mode) {}

QHash<QString, QVariant> model_warehouse::get_page(QString search, int page_num, int page_size) {
    return load_page(table, QStringLiteral("wms_warehouse/get_page"), columns(), search, page_num, page_size);
}

QJsonObject model_warehouse::do_add(struct_warehouse warehouse) {
    args.clear();
    append_if(args, "name=", warehouse.name);
    append_if(args, "&phone=", warehouse.phone);
    append_if(args, "&keeper=", warehouse.keeper);
    append_if(args, "&address=", warehouse.address);
    append_if(args, "&mobile=", warehouse.mobile);
    append(args, "&isdefault=", warehouse.isdefault);
    append_if(args, "&remark=", warehouse.remark);
    return g_http.post_object(QStringLiteral("wms_warehouse/do_add"), args);
}

/** All keys, always: unlike an addition an edit can empty a field. */
void model_warehouse::do_edit(struct_warehouse warehouse) {
    args.clear();
    append(args, "id=", warehouse.id);
    append(args, "&name=", warehouse.name);
    append(args, "&phone=", warehouse.phone);
    append(args, "&keeper=", warehouse.keeper);
    append(args, "&address=", warehouse.address);
    append(args, "&mobile=", warehouse.mobile);
    append(args, "&isdefault=", warehouse.isdefault);
    append(args, "&remark=", warehouse.remark);
    if (!post_count(QStringLiteral("wms_warehouse/do_edit"), args)) return;
    patch_record(table, table->currentRow(), columns(), warehouse);
}

bool model_warehouse::do_delete(QString id) {
    args.clear();
    append(args, "id=", id);
    return post_count(QStringLiteral("wms_warehouse/do_delete"), args);
}

void model_warehouse::get_option(QComboBox* combo, int default_mode) {
    const QJsonArray list = g_http.get_array(QStringLiteral("wms_warehouse/get_option"));
    start_options(combo);
    QString default_id;
    for (const QJsonValue& value : list) {
        const QJsonObject warehouse = value.toObject();
        const QString id = warehouse.value(QLatin1String("id")).toString();
        combo->addItem(warehouse.value(QLatin1String("name")).toString(), id);
        if (warehouse.value(QLatin1String("isdefault")).toVariant().toInt() == 1) default_id = id;
    }
    // Without a default warehouse this finds the first entry.
    if (default_mode == select_default) combo->setCurrentIndex(combo->findData(default_id));
}

void model_warehouse::get_option_with_stat(QComboBox* combo) {
    const QJsonArray list = g_http.get_array(QStringLiteral("wms_warehouse/get_option_with_stat"));
    start_options(combo);
    for (const QJsonValue& value : list) {
        const QJsonObject warehouse = value.toObject();
        combo->addItem(warehouse.value(QLatin1String("name")).toString() + QStringLiteral("\t[库存:") +
                           whole_part(warehouse.value(QLatin1String("sum_amount"))) + QStringLiteral("]"),
                       warehouse.value(QLatin1String("id")).toString());
    }
}

void model_warehouse::add_row(struct_warehouse warehouse) {
    insert_record(table, columns(), warehouse);
}

/** The entry that stands for no warehouse, alone in the combo box. */
void model_warehouse::start_options(QComboBox* combo) const {
    combo->clear();
    combo->addItem(
        option_mode == option_mode_all ? QStringLiteral("【全部】") : QStringLiteral("【选择仓库】"),
        QString());
}
