#include "model/model_outstore_detail.h"

#include <QTableWidget>

#include "model/model_outstore.h"
#include "support/client_fixture.h"
#include "support/screen.h"

// What an outbound document sends when it is saved, and the table of its lines.

namespace {

struct_outstore_detail full_line() {
    struct_outstore_detail line;
    line.id = QStringLiteral("L1");
    line.main_id = QStringLiteral("77");
    line.product = QStringLiteral("31");
    line.product_name = QStringLiteral("扳手");
    line.category_name = QStringLiteral("工具");
    line.category = QStringLiteral("5");
    line.price = 2.5;
    line.amount = 4;
    line.total = 1234567.5;
    line.remark = QStringLiteral("急 & 用");
    line.datetime = 1586696219;
    line.warehouse = QStringLiteral("6");
    line.warehouse_name = QStringLiteral("一号");
    line.stock_id = QStringLiteral("8");
    line.changed = 1;
    line.code = QStringLiteral("c");
    line.spec = QStringLiteral("s");
    line.place = QStringLiteral("A-1");
    line.locked_id = QStringLiteral("C9");
    return line;
}

} // namespace

class outstore_detail_model : public client_test {};

TEST_F(outstore_detail_model, its_record_travels_in_signals) {
    const model_outstore_detail model;
    EXPECT_NE(QMetaType::type("struct_outstore_detail"), 0);
}

TEST_F(outstore_detail_model, posts_a_line_with_every_key) {
    model_outstore_detail().do_add(full_line());
    EXPECT_EQ(server.last().path, "wms_outstore_detail/do_add");
    EXPECT_EQ(server.last().body,
              QByteArray("main_id=77&product=31&price=2.50&amount=4&total=1234567.50&warehouse=6"
                         "&remark=急 & 用&stock_id=8&place=A-1&locked_id=C9"));
}

TEST_F(outstore_detail_model, posts_empty_values_and_zeros_too) {
    model_outstore_detail().do_add(struct_outstore_detail());
    EXPECT_EQ(
        server.last().body,
        "main_id=&product=&price=0.00&amount=0&total=0.00&warehouse=&remark=&stock_id=&place=&locked_id=");
}

TEST_F(outstore_detail_model, one_model_posts_line_after_line) {
    model_outstore_detail model;
    for (int i = 0; i < 2; ++i) {
        model.do_add(struct_outstore_detail());
        EXPECT_TRUE(server.last().body.startsWith("main_id=&product=&price=0.00"));
    }
    EXPECT_EQ(server.requests().size(), 2);
}

TEST_F(outstore_detail_model, has_no_call_that_deletes_a_line) {
    const QMetaObject* meta = model_outstore_detail().metaObject();
    EXPECT_EQ(meta->methodCount(), QObject::staticMetaObject.methodCount())
        << "nor signals or slots of its own";
}

TEST_F(outstore_detail_model, renews_an_expired_session_and_does_not_repeat_the_line) {
    server.answer("7");
    model_outstore_detail().do_add(full_line());
    EXPECT_EQ(server.paths(), (QList<QByteArray>{"wms_outstore_detail/do_add", "wms/check_login"}));
}

TEST_F(outstore_detail_model, a_row_shows_the_line_with_its_total_computed_and_without_a_claim) {
    QTableWidget table;
    const auto& columns = model_outstore_detail::columns();
    set_up_columns(&table, faces(columns));
    append_record(&table, columns, full_line());
    expect_cells(&table, 0,
                 {"L1", "31", "扳手", "c", "5", "工具", "s", "2.50", "4", "10.00", "6", "一号", "A-1",
                  "急 & 用", "8", "1", "77", "(no cell)"});
}

TEST_F(outstore_detail_model, a_row_is_taken_back_with_the_total_that_it_shows) {
    QTableWidget table;
    const auto& columns = model_outstore_detail::columns();
    set_up_columns(&table, faces(columns));
    append_record(&table, columns, full_line());
    set_cell(&table, 0, 9, QStringLiteral("11.25"));
    set_cell(&table, 0, 17, QStringLiteral("C9"));
    const auto line = read_record(&table, 0, columns);
    EXPECT_DOUBLE_EQ(line.total, 11.25);
    EXPECT_DOUBLE_EQ(line.price, 2.5);
    EXPECT_EQ(line.amount, 4);
    EXPECT_EQ(line.id, QStringLiteral("L1"));
    EXPECT_EQ(line.main_id, QStringLiteral("77"));
    EXPECT_EQ(line.product, QStringLiteral("31"));
    EXPECT_EQ(line.product_name, QStringLiteral("扳手"));
    EXPECT_EQ(line.category, QStringLiteral("5"));
    EXPECT_EQ(line.category_name, QStringLiteral("工具"));
    EXPECT_EQ(line.code, QStringLiteral("c"));
    EXPECT_EQ(line.spec, QStringLiteral("s"));
    EXPECT_EQ(line.warehouse, QStringLiteral("6"));
    EXPECT_EQ(line.warehouse_name, QStringLiteral("一号"));
    EXPECT_EQ(line.place, QStringLiteral("A-1"));
    EXPECT_EQ(line.remark, QStringLiteral("急 & 用"));
    EXPECT_EQ(line.stock_id, QStringLiteral("8"));
    EXPECT_EQ(line.changed, 1);
    EXPECT_EQ(line.locked_id, QStringLiteral("C9"));
}

class outstore_header : public client_test {
protected:
    model_outstore model;
};

TEST_F(outstore_header, goes_out_with_every_key_and_the_department_before_the_remark) {
    struct_outstore header{};
    header.type = 3;
    header.company = QStringLiteral("1");
    header.operater = QStringLiteral("2");
    header.writer = QStringLiteral("3");
    header.dept = QStringLiteral("4");
    header.remark = QStringLiteral("急");
    header.total = 12.345678;
    server.answer(R"({"http_state":1,"insert_id":"77"})");
    const auto answer = model.do_add(header);
    EXPECT_EQ(server.last().path, "wms_outstore/do_add");
    EXPECT_EQ(server.last().body,
              QByteArray("type=3&company=1&operater=2&writer=3&total=12.35&dept=4&remark=急"));
    EXPECT_EQ(answer.value(QLatin1String("insert_id")).toString(), QStringLiteral("77"));
}

TEST_F(outstore_header, goes_out_with_empty_values_and_a_total_of_0) {
    struct_outstore header{};
    header.type = 6;
    model.do_add(header);
    EXPECT_EQ(server.last().body, "type=6&company=&operater=&writer=&total=0.00&dept=&remark=");
}

TEST_F(outstore_header, an_answer_that_is_no_object_is_empty) {
    for (const char* answer : {"", "7", "[]", "garbage", "\"1\""}) {
        server.answer(answer);
        EXPECT_TRUE(model.do_add(struct_outstore{}).isEmpty()) << answer;
    }
}

TEST_F(outstore_header, its_total_is_updated) {
    server.answer("1");
    EXPECT_TRUE(model.update_total(QStringLiteral("77"), 1234567.5));
    EXPECT_EQ(server.last().path, "wms_outstore/update_total");
    EXPECT_EQ(server.last().body, "id=77&total=1234567.50");
    server.answer("2");
    EXPECT_TRUE(model.update_total(QString(), 0));
    EXPECT_EQ(server.last().body, "id=&total=0.00");
}

TEST_F(outstore_header, an_update_without_a_count_of_at_least_1_failed) {
    for (const char* answer : {"0", "", "-1", "garbage", "1x", "[]"}) {
        server.answer(answer);
        EXPECT_FALSE(model.update_total(QStringLiteral("77"), 1)) << answer;
    }
}
