#include "model/model_stock_summary.h"

#include <QHeaderView>
#include <QTableWidget>

#include "net/constants.h"
#include "support/client_fixture.h"
#include "support/pages.h"
#include "support/screen.h"

namespace {

const char* const two_rows =
    R"({"list":[{"product_name":"扳手","product":"7","category_name":"工具","category":"3","code":"SP-1",)"
    R"("spec":"9件","avg_price":"12.345","sum_amount":"40","sum_total":"493.8"},)"
    R"({"product_name":"<b>锤","product":8,"category_name":null,"avg_price":12.5,"sum_amount":4}],)"
    R"("total":"42","page_count":3,"page_num":"1"})";

QString list_head() {
    return g_style_list +
           QStringLiteral(
               "<table width=100% border=1 cellpadding=5 cellspacing=-1><tr><td colspan=7 align=center "
               "id=td_title>库存汇总</td></tr><tr id=tr_header><td>货品名称</td><td>类别</td><td>编码</td>"
               "<td>规格</td><td>平均价格</td><td>数量</td><td>总价</td></tr>");
}

} // namespace

class summary_model : public client_test {
protected:
    summary_model() : model(&table) {}
    QHash<QString, QVariant> load(const char* body) {
        server.answer(body);
        return model.get_page(QString(), 1, 20);
    }

    QTableWidget table;
    model_stock_summary model;
};

TEST_F(summary_model, answers_to_the_interfaces_name_and_has_no_signals) {
    EXPECT_NE(model.qt_metacast("model_interface"), nullptr);
    EXPECT_EQ(model.metaObject()->methodCount(), QObject::staticMetaObject.methodCount());
}

TEST_F(summary_model, page_request) {
    model.get_page(QStringLiteral("&code=a&b"), 3, 20);
    EXPECT_EQ(server.last().path, "wms_stock_summary/get_page");
    EXPECT_EQ(server.last().body, "&code=a&b&page_num=3&page_size=20");
    model.get_page(QString(), -1, 10);
    EXPECT_EQ(server.last().body, "&page_num=-1&page_size=10");
}

TEST_F(summary_model, page_information_is_text_whatever_its_form) {
    const auto info = load(two_rows);
    EXPECT_EQ(info.value(QStringLiteral("total")).toString(), QStringLiteral("42"));
    EXPECT_EQ(info.value(QStringLiteral("page_count")).toString(), QStringLiteral("3"));
    EXPECT_EQ(info.value(QStringLiteral("page_num")).toString(), QStringLiteral("1"));
}

TEST_F(summary_model, values_are_shown_as_they_come_and_what_is_no_text_as_nothing) {
    load(two_rows);
    ASSERT_EQ(table.rowCount(), 2);
    expect_cells(&table, 0, {"扳手", "7", "工具", "3", "SP-1", "9件", "12.345", "40", "493.8"});
    expect_cells(&table, 1, {"<b>锤", "", "", "", "", "", "", "", ""});
}

TEST_F(summary_model, rows_are_not_grouped_by_the_client) {
    load(R"({"list":[{"product":"7","sum_amount":"1"},{"product":"7","sum_amount":"2"}]})");
    EXPECT_EQ(column_texts(&table, 7), QStringList({QStringLiteral("1"), QStringLiteral("2")}));
}

TEST_F(summary_model, headers_hidden_columns_and_look) {
    load(two_rows);
    const char* const headers[] = {"货品名称", "货品id",   "类别", "货品类别id", "编码",
                                   "规格",     "平均价格", "数量", "总价"};
    ASSERT_EQ(table.columnCount(), 9);
    for (int i = 0; i < 9; ++i) {
        EXPECT_EQ(table.horizontalHeaderItem(i)->text(), QString::fromUtf8(headers[i]));
        EXPECT_EQ(table.isColumnHidden(i), i == 1 || i == 3) << i;
        EXPECT_EQ(table.horizontalHeader()->sectionResizeMode(i), QHeaderView::Stretch)
            << "column 0 is one to read";
    }
    EXPECT_EQ(table.selectionBehavior(), QAbstractItemView::SelectRows);
    EXPECT_EQ(table.editTriggers(), QAbstractItemView::NoEditTriggers);
    EXPECT_EQ(table.contextMenuPolicy(), Qt::CustomContextMenu);
    EXPECT_TRUE(table.verticalHeader()->isHidden());
}

TEST_F(summary_model, the_print_byte_for_byte) {
    EXPECT_EQ(
        load(two_rows).value(QStringLiteral("html")).toString(),
        list_head() + QStringLiteral(
                          "<tr><td>扳手</td><td>工具</td><td>SP-1</td><td>9件</td><td>12.345</td><td>40</td>"
                          "<td>493.8</td></tr><tr><td><b>锤</td><td></td><td></td><td></td><td></td><td></td>"
                          "<td></td></tr></table>"));
}

TEST_F(summary_model, a_page_without_rows_prints_the_header_rows_alone) {
    for (const char* body : {R"({"list":[]})", "", "[]", "7", "{\"list\":", "<html>"}) {
        load(two_rows);
        const auto info = load(body);
        EXPECT_EQ(info.value(QStringLiteral("html")).toString(), list_head() + QStringLiteral("</table>"))
            << body;
        EXPECT_EQ(table.rowCount(), 0) << body;
        EXPECT_EQ(table.columnCount(), 9);
        EXPECT_EQ(info.value(QStringLiteral("total")).toInt(), 0) << body;
        EXPECT_EQ(info.value(QStringLiteral("page_count")).toInt(), 0) << body;
    }
}

TEST_F(summary_model, search_arguments_begin_with_an_ampersand_and_have_the_code_before_the_specification) {
    EXPECT_EQ(model_stock_summary::search_args(struct_stock()), QString());
    struct_stock s;
    s.date_start = 1;
    s.date_end = 2;
    s.product_name = QStringLiteral("扳 手");
    s.code = QStringLiteral("c&1");
    s.spec = QStringLiteral("9件");
    s.warehouse = QStringLiteral("3");
    s.place = QStringLiteral("A");
    s.remark = QStringLiteral("r");
    EXPECT_EQ(model_stock_summary::search_args(s),
              QStringLiteral("&date_start=1&date_end=2&product_name=扳 手&code=c&1&spec=9件"));
    s = struct_stock();
    s.spec = QStringLiteral("x");
    EXPECT_EQ(model_stock_summary::search_args(s), QStringLiteral("&spec=x"));
}
