#include "model/model_instore.h"

#include <QHeaderView>
#include <QJsonArray>
#include <QTableWidget>

#include "net/constants.h"
#include "support/client_fixture.h"
#include "support/kinds.h"
#include "support/pages.h"
#include "support/screen.h"
#include "support/time_zone.h"

namespace {

// The second has no time, the third has one as text, the fourth none again; numbers are no text.
const char* const four_documents =
    R"({"list":[{"id":"1","sn":"R1","company":"c1","company_name":"甲","dept":"d1","dept_name":"一",)"
    R"("operater":"o1","operater_name":"经","writer":"w1","writer_name":"制","total":"3.456","remark":"<b>",)"
    R"("datetime":1586696219},)"
    R"({"id":2,"sn":5,"company":6,"company_name":7,"dept":8,"dept_name":9,"operater":1,"total":12.5,)"
    R"("datetime":0},)"
    R"({"id":"3","sn":"R3","datetime":"1586696280"},{"id":"4","sn":"R4"}],)"
    R"("total":"42","page_count":3,"page_num":"2"})";

const char* const head =
    "<table width=100% border=1 cellpadding=5 cellspacing=-1><tr><td colspan=7 align=center id=td_title>"
    "入库记录</td></tr><tr id=tr_header><td>单号</td>";
const char* const further_headers =
    "<td>经办人</td><td>制单人</td><td>总价</td><td>备注</td><td>时间</td></tr>";

QString u(const char* text) {
    return QString::fromUtf8(text);
}

struct_instore full_instore() {
    struct_instore d{};
    d.sn = u("never sent");
    d.company = u("c");
    d.operater = u("o");
    d.writer = u("w");
    d.total = 12.345;
    d.remark = u("备&注");
    d.dept = u("d");
    d.type = 5;
    return d;
}

} // namespace

class instore_model : public client_test {
protected:
    QHash<QString, QVariant> load(int type, const char* answer = four_documents) {
        server.answer(answer);
        return model.get_page(QStringLiteral("instore_type=%1").arg(type), 1, 20);
    }
    QByteArray added(const struct_instore& document) {
        model.do_add(document);
        return server.last().body;
    }

    QTableWidget table;
    model_instore model{&table, 3};
    const scoped_time_zone zone{"UTC"};
};

TEST_F(instore_model, answers_to_the_interfaces_name) {
    EXPECT_NE(model.qt_metacast("model_interface"), nullptr);
    EXPECT_NE(QMetaType::type("struct_instore"), 0);
}

TEST_F(instore_model, a_record_is_empty_but_for_its_kind) {
    const struct_instore d{};
    EXPECT_TRUE(d.id.isEmpty() && d.sn.isEmpty() && d.remark.isEmpty() && d.details.isEmpty());
    EXPECT_EQ(d.date_start, 0);
    EXPECT_EQ(d.date_end, 0);
    EXPECT_EQ(d.total, 0);
}

TEST_F(instore_model, page_request) {
    model.get_page(QStringLiteral("date_start=1&remark=甲 乙&instore_type=2"), 3, 20);
    EXPECT_EQ(server.last().path, "wms_instore/get_page");
    EXPECT_EQ(server.last().body,
              QByteArray("date_start=1&remark=甲 乙&instore_type=2&page_num=3&page_size=20"));
    model.get_page(QString(), -1, 10);
    EXPECT_EQ(server.last().body, "&page_num=-1&page_size=10");
}

TEST_F(instore_model, page_information_is_text_whatever_its_form) {
    const auto info = load(1);
    EXPECT_EQ(info.value(QStringLiteral("total")).toString(), u("42"));
    EXPECT_EQ(info.value(QStringLiteral("page_count")).toString(), u("3"));
    EXPECT_EQ(info.value(QStringLiteral("page_num")).toString(), u("2"));
    EXPECT_EQ(info.size(), 4) << "and html";
}

TEST_F(instore_model, a_model_without_a_kind_takes_that_of_the_arguments) {
    model_instore made_for_the_bar(&table);
    made_for_the_bar.do_add(struct_instore{});
    EXPECT_EQ(server.last().body, "type=0");
    made_for_the_bar.get_page(QStringLiteral("date_start=1&instore_type=6"), 1, 20);
    made_for_the_bar.do_add(struct_instore{});
    EXPECT_EQ(server.last().body, "type=6");
    load(2);
    EXPECT_EQ(added(struct_instore{}), "type=2") << "the arguments win over the kind that it was made for";
}

TEST_F(instore_model, can_be_made_with_a_table_a_kind_both_or_neither) {
    const char* const bodies[] = {"type=0", "type=4", "type=5", "type=0"};
    model_instore with_table(&table);
    model_instore with_kind(4);
    model_instore with_both(&table, 5);
    model_instore with_neither;
    int i = 0;
    for (model_instore* made : {&with_table, &with_kind, &with_both, &with_neither}) {
        made->do_add(struct_instore{});
        EXPECT_EQ(server.last().body, bodies[i++]);
    }
}

class instore_page : public instore_model, public testing::WithParamInterface<known_kind> {};

INSTANTIATE_TEST_SUITE_P(kinds, instore_page, testing::ValuesIn(inbound_rows),
                         [](const auto& p) { return p.param.word(); });

TEST_P(instore_page, headers_and_look) {
    const known_kind& kind = GetParam();
    load(kind.type);
    const QString header = u(kind.header);
    const QStringList headers{u("id"),     u("单号"),   header + u("id"), u("经办人"), u("制单人"), header,
                              u("经办人"), u("制单人"), u("总价"),        u("备注"),   u("时间")};
    ASSERT_EQ(table.columnCount(), 11);
    for (int i = 0; i < 11; ++i) {
        const bool of_partner = i == 2 || i == 5;
        const QTableWidgetItem* item = table.horizontalHeaderItem(i);
        ASSERT_EQ(item == nullptr, of_partner && kind.has("")) << i;
        if (item != nullptr) {
            EXPECT_EQ(item->text(), headers[i]);
        }
        EXPECT_EQ(table.isColumnHidden(i), i == 0 || (i >= 2 && i <= 4) || (i == 5 && kind.has(""))) << i;
        EXPECT_EQ(table.horizontalHeader()->sectionResizeMode(i),
                  i < 2 ? QHeaderView::ResizeToContents : QHeaderView::Stretch);
    }
    EXPECT_EQ(table.selectionBehavior(), QAbstractItemView::SelectRows);
    EXPECT_EQ(table.editTriggers(), QAbstractItemView::NoEditTriggers);
    EXPECT_EQ(table.contextMenuPolicy(), Qt::CustomContextMenu);
    EXPECT_TRUE(table.verticalHeader()->isHidden());
}

TEST_P(instore_page, cells) {
    load(GetParam().type);
    const bool dept = GetParam().has("dept");
    ASSERT_EQ(table.rowCount(), 4);
    expect_cells(&table, 0,
                 {"1", "R1", dept ? "d1" : "c1", "o1", "w1", dept ? "一" : "甲", "经", "制", "3.456", "<b>",
                  "2020-04-12 12:56"});
    expect_cells(&table, 1, {"", "", "", "", "", "", "", "", "", "", "2020-04-12 12:56"});
    expect_cells(&table, 2, {"3", "R3", "", "", "", "", "", "", "", "", "2020-04-12 12:58"});
    expect_cells(&table, 3, {"4", "R4", "", "", "", "", "", "", "", "", "2020-04-12 12:58"});
}

TEST_P(instore_page, prints_a_cell_for_the_partner_even_where_there_is_no_header) {
    const known_kind& kind = GetParam();
    const QString partner = kind.has("") ? QString() : u("<td>") + u(kind.header) + u("</td>");
    const QString name = kind.has("dept") ? u("一") : u("甲");
    EXPECT_EQ(load(kind.type).value(QStringLiteral("html")).toString(),
              g_style_list + u(head) + partner + u(further_headers) + u("<tr><td>R1</td><td>") + name +
                  u("</td><td>经</td><td>制</td><td>3.456</td><td><b></td><td>2020-04-12 12:56</td></tr>"
                    "<tr><td></td><td></td><td></td><td></td><td></td><td></td>"
                    "<td>2020-04-12 12:56</td></tr>"
                    "<tr><td>R3</td><td></td><td></td><td></td><td></td><td></td>"
                    "<td>2020-04-12 12:58</td></tr>"
                    "<tr><td>R4</td><td></td><td></td><td></td><td></td><td></td>"
                    "<td>2020-04-12 12:58</td></tr></table>"));
}

TEST_F(instore_model, kind_7_prints_seven_cells_under_six_headers) {
    const QString html = load(7).value(QStringLiteral("html")).toString();
    const QStringList rows = html.split(u("<tr"));
    EXPECT_EQ(rows[2].count(u("<td>")), 6) << "the headers";
    EXPECT_EQ(rows[3].count(u("<td>")), 7);
    EXPECT_TRUE(rows[1].contains(u("colspan=7")));
}

TEST_F(instore_model, a_first_row_without_a_time_has_none_and_a_new_page_carries_nothing_over) {
    load(1);
    load(1, R"({"list":[{"id":"1","datetime":0},{"id":"2","datetime":1586696219}]})");
    EXPECT_EQ(column_texts(&table, 10), (QStringList{QString(), u("2020-04-12 12:56")}));
}

TEST_F(instore_model, times_are_local) {
    const scoped_time_zone elsewhere{"Asia/Shanghai"};
    load(1);
    EXPECT_EQ(cell_text(&table, 0, 10), u("2020-04-12 20:56"));
}

TEST_F(instore_model, a_failed_page_clears_the_table_and_prints_the_headers_alone) {
    for (const char* body : {"", "[]", "7", "{\"total\":", "<html>", "{\"list\":7}"}) {
        load(1);
        const auto info = load(1, body);
        EXPECT_EQ(table.rowCount(), 0) << body;
        EXPECT_EQ(table.columnCount(), 11);
        EXPECT_EQ(info.value(QStringLiteral("page_count")).toInt(), 0);
        EXPECT_EQ(info.value(QStringLiteral("html")).toString(),
                  g_style_list + u(head) + u("<td>供应商</td>") + u(further_headers) + u("</table>"));
    }
}

TEST_F(instore_model, arguments_without_a_kind_make_a_list_without_partner) {
    server.answer(four_documents);
    model.get_page(QStringLiteral("date_start=1"), 1, 20);
    EXPECT_EQ(table.horizontalHeaderItem(5), nullptr);
    EXPECT_TRUE(table.isColumnHidden(5));
}

TEST_F(instore_model, detail_lines) {
    server.answer(R"([{"id":"7","main_id":"m","product":"p","product_name":"钉","category_name":"五金",)"
                  R"("category":"c","price":2.345,"amount":"12","total":"28.14","warehouse_name":"仓",)"
                  R"("warehouse":"w","remark":"r","datetime":"1586696219","changed":"1","spec":"s",)"
                  R"("place":"A-1","code":"o"},)"
                  R"({"id":7,"price":"1.5","amount":12,"total":28.14,"datetime":1586696219}])");
    const auto lines = model.get_detail(u("0 9&x"));
    EXPECT_EQ(server.last().path, "wms_instore/get_detail");
    EXPECT_EQ(server.last().body, "id=0 9&x");
    ASSERT_EQ(lines.size(), 2);
    const auto& line = lines[0];
    const QStringList texts{line.id,       line.main_id,       line.product,   line.product_name,
                            line.category, line.category_name, line.warehouse, line.warehouse_name,
                            line.remark,   line.spec,          line.place,     line.code};
    EXPECT_EQ(texts, (QStringList{u("7"), u("m"), u("p"), u("钉"), u("c"), u("五金"), u("w"), u("仓"), u("r"),
                                  u("s"), u("A-1"), u("o")}));
    EXPECT_DOUBLE_EQ(line.price, 2.345);
    EXPECT_EQ(line.amount, 12);
    EXPECT_DOUBLE_EQ(line.total, 28.14);
    EXPECT_EQ(line.datetime, 1586696219);
    EXPECT_EQ(line.changed, 0) << "the service does not say it";
    EXPECT_TRUE(lines[1].id.isEmpty());
    EXPECT_DOUBLE_EQ(lines[1].price, 1.5) << "either form";
    EXPECT_EQ(lines[1].amount, 0) << "text alone";
    EXPECT_EQ(lines[1].total, 0);
    EXPECT_EQ(lines[1].datetime, 0);
}

TEST_F(instore_model, a_failed_answer_has_no_lines) {
    for (const char* body : {"", "{}", "7", "0", "[{\"id\"", "<html>"}) {
        server.answer(body);
        EXPECT_TRUE(model.get_detail(u("1")).isEmpty()) << body;
    }
}

TEST_F(instore_model, delete_passes_the_id_as_it_is_and_reads_the_count_form) {
    const struct {
        const char* body;
        bool done;
    } rows[] = {{"1", true},
                {"2", true},
                {"0", false},
                {"-1", false},
                {"", false},
                {"x", false},
                {"{\"http_state\":1}", false}};
    for (const auto& r : rows) {
        server.answer(r.body);
        EXPECT_EQ(model.do_delete(QStringLiteral("007x")), r.done) << r.body;
        EXPECT_EQ(server.last().path, "wms_instore/do_delete");
        EXPECT_EQ(server.last().body, "id=007x");
    }
}

TEST_F(instore_model, add_sends_what_has_a_value_the_department_last) {
    server.answer(R"({"http_state":"1","insert_id":"5"})");
    const QJsonObject answer = model.do_add(full_instore());
    EXPECT_EQ(server.last().path, "wms_instore/do_add");
    EXPECT_EQ(server.last().body,
              QByteArray("type=3&company=c&operater=o&writer=w&total=12.35&remark=备&注&dept=d"))
        << "the kind is the model's, not the record's";
    EXPECT_EQ(answer.value(QLatin1String("insert_id")).toString(), u("5"));
    EXPECT_EQ(added(struct_instore{}), "type=3");
}

TEST_F(instore_model, a_total_goes_out_with_an_addition_only_above_0) {
    struct_instore d{};
    for (double total : {0.0, -0.0, -12.5}) {
        d.total = total;
        EXPECT_EQ(added(d), "type=3") << total;
    }
    d.total = 0.001;
    EXPECT_EQ(added(d), "type=3&total=0.00");
}

TEST_F(instore_model, update_of_the_total) {
    server.answer("1");
    EXPECT_TRUE(model.update_total(u("7"), 1234567.891));
    EXPECT_EQ(server.last().path, "wms_instore/update_total");
    EXPECT_EQ(server.last().body, "id=7&total=1234567.89");
    for (const char* body : {"0", "", "no", "-1"}) {
        server.answer(body);
        EXPECT_FALSE(model.update_total(QString(), 0)) << body;
        EXPECT_EQ(server.last().body, "id=&total=0.00");
    }
}

TEST_F(instore_model, search_arguments_end_with_the_kind) {
    struct_instore d = full_instore();
    EXPECT_EQ(model_instore::search_args(d), u("&sn=never sent&company=c&operater=o&writer=w&remark=备&注"
                                               "&dept=d&instore_type=5"));
    d.date_start = 7;
    d.date_end = 5;
    EXPECT_EQ(model_instore::search_args(d), u("date_start=7&date_end=5&sn=never sent&company=c&operater=o"
                                               "&writer=w&remark=备&注&dept=d&instore_type=5"));
    struct_instore none{};
    none.type = 7;
    EXPECT_EQ(model_instore::search_args(none), u("&instore_type=7"));
}
