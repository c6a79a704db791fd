#include "model/model_stock_allot.h"

#include <QHeaderView>
#include <QTableWidget>

#include "net/constants.h"
#include "support/client_fixture.h"
#include "support/pages.h"
#include "support/screen.h"
#include "support/time_zone.h"

namespace {

struct_stock_allot full_header() {
    struct_stock_allot a;
    a.date_start = 1;
    a.date_end = 2;
    a.id = QStringLiteral("77");
    a.sn = QStringLiteral("DB&1");
    a.operater = QStringLiteral("3");
    a.operater_name = QStringLiteral("李");
    a.writer = QStringLiteral("9");
    a.writer_name = QStringLiteral("王");
    a.warehouse_out = QStringLiteral("5");
    a.warehouse_out_name = QStringLiteral("一号");
    a.warehouse_in = QStringLiteral("6");
    a.warehouse_in_name = QStringLiteral("二号");
    a.remark = QStringLiteral("急 用");
    return a;
}

const char* const two_rows =
    R"({"list":[{"id":"1","sn":"DB1","operater":"3","operater_name":"李","writer":"9","writer_name":"王",)"
    R"("warehouse_out":"5","warehouse_out_name":"一号","warehouse_in":"6","warehouse_in_name":"二号",)"
    R"("remark":"r<b>","datetime":1586696219},)"
    R"({"id":2,"sn":"DB2","operater":3,"warehouse_out":5,"remark":null,"datetime":"0"}],)"
    R"("total":"42","page_count":3,"page_num":"1"})";

QString list_head() {
    return g_style_list +
           QStringLiteral(
               "<table width=100% border=1 cellpadding=5 cellspacing=-1><tr><td colspan=7 align=center "
               "id=td_title>库存调拨</td></tr><tr id=tr_header><td>单号</td><td>调出仓</td><td>调入仓</td>"
               "<td>经办人</td><td>制单人</td><td>备注</td><td>时间</td></tr>");
}

} // namespace

class allot_model : public client_test {
protected:
    allot_model() : model(&table) {}
    QHash<QString, QVariant> load(const char* body = two_rows) {
        server.answer(body);
        return model.get_page(QString(), 1, 20);
    }

    QTableWidget table;
    model_stock_allot model;
    const scoped_time_zone zone{"UTC"};
};

TEST_F(allot_model, answers_to_the_interfaces_name) {
    EXPECT_NE(model.qt_metacast("model_interface"), nullptr);
    EXPECT_NE(QMetaType::type("struct_stock_allot"), 0);
    const struct_stock_allot empty;
    EXPECT_EQ(empty.date_start, 0);
    EXPECT_EQ(empty.date_end, 0);
    EXPECT_TRUE(empty.id.isEmpty() && empty.details.isEmpty());
}

TEST_F(allot_model, page_request) {
    model.get_page(QStringLiteral("date_start=1"), 3, 20);
    EXPECT_EQ(server.last().path, "wms_stock_allot/get_page");
    EXPECT_EQ(server.last().body, "date_start=1&page_num=3&page_size=20");
    model.get_page(QString(), -1, 20);
    EXPECT_EQ(server.last().body, "&page_num=-1&page_size=20");
}

TEST_F(allot_model, a_name_stands_before_its_id) {
    load();
    ASSERT_EQ(table.rowCount(), 2);
    expect_cells(&table, 0,
                 {"1", "DB1", "一号", "5", "二号", "6", "李", "3", "王", "9", "r<b>", "2020-04-12 12:56"});
    expect_cells(&table, 1, {"", "DB2", "", "", "", "", "", "", "", "", "", "2020-04-12 12:56"});
}

TEST_F(allot_model, a_row_without_a_time_keeps_that_of_the_row_above) {
    const auto info =
        load(R"({"list":[{"id":"1","datetime":0},{"id":"2","datetime":"1586696219"},{"id":"3"},)"
             R"({"id":"4","datetime":0},{"id":"5","datetime":1586782619}]})");
    const QString day = QStringLiteral("2020-04-12 12:56");
    EXPECT_EQ(column_texts(&table, 11),
              QStringList({QString(), day, day, day, QStringLiteral("2020-04-13 12:56")}));
    EXPECT_EQ(info.value(QStringLiteral("html")).toString().count(day), 3) << "on paper too";
    load(R"({"list":[{"id":"6","datetime":0}]})");
    EXPECT_EQ(column_texts(&table, 11), QStringList{QString()}) << "not over pages";
}

TEST_F(allot_model, times_are_those_of_the_users_zone) {
    const scoped_time_zone shanghai("Asia/Shanghai");
    load();
    EXPECT_EQ(cell_text(&table, 0, 11), QStringLiteral("2020-04-12 20:56"));
}

TEST_F(allot_model, headers_hidden_columns_and_look) {
    load();
    const char* const headers[] = {"id",     "单号",     "调出仓", "调出仓id", "调入仓", "调入仓id",
                                   "经办人", "经办人id", "制单人", "制单人id", "备注",   "时间"};
    ASSERT_EQ(table.columnCount(), 12);
    const QList<int> hidden{0, 3, 5, 7, 9};
    for (int i = 0; i < 12; ++i) {
        EXPECT_EQ(table.horizontalHeaderItem(i)->text(), QString::fromUtf8(headers[i]));
        EXPECT_EQ(table.isColumnHidden(i), hidden.contains(i)) << i;
        EXPECT_EQ(table.horizontalHeader()->sectionResizeMode(i),
                  i == 0 ? QHeaderView::ResizeToContents : QHeaderView::Stretch);
        EXPECT_NE(table.item(1, i), nullptr) << "every cell is a plain item";
        EXPECT_EQ(table.cellWidget(1, i), nullptr);
    }
    EXPECT_EQ(table.selectionBehavior(), QAbstractItemView::SelectRows);
    EXPECT_EQ(table.editTriggers(), QAbstractItemView::NoEditTriggers);
    EXPECT_EQ(table.contextMenuPolicy(), Qt::CustomContextMenu);
    EXPECT_TRUE(table.verticalHeader()->isHidden());
}

TEST_F(allot_model, the_print_byte_for_byte) {
    EXPECT_EQ(
        load().value(QStringLiteral("html")).toString(),
        list_head() + QStringLiteral(
                          "<tr><td>DB1</td><td>一号</td><td>二号</td><td>李</td><td>王</td><td>r<b></td>"
                          "<td>2020-04-12 12:56</td></tr><tr><td>DB2</td><td></td><td></td><td></td><td></td>"
                          "<td></td><td>2020-04-12 12:56</td></tr></table>"));
}

TEST_F(allot_model, a_failed_page_empties_the_table_and_counts_zero) {
    for (const char* body : {R"({"list":[]})", "", "[]", "7", "{\"list\":"}) {
        load();
        const auto info = load(body);
        EXPECT_EQ(table.rowCount(), 0) << body;
        EXPECT_EQ(info.value(QStringLiteral("html")).toString(), list_head() + QStringLiteral("</table>"));
        EXPECT_EQ(info.value(QStringLiteral("total")).toInt(), 0) << body;
        EXPECT_EQ(info.value(QStringLiteral("page_count")).toInt(), 0) << body;
    }
}

TEST_F(allot_model, a_row_reads_back_as_its_record) {
    load();
    const auto a = read_record(&table, 0, model_stock_allot::columns());
    EXPECT_EQ(a.id, QStringLiteral("1"));
    EXPECT_EQ(a.sn, QStringLiteral("DB1"));
    EXPECT_EQ(a.warehouse_out, QStringLiteral("5"));
    EXPECT_EQ(a.warehouse_out_name, QStringLiteral("一号"));
    EXPECT_EQ(a.warehouse_in, QStringLiteral("6"));
    EXPECT_EQ(a.warehouse_in_name, QStringLiteral("二号"));
    EXPECT_EQ(a.operater, QStringLiteral("3"));
    EXPECT_EQ(a.operater_name, QStringLiteral("李"));
    EXPECT_EQ(a.writer, QStringLiteral("9"));
    EXPECT_EQ(a.writer_name, QStringLiteral("王"));
    EXPECT_EQ(a.remark, QStringLiteral("r<b>"));
    EXPECT_EQ(a.date_start + a.date_end, 0);
}

TEST_F(allot_model, a_search_begins_without_an_ampersand_and_has_the_destination_before_the_source) {
    EXPECT_EQ(model_stock_allot::search_args(struct_stock_allot()), QString());
    EXPECT_EQ(model_stock_allot::search_args(full_header()),
              QStringLiteral("date_start=1&date_end=2&operater=3&writer=9&sn=DB&1&warehouse_in=6"
                             "&warehouse_out=5&remark=急 用"));
    struct_stock_allot from;
    from.warehouse_out = QStringLiteral("5");
    EXPECT_EQ(model_stock_allot::search_args(from), QStringLiteral("&warehouse_out=5"));
}

TEST_F(allot_model, an_addition_has_the_source_before_the_destination_and_no_empty_value) {
    server.answer(R"({"http_state":1,"insert_id":"77"})");
    const auto answer = model.do_add(full_header());
    EXPECT_EQ(server.last().path, "wms_stock_allot/do_add");
    EXPECT_EQ(server.last().body,
              QByteArray("&warehouse_out=5&warehouse_in=6&operater=3&writer=9&remark=急 用"));
    EXPECT_EQ(answer.value(QLatin1String("insert_id")).toString(), QStringLiteral("77"));
    struct_stock_allot partly;
    partly.warehouse_in = QStringLiteral("6");
    partly.writer = QStringLiteral("9");
    model.do_add(partly);
    EXPECT_EQ(server.last().body, "&warehouse_in=6&writer=9");
    model.do_add(struct_stock_allot());
    EXPECT_EQ(server.last().body, "");
}

TEST_F(allot_model, an_answer_that_is_no_object_is_empty) {
    for (const char* answer : {"", "7", "[]", "garbage", "\"1\""}) {
        server.answer(answer);
        EXPECT_TRUE(model.do_add(full_header()).isEmpty()) << answer;
    }
}

TEST_F(allot_model, delete_reads_the_count_form) {
    const struct {
        const char* body;
        bool done;
    } rows[] = {{"1", true}, {"2", true},  {"0", false},  {"-1", false},
                {"", false}, {"x", false}, {"1x", false}, {R"({"http_state":1})", false}};
    for (const auto& r : rows) {
        server.answer(r.body);
        EXPECT_EQ(model.do_delete(QStringLiteral("a7&b")), r.done) << r.body;
        EXPECT_EQ(server.last().path, "wms_stock_allot/do_delete");
        EXPECT_EQ(server.last().body, "id=a7&b");
    }
}

TEST_F(allot_model, lines_come_with_price_and_amount_in_either_form_and_without_a_total) {
    server.answer(
        R"([{"id":"1","main_id":"77","product":"p","product_name":"钉","code":"c","spec":"s","place":"A1",)"
        R"("price":"2.5","amount":"3","total":"99","remark":"r","stock_id":"8","locked_id":"L","changed":1},)"
        R"({"id":2,"product_name":"锤","price":1.25,"amount":4,"code":5}])");
    const auto lines = model_stock_allot().get_detail(QStringLiteral("77"));
    EXPECT_EQ(server.last().path, "wms_stock_allot/get_detail");
    EXPECT_EQ(server.last().body, "id=77");
    ASSERT_EQ(lines.size(), 2);
    const auto& first = lines[0];
    EXPECT_EQ(first.id, QStringLiteral("1"));
    EXPECT_EQ(first.main_id, QStringLiteral("77"));
    EXPECT_EQ(first.product, QStringLiteral("p"));
    EXPECT_EQ(first.product_name, QStringLiteral("钉"));
    EXPECT_EQ(first.code, QStringLiteral("c"));
    EXPECT_EQ(first.spec, QStringLiteral("s"));
    EXPECT_EQ(first.place, QStringLiteral("A1"));
    EXPECT_DOUBLE_EQ(first.price, 2.5);
    EXPECT_EQ(first.amount, 3);
    EXPECT_DOUBLE_EQ(first.total, 0);
    EXPECT_EQ(first.remark, QStringLiteral("r"));
    EXPECT_EQ(first.stock_id, QStringLiteral("8"));
    EXPECT_TRUE(first.locked_id.isEmpty());
    EXPECT_EQ(first.changed, 0);
    EXPECT_EQ(lines[1].id, QString()) << "a number is no text";
    EXPECT_EQ(lines[1].code, QString());
    EXPECT_DOUBLE_EQ(lines[1].price, 1.25);
    EXPECT_EQ(lines[1].amount, 4);
}

TEST_F(allot_model, an_answer_that_is_no_list_has_no_lines) {
    for (const char* answer : {"", "7", "{}", "garbage", "[]"}) {
        server.answer(answer);
        EXPECT_TRUE(model.get_detail(QStringLiteral("1")).isEmpty()) << answer;
    }
}
