#include "model/model_outstore.h"

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
    R"({"list":[{"id":"1","sn":"C1","company":"c1","company_name":"甲","dept":"d1","dept_name":"一",)"
    R"("operater":"o1","operater_name":"经","writer":"w1","writer_name":"制","total":"3.456","remark":"<b>",)"
    R"("datetime":1586696219},)"
    R"({"id":2,"sn":5,"company":6,"company_name":7,"dept":8,"dept_name":9,"operater":1,"total":12.5,)"
    R"("datetime":0},)"
    R"({"id":"3","sn":"C3","datetime":"1586696280"},{"id":"4","sn":"C4"}],)"
    R"("total":42,"page_count":"3","page_num":2})";

const char* const head =
    "<table width=100% border=1 cellpadding=5 cellspacing=-1><tr><td colspan=7 align=center id=td_title>"
    "出库记录</td></tr><tr id=tr_header><td>单号</td>";
const char* const further_headers =
    "<td>经办人</td><td>制单人</td><td>总价</td><td>备注</td><td>时间</td></tr>";

QString u(const char* text) {
    return QString::fromUtf8(text);
}

struct_outstore full_outstore() {
    struct_outstore d{};
    d.sn = u("s");
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

class outstore_model : public client_test {
protected:
    QHash<QString, QVariant> load(int type, const char* answer = four_documents) {
        server.answer(answer);
        return model.get_page(QStringLiteral("outstore_type=%1&date_start=1").arg(type), 1, 20);
    }

    QTableWidget table;
    model_outstore model{&table, 3};
    const scoped_time_zone zone{"UTC"};
};

TEST_F(outstore_model, answers_to_the_interfaces_name) {
    EXPECT_NE(model.qt_metacast("model_interface"), nullptr);
    EXPECT_NE(QMetaType::type("struct_outstore"), 0);
}

TEST_F(outstore_model, can_be_made_with_a_table_a_kind_both_or_neither) {
    model_outstore with_table(&table);
    model_outstore with_kind(4);
    model_outstore with_both(&table, 5);
    model_outstore with_neither;
    int id = 0;
    for (model_outstore* made : {&with_table, &with_kind, &with_both, &with_neither}) {
        made->do_delete(QString::number(++id));
        EXPECT_EQ(server.last().body, "id=" + QByteArray::number(id));
    }
}

TEST_F(outstore_model, page_request) {
    const auto info = load(2);
    EXPECT_EQ(server.last().path, "wms_outstore/get_page");
    EXPECT_EQ(server.last().body, "outstore_type=2&date_start=1&page_num=1&page_size=20");
    EXPECT_EQ(info.value(QStringLiteral("total")).toString(), u("42"));
    EXPECT_EQ(info.value(QStringLiteral("page_count")).toString(), u("3"));
    EXPECT_EQ(info.value(QStringLiteral("page_num")).toString(), u("2"));
}

class outstore_page : public outstore_model, public testing::WithParamInterface<known_kind> {};

INSTANTIATE_TEST_SUITE_P(kinds, outstore_page, testing::ValuesIn(outbound_rows),
                         [](const auto& p) { return p.param.word(); });

TEST_P(outstore_page, headers_and_look) {
    const known_kind& kind = GetParam();
    load(kind.type);
    const QString header = u(kind.header);
    const QStringList headers{u("id"),       u("单号"),     header,    u("经办人"),
                              u("制单人"),   u("总价"),     u("备注"), header + u("id"),
                              u("经办人id"), u("制单人id"), u("时间")};
    ASSERT_EQ(table.columnCount(), 11);
    for (int i = 0; i < 11; ++i) {
        const bool of_partner = i == 2 || i == 7;
        const QTableWidgetItem* item = table.horizontalHeaderItem(i);
        ASSERT_EQ(item == nullptr, of_partner && kind.has("")) << i;
        if (item != nullptr) {
            EXPECT_EQ(item->text(), headers[i]);
        }
        EXPECT_EQ(table.isColumnHidden(i), i == 0 || (i >= 7 && i <= 9) || (i == 2 && kind.has(""))) << i;
        EXPECT_EQ(table.horizontalHeader()->sectionResizeMode(i),
                  i < 2 ? QHeaderView::ResizeToContents : QHeaderView::Stretch);
    }
    EXPECT_EQ(table.selectionBehavior(), QAbstractItemView::SelectRows);
    EXPECT_EQ(table.editTriggers(), QAbstractItemView::NoEditTriggers);
    EXPECT_EQ(table.contextMenuPolicy(), Qt::CustomContextMenu);
    EXPECT_TRUE(table.verticalHeader()->isHidden());
}

TEST_P(outstore_page, cells) {
    const known_kind& kind = GetParam();
    load(kind.type);
    ASSERT_EQ(table.rowCount(), 4);
    for (int row = 0; row < 4; ++row)
        for (int column : {2, 7})
            EXPECT_EQ(table.item(row, column) == nullptr, kind.has("")) << row << ", " << column;
    const char* const name = kind.has("dept") ? "一" : kind.has("") ? "" : "甲";
    const char* const id = kind.has("dept") ? "d1" : kind.has("") ? "" : "c1";
    EXPECT_EQ(row_texts(&table, 0), (QStringList{u("1"), u("C1"), u(name), u("经"), u("制"), u("3.456"),
                                                 u("<b>"), u(id), u("o1"), u("w1"), u("2020-04-12 12:56")}));
    EXPECT_EQ(column_texts(&table, 1), (QStringList{u("C1"), QString(), u("C3"), u("C4")}));
    EXPECT_EQ(column_texts(&table, 5), (QStringList{u("3.456"), QString(), QString(), QString()}));
    EXPECT_EQ(column_texts(&table, 10), (QStringList{u("2020-04-12 12:56"), u("2020-04-12 12:56"),
                                                     u("2020-04-12 12:58"), u("2020-04-12 12:58")}));
}

TEST_P(outstore_page, prints_as_many_cells_as_headers) {
    const known_kind& kind = GetParam();
    const auto cell_of = [&kind](const QString& text) {
        return kind.has("") ? QString() : u("<td>") + text + u("</td>");
    };
    EXPECT_EQ(load(kind.type).value(QStringLiteral("html")).toString(),
              g_style_list + u(head) + cell_of(u(kind.header)) + u(further_headers) + u("<tr><td>C1</td>") +
                  cell_of(kind.has("dept") ? u("一") : u("甲")) +
                  u("<td>经</td><td>制</td><td>3.456</td><td><b></td><td>2020-04-12 12:56</td></tr>"
                    "<tr><td></td>") +
                  cell_of(QString()) +
                  u("<td></td><td></td><td></td><td></td><td>2020-04-12 12:56</td></tr><tr><td>C3</td>") +
                  cell_of(QString()) +
                  u("<td></td><td></td><td></td><td></td><td>2020-04-12 12:58</td></tr><tr><td>C4</td>") +
                  cell_of(QString()) +
                  u("<td></td><td></td><td></td><td></td><td>2020-04-12 12:58</td></tr></table>"));
}

TEST_F(outstore_model, kind_6_prints_six_cells_under_six_headers_and_a_title_over_seven) {
    const QStringList rows = load(6).value(QStringLiteral("html")).toString().split(u("<tr"));
    EXPECT_TRUE(rows[1].contains(u("colspan=7")));
    EXPECT_EQ(rows[2].count(u("<td>")), 6);
    EXPECT_EQ(rows[3].count(u("<td>")), 6);
}

TEST_F(outstore_model, the_kind_is_that_of_the_arguments) {
    model_outstore made_for_the_bar(&table);
    server.answer(four_documents);
    made_for_the_bar.get_page(QStringLiteral("outstore_type=3"), 1, 20);
    EXPECT_EQ(table.horizontalHeaderItem(2)->text(), u("领用部门"));
    load(4);
    EXPECT_EQ(table.horizontalHeaderItem(2)->text(), u("来往单位"))
        << "the arguments win over the kind that it was made for";
}

TEST_F(outstore_model, a_failed_page_clears_the_table_and_prints_the_headers_alone) {
    for (const char* body : {"", "[]", "7", "{\"total\":", "<html>", "{\"list\":7}"}) {
        load(1);
        const auto info = load(1, body);
        EXPECT_EQ(table.rowCount(), 0) << body;
        EXPECT_EQ(info.value(QStringLiteral("page_count")).toInt(), 0);
        EXPECT_EQ(info.value(QStringLiteral("html")).toString(),
                  g_style_list + u(head) + u("<td>供应商</td>") + u(further_headers) + u("</table>"));
    }
}

TEST_F(outstore_model, detail_lines) {
    server.answer(R"([{"id":"7","main_id":"m","product":"p","product_name":"钉","category_name":"五金",)"
                  R"("category":"c","price":"2.345","amount":"12","total":"28.14","warehouse_name":"仓",)"
                  R"("warehouse":"w","remark":"r","datetime":"1586696219","changed":"1","spec":"s",)"
                  R"("place":"A-1","code":"o","stock_id":"k","locked_id":"L1"},)"
                  R"({"stock_id":7,"price":1.5,"amount":12,"total":28.14,"datetime":1586696219}])");
    const auto lines = model.get_detail(u("9"));
    EXPECT_EQ(server.last().path, "wms_outstore/get_detail");
    EXPECT_EQ(server.last().body, "id=9");
    ASSERT_EQ(lines.size(), 2);
    const auto& line = lines[0];
    const QStringList texts{line.id,       line.main_id,       line.product,   line.product_name,
                            line.category, line.category_name, line.warehouse, line.warehouse_name,
                            line.remark,   line.spec,          line.place,     line.code,
                            line.stock_id};
    EXPECT_EQ(texts, (QStringList{u("7"), u("m"), u("p"), u("钉"), u("c"), u("五金"), u("w"), u("仓"), u("r"),
                                  u("s"), u("A-1"), u("o"), u("k")}));
    EXPECT_DOUBLE_EQ(line.price, 2.345);
    EXPECT_EQ(line.amount, 12);
    EXPECT_DOUBLE_EQ(line.total, 28.14);
    EXPECT_EQ(line.datetime, 1586696219);
    EXPECT_EQ(line.changed, 0) << "the service does not say it";
    EXPECT_TRUE(line.locked_id.isEmpty()) << "nor the lock";
    EXPECT_TRUE(lines[1].stock_id.isEmpty());
    EXPECT_DOUBLE_EQ(lines[1].price, 1.5) << "either form";
    EXPECT_EQ(lines[1].amount, 0) << "text alone";
    EXPECT_EQ(lines[1].total, 0);
    EXPECT_EQ(lines[1].datetime, 0);
}

TEST_F(outstore_model, a_failed_answer_has_no_lines) {
    for (const char* body : {"", "{}", "7", "0", "[{\"id\"", "<html>"}) {
        server.answer(body);
        EXPECT_TRUE(model.get_detail(u("1")).isEmpty()) << body;
    }
}

TEST_F(outstore_model, delete_passes_the_id_as_it_is_and_reads_the_count_form) {
    const struct {
        const char* body;
        bool done;
    } rows[] = {{"1", true}, {"2", true}, {"0", false}, {"-1", false}, {"", false}, {"x", false}};
    for (const auto& r : rows) {
        server.answer(r.body);
        EXPECT_EQ(model.do_delete(QStringLiteral("007x")), r.done) << r.body;
        EXPECT_EQ(server.last().path, "wms_outstore/do_delete");
        EXPECT_EQ(server.last().body, "id=007x");
    }
}

TEST_F(outstore_model, add_sends_everything_the_department_before_the_remark) {
    server.answer(R"({"http_state":1,"insert_id":"5"})");
    const QJsonObject answer = model.do_add(full_outstore());
    EXPECT_EQ(server.last().path, "wms_outstore/do_add");
    EXPECT_EQ(server.last().body,
              QByteArray("type=5&company=c&operater=o&writer=w&total=12.35&dept=d&remark=备&注"))
        << "the kind is the record's, not the model's";
    EXPECT_EQ(answer.value(QLatin1String("insert_id")).toString(), u("5"));
    struct_outstore none{};
    model.do_add(none);
    EXPECT_EQ(server.last().body, "type=0&company=&operater=&writer=&total=0.00&dept=&remark=");
}

TEST_F(outstore_model, update_of_the_total) {
    server.answer("1");
    EXPECT_TRUE(model.update_total(u("7"), 1234567.891));
    EXPECT_EQ(server.last().path, "wms_outstore/update_total");
    EXPECT_EQ(server.last().body, "id=7&total=1234567.89");
    for (const char* body : {"0", "", "no", "-1"}) {
        server.answer(body);
        EXPECT_FALSE(model.update_total(QString(), 0)) << body;
        EXPECT_EQ(server.last().body, "id=&total=0.00");
    }
}

TEST_F(outstore_model, search_arguments_begin_with_the_kind_and_have_no_department) {
    struct_outstore d = full_outstore();
    EXPECT_EQ(model_outstore::search_args(d),
              u("outstore_type=5&sn=s&company=c&operater=o&writer=w&remark=备&注"));
    d.date_start = 7;
    d.date_end = 5;
    EXPECT_EQ(model_outstore::search_args(d), u("outstore_type=5&date_start=7&date_end=5&sn=s&company=c"
                                                "&operater=o&writer=w&remark=备&注"));
    struct_outstore none{};
    none.type = 6;
    EXPECT_EQ(model_outstore::search_args(none), u("outstore_type=6"));
}
