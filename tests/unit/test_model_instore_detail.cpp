#include "model/model_instore_detail.h"

#include <QHeaderView>
#include <QSignalSpy>
#include <QTableWidget>

#include "support/client_fixture.h"
#include "support/pages.h"
#include "support/screen.h"

namespace {

struct_instore_detail full_line() {
    struct_instore_detail d;
    d.id = QStringLiteral("0");
    d.main_id = QStringLiteral("12");
    d.product = QStringLiteral("9");
    d.product_name = QStringLiteral("扳手");
    d.category_name = QStringLiteral("工具");
    d.category = QStringLiteral("5");
    d.price = 3.456;
    d.amount = 2;
    d.total = 99;
    d.warehouse_name = QStringLiteral("主仓");
    d.warehouse = QStringLiteral("1");
    d.remark = QStringLiteral("轻放");
    d.datetime = 1586696219;
    d.changed = 1;
    d.spec = QStringLiteral("9件");
    d.place = QStringLiteral("A-1");
    d.code = QStringLiteral("A1");
    return d;
}

} // namespace

class instore_detail_model : public client_test {
protected:
    model_instore_detail model;
};

TEST_F(instore_detail_model, its_record_travels_in_signals) {
    EXPECT_NE(QMetaType::type("struct_instore_detail"), 0);
}

TEST_F(instore_detail_model, its_signal_is_declared_and_never_emitted) {
    const QSignalSpy to_edit(&model, &model_instore_detail::signal_instore_to_edit);
    ASSERT_TRUE(to_edit.isValid());
    model.do_add(struct_instore_detail());
    model.do_delete(QStringLiteral("1"));
    EXPECT_EQ(to_edit.size(), 0);
}

TEST_F(instore_detail_model, add_sends_all_keys) {
    model.do_add(full_line());
    EXPECT_EQ(server.last().method, "POST");
    EXPECT_EQ(server.last().path, "wms_instore_detail/do_add");
    EXPECT_EQ(server.last().body,
              "main_id=12&product=9&price=3.46&amount=2&total=99.00&warehouse=1&remark=轻放&place=A-1");
}

TEST_F(instore_detail_model, add_sends_empty_values_and_zeros_too) {
    model.do_add(struct_instore_detail());
    EXPECT_EQ(server.last().body,
              "main_id=&product=&price=0.00&amount=0&total=0.00&warehouse=&remark=&place=");
}

TEST_F(instore_detail_model, numbers_go_out_whole) {
    auto line = full_line();
    line.price = 99999999;
    line.amount = 99999999;
    line.total = 999999999999999.25;
    line.remark = QStringLiteral("a&b=c\nd%e");
    model.do_add(line);
    EXPECT_EQ(server.last().body,
              "main_id=12&product=9&price=99999999.00&amount=99999999&total=999999999999999.25&warehouse=1"
              "&remark=a&b=c\nd%e&place=A-1");
}

TEST_F(instore_detail_model, the_answer_to_an_addition_is_not_looked_at) {
    for (const char* body : {"1", "0", "-1", "", "garbage", R"({"http_state":0})"}) {
        server.forget();
        server.answer(body);
        model.do_add(full_line());
        EXPECT_EQ(server.requests().size(), 1) << body;
    }
}

TEST_F(instore_detail_model, an_expired_session_is_renewed_and_the_line_is_not_repeated) {
    server.answer("7");
    model.do_add(full_line());
    EXPECT_EQ(server.paths(), QList<QByteArray>({"wms_instore_detail/do_add", "wms/check_login"}));
}

TEST_F(instore_detail_model, delete_takes_text_and_reads_a_count) {
    const struct {
        const char* body;
        bool done;
    } rows[] = {{"1", true},   {"2", true}, {" 1 ", true}, {"7", true},    {"0", false},
                {"-1", false}, {"", false}, {"x", false},  {"1.0", false}, {R"({"http_state":1})", false}};
    for (const auto& r : rows) {
        server.forget();
        server.answer(r.body);
        EXPECT_EQ(model.do_delete(QStringLiteral("012")), r.done) << r.body;
        EXPECT_EQ(server.requests().first().path, "wms_instore_detail/do_delete");
        EXPECT_EQ(server.requests().first().body, "id=012");
    }
}

TEST_F(instore_detail_model, columns) {
    const char* const headers[] = {"id",       "货品id", "货品名称", "编码",   "类别id", "类别",
                                   "规格",     "单价",   "数量",     "总价",   "仓库id", "仓库",
                                   "存储位置", "备注",   "是否变更", "main_id"};
    const QList<int> hidden_ones{0, 1, 4, 10, 14, 15};
    QTableWidget table;
    set_up_columns(&table, faces(model_instore_detail::columns()));
    ASSERT_EQ(table.columnCount(), 16);
    for (int i = 0; i < 16; ++i) {
        EXPECT_EQ(table.horizontalHeaderItem(i)->text(), QString::fromUtf8(headers[i]));
        EXPECT_EQ(table.isColumnHidden(i), hidden_ones.contains(i)) << i;
        EXPECT_EQ(table.horizontalHeader()->sectionResizeMode(i),
                  i == 0 ? QHeaderView::ResizeToContents : QHeaderView::Stretch);
    }
}

TEST_F(instore_detail_model, cells_and_back) {
    QTableWidget table;
    const auto& columns = model_instore_detail::columns();
    set_up_columns(&table, faces(columns));
    append_record(&table, columns, full_line());
    ASSERT_EQ(table.rowCount(), 1);
    // Not the line's own total: amount times price as they are, rounded afterwards.
    expect_cells(&table, 0,
                 {"0", "9", "扳手", "A1", "5", "工具", "9件", "3.46", "2", "6.91", "1", "主仓", "A-1", "轻放",
                  "1", "12"});
    const struct_instore_detail back = read_record(&table, 0, columns);
    EXPECT_EQ(back.id, QStringLiteral("0"));
    EXPECT_EQ(back.main_id, QStringLiteral("12"));
    EXPECT_EQ(back.product, QStringLiteral("9"));
    EXPECT_EQ(back.product_name, QStringLiteral("扳手"));
    EXPECT_EQ(back.category, QStringLiteral("5"));
    EXPECT_EQ(back.category_name, QStringLiteral("工具"));
    EXPECT_DOUBLE_EQ(back.price, 3.46);
    EXPECT_EQ(back.amount, 2);
    EXPECT_DOUBLE_EQ(back.total, 6.91) << "the text";
    EXPECT_EQ(back.warehouse, QStringLiteral("1"));
    EXPECT_EQ(back.warehouse_name, QStringLiteral("主仓"));
    EXPECT_EQ(back.remark, QStringLiteral("轻放"));
    EXPECT_EQ(back.changed, 1);
    EXPECT_EQ(back.spec, QStringLiteral("9件"));
    EXPECT_EQ(back.place, QStringLiteral("A-1"));
    EXPECT_EQ(back.code, QStringLiteral("A1"));
    EXPECT_EQ(back.datetime, 0) << "no column shows it";
}

TEST_F(instore_detail_model, a_new_row_goes_below_the_others) {
    QTableWidget table;
    const auto& columns = model_instore_detail::columns();
    set_up_columns(&table, faces(columns));
    auto line = full_line();
    append_record(&table, columns, line);
    line.product_name = QStringLiteral("second");
    append_record(&table, columns, line);
    EXPECT_EQ(column_texts(&table, 2), QStringList({QStringLiteral("扳手"), QStringLiteral("second")}));
}
