#include "model/model_stock_taking.h"

#include <QHeaderView>
#include <QJsonArray>
#include <QTableWidget>

#include "net/constants.h"
#include "support/client_fixture.h"
#include "support/pages.h"
#include "support/screen.h"
#include "support/time_zone.h"

namespace {

// The first has no time, the third neither, the fourth has one as text; numbers are no text.
const char* const four_takings =
    R"({"list":[{"id":"1","sn":"P1","operater":"o1","operater_name":"经","writer":"w1","writer_name":"制",)"
    R"("profitloss_amount":"-4","profitloss_total":"-10.005","remark":"<b>","datetime":0},)"
    R"({"id":2,"sn":5,"operater":1,"operater_name":7,"writer":8,"writer_name":9,"profitloss_amount":3,)"
    R"("profitloss_total":12.5,"remark":6,"datetime":1586696219},)"
    R"({"id":"3","sn":"P3"},{"id":"4","sn":"P4","datetime":"1586696280"}],)"
    R"("total":42,"page_count":"3","page_num":2})";

const char* const head =
    "<table width=100% border=1 cellpadding=5 cellspacing=-1><tr><td colspan=7 align=center id=td_title>"
    "盘点记录</td></tr><tr id=tr_header><td>单号</td><td>经办人</td><td>制单人</td><td>盈亏数量</td>"
    "<td>盈亏金额</td><td>备注</td><td>时间</td></tr>";

QString u(const char* text) {
    return QString::fromUtf8(text);
}

} // namespace

class taking_model : public client_test {
protected:
    QHash<QString, QVariant> load(const char* answer = four_takings) {
        server.answer(answer);
        return model.get_page(QStringLiteral("&date_start=1"), 1, 20);
    }

    QTableWidget table;
    model_stock_taking model{&table};
    const scoped_time_zone zone{"UTC"};
};

TEST_F(taking_model, its_record_travels_in_signals_and_starts_empty) {
    EXPECT_NE(QMetaType::type("struct_stock_taking"), 0);
    const struct_stock_taking none;
    EXPECT_EQ(none.date_start, 0);
    EXPECT_EQ(none.date_end, 0);
    EXPECT_EQ(none.profitloss_amount, 0);
    EXPECT_EQ(none.profitloss_total, 0);
    EXPECT_TRUE(none.id.isEmpty() && none.details.isEmpty());
}

TEST_F(taking_model, asks_for_a_page_after_the_arguments) {
    const auto info = load();
    EXPECT_EQ(server.last().path, "wms_stock_taking/get_page");
    EXPECT_EQ(server.last().body, "&date_start=1&page_num=1&page_size=20");
    EXPECT_EQ(info.value(u("total")).toString(), u("42"));
    EXPECT_EQ(info.value(u("page_count")).toString(), u("3"));
    EXPECT_EQ(info.value(u("page_num")).toString(), u("2"));
}

TEST_F(taking_model, headers_and_hidden_columns) {
    load();
    const QStringList headers{u("id"),     u("单号"),     u("经办人id"), u("经办人"), u("制单人id"),
                              u("制单人"), u("盈亏数量"), u("盈亏金额"), u("备注"),   u("时间")};
    ASSERT_EQ(table.columnCount(), headers.size());
    for (int i = 0; i < headers.size(); ++i) {
        EXPECT_EQ(table.horizontalHeaderItem(i)->text(), headers[i]);
        EXPECT_EQ(table.isColumnHidden(i), i == 0 || i == 2 || i == 4) << i;
        EXPECT_EQ(table.horizontalHeader()->sectionResizeMode(i),
                  i == 0 ? QHeaderView::ResizeToContents : QHeaderView::Stretch)
            << i;
    }
    EXPECT_EQ(table.selectionBehavior(), QAbstractItemView::SelectRows);
    EXPECT_EQ(table.editTriggers(), QAbstractItemView::NoEditTriggers);
    EXPECT_EQ(table.contextMenuPolicy(), Qt::CustomContextMenu);
    EXPECT_TRUE(table.verticalHeader()->isHidden());
}

TEST_F(taking_model, cells_show_texts_as_they_came_and_a_time_carried_on) {
    load();
    ASSERT_EQ(table.rowCount(), 4);
    EXPECT_EQ(row_texts(&table, 0), (QStringList{u("1"), u("P1"), u("o1"), u("经"), u("w1"), u("制"), u("-4"),
                                                 u("-10.005"), u("<b>"), QString()}));
    for (int column = 0; column < 9; ++column)
        EXPECT_TRUE(cell_text(&table, 1, column).isEmpty()) << column << ": a number is no text";
    EXPECT_EQ(column_texts(&table, 9),
              (QStringList{QString(), u("2020-04-12 12:56"), u("2020-04-12 12:56"), u("2020-04-12 12:58")}));
    load();
    EXPECT_EQ(cell_text(&table, 0, 9), QString()) << "nothing is carried over from the former page";
}

TEST_F(taking_model, the_print_byte_for_byte) {
    EXPECT_EQ(
        load().value(u("html")).toString(),
        g_style_list + u(head) +
            u("<tr><td>P1</td><td>经</td><td>制</td><td>-4</td><td>-10.005</td><td><b></td><td></td></tr>"
              "<tr><td></td><td></td><td></td><td></td><td></td><td></td><td>2020-04-12 12:56</td></tr>"
              "<tr><td>P3</td><td></td><td></td><td></td><td></td><td></td><td>2020-04-12 "
              "12:56</td></tr><tr><td>P4</td><td></td><td></td><td></td><td></td><td></td>"
              "<td>2020-04-12 12:58</td></tr></table>"));
}

TEST_F(taking_model, a_failed_page_clears_the_table_and_prints_the_headers_alone) {
    for (const char* body : {"", "[]", "7", "{\"total\":", "<html>", "{\"list\":7}"}) {
        load();
        const auto info = load(body);
        EXPECT_EQ(table.rowCount(), 0) << body;
        EXPECT_EQ(info.value(u("page_count")).toInt(), 0);
        EXPECT_EQ(info.value(u("html")).toString(), g_style_list + u(head) + u("</table>")) << body;
    }
}

TEST_F(taking_model, an_addition_sends_the_writer_always_and_the_rest_only_if_there_is_something) {
    struct_stock_taking taking;
    taking.id = u("no");
    taking.sn = u("no");
    taking.operater = u("3");
    taking.writer = u("9");
    taking.remark = u("备&注");
    taking.profitloss_amount = 5;
    taking.profitloss_total = 5;
    server.answer(R"({"http_state":1,"insert_id":"77"})");
    const QJsonObject answer = model.do_add(taking);
    EXPECT_EQ(server.last().path, "wms_stock_taking/do_add");
    EXPECT_EQ(server.last().body, QByteArray("&operater=3&writer=9&remark=备&注"));
    EXPECT_EQ(answer.value(QLatin1String("insert_id")).toString(), u("77"));
    model.do_add(struct_stock_taking());
    EXPECT_EQ(server.last().body, "&writer=");
}

TEST_F(taking_model, an_addition_without_an_object_for_an_answer_is_empty) {
    for (const char* answer : {"", "7", "[]", "garbage", "\"1\""}) {
        server.answer(answer);
        EXPECT_TRUE(model.do_add(struct_stock_taking()).isEmpty()) << answer;
    }
}

struct count_answer {
    const char* body;
    bool done;
};
const count_answer count_answers[] = {{"1", true},   {"2", true},   {"7", true},  {"0", false},
                                      {"", false},   {"-1", false}, {"x", false}, {"1x", false},
                                      {"[]", false}, {"1.5", false}};

TEST_F(taking_model, delete_passes_the_id_as_it_is_and_reads_the_count_form) {
    for (const auto& a : count_answers) {
        server.answer(a.body);
        EXPECT_EQ(model.do_delete(u("007x")), a.done) << a.body;
        const auto asked = server.bodies("wms_stock_taking/do_delete");
        ASSERT_FALSE(asked.isEmpty());
        EXPECT_EQ(asked.last(), "id=007x");
    }
}

TEST_F(taking_model, the_sums_go_out_as_a_whole_number_and_with_two_decimals) {
    struct_stock_taking sums;
    sums.id = u("77");
    sums.profitloss_amount = -4;
    sums.profitloss_total = -1234567.891;
    server.answer("1");
    EXPECT_TRUE(model.update_profitloss(sums));
    EXPECT_EQ(server.last().path, "wms_stock_taking/update_profitloss");
    EXPECT_EQ(server.last().body, "id=77&profitloss_amount=-4&profitloss_total=-1234567.89");
    for (const auto& a : count_answers) {
        server.answer(a.body);
        EXPECT_EQ(model.update_profitloss(struct_stock_taking()), a.done) << a.body;
        EXPECT_EQ(server.bodies("wms_stock_taking/update_profitloss").last(),
                  "id=&profitloss_amount=0&profitloss_total=0.00");
    }
}

TEST_F(taking_model, detail_lines_with_quantities_and_money_in_either_form) {
    server.answer(
        R"([{"id":"7","stock_id":"k","main_id":"m","product":"p","product_name":"钉","code":"o",)"
        R"("price":"2.345","sys_amount":"10","real_amount":"8","remark":"r","changed":"1","spec":"s",)"
        R"("profitloss_amount":"-2","profitloss_total":"-5.00","warehouse":"w","warehouse_name":"仓",)"
        R"("place":"A-1","locked_id":"L1"},)"
        R"({"id":7,"stock_id":8,"price":1.5,"sys_amount":3,"real_amount":4,"profitloss_amount":1,)"
        R"("profitloss_total":1.25},{}])");
    const auto lines = model.get_detail(u("9"));
    EXPECT_EQ(server.last().path, "wms_stock_taking/get_detail");
    EXPECT_EQ(server.last().body, "id=9");
    ASSERT_EQ(lines.size(), 3);
    const auto& line = lines[0];
    const QStringList texts{line.id,           line.stock_id,       line.main_id, line.product,
                            line.product_name, line.code,           line.remark,  line.spec,
                            line.warehouse,    line.warehouse_name, line.place};
    EXPECT_EQ(texts, (QStringList{u("7"), u("k"), u("m"), u("p"), u("钉"), u("o"), u("r"), u("s"), u("w"),
                                  u("仓"), u("A-1")}));
    EXPECT_DOUBLE_EQ(line.price, 2.345);
    EXPECT_EQ(line.sys_amount, 10);
    EXPECT_EQ(line.real_amount, 8);
    EXPECT_EQ(line.profitloss_amount, -2);
    EXPECT_DOUBLE_EQ(line.profitloss_total, -5);
    EXPECT_EQ(line.changed, 0) << "the service does not say it";
    EXPECT_TRUE(line.locked_id.isEmpty()) << "nor the lock";
    EXPECT_TRUE(lines[1].id.isEmpty() && lines[1].stock_id.isEmpty()) << "text alone";
    EXPECT_DOUBLE_EQ(lines[1].price, 1.5);
    EXPECT_EQ(lines[1].sys_amount, 3);
    EXPECT_EQ(lines[1].real_amount, 4);
    EXPECT_EQ(lines[1].profitloss_amount, 1);
    EXPECT_DOUBLE_EQ(lines[1].profitloss_total, 1.25);
    EXPECT_EQ(lines[2].sys_amount, 0);
}

TEST_F(taking_model, a_failed_answer_has_no_lines) {
    for (const char* body : {"", "{}", "7", "0", "[{\"id\"", "<html>"}) {
        server.answer(body);
        EXPECT_TRUE(model.get_detail(u("1")).isEmpty()) << body;
    }
}

TEST_F(taking_model, an_audit_sends_nothing) {
    model.do_audit(u("77"));
    EXPECT_TRUE(server.requests().isEmpty());
}

TEST_F(taking_model, search_arguments_begin_with_an_ampersand_and_people_come_before_the_number) {
    struct_stock_taking search;
    EXPECT_EQ(model_stock_taking::search_args(search), QString());
    search.remark = u("备&注");
    EXPECT_EQ(model_stock_taking::search_args(search), u("&remark=备&注"));
    search.date_start = 7;
    search.date_end = 5;
    search.sn = u("s");
    search.operater = u("o");
    search.writer = u("w");
    EXPECT_EQ(model_stock_taking::search_args(search),
              u("&date_start=7&date_end=5&operater=o&writer=w&sn=s&remark=备&注"));
}
