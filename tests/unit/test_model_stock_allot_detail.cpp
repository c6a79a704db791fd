#include "model/model_stock_allot_detail.h"

#include <QTableWidget>

#include "support/client_fixture.h"
#include "support/screen.h"

namespace {

struct_stock_allot_detail full_line() {
    struct_stock_allot_detail line;
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
    line.stock_id = QStringLiteral("8");
    line.changed = 1;
    line.code = QStringLiteral("c");
    line.spec = QStringLiteral("s");
    line.place = QStringLiteral("A-1");
    line.locked_id = QStringLiteral("C9");
    return line;
}

} // namespace

class allot_detail_model : public client_test {};

TEST_F(allot_detail_model, its_record_travels_in_signals_and_it_has_none_of_its_own) {
    const model_stock_allot_detail model;
    EXPECT_NE(QMetaType::type("struct_stock_allot_detail"), 0);
    EXPECT_EQ(model.metaObject()->methodCount(), QObject::staticMetaObject.methodCount());
}

TEST_F(allot_detail_model, posts_a_line_with_every_key_and_no_warehouse_behind_its_key) {
    model_stock_allot_detail().do_add(full_line());
    EXPECT_EQ(server.last().path, "wms_stock_allot_detail/do_add");
    EXPECT_EQ(server.last().body,
              QByteArray("main_id=77&product=31&price=2.50&amount=4&total=1234567.50&remark=急 & 用"
                         "&stock_id=8&place=A-1&warehouse=&locked_id=C9"));
}

TEST_F(allot_detail_model, posts_empty_values_and_zeros_too) {
    model_stock_allot_detail model;
    for (int i = 0; i < 2; ++i) {
        model.do_add(struct_stock_allot_detail());
        EXPECT_EQ(server.last().body,
                  "main_id=&product=&price=0.00&amount=0&total=0.00&remark=&stock_id=&place=&warehouse="
                  "&locked_id=")
            << "each body begins anew";
    }
}

TEST_F(allot_detail_model, the_answer_is_not_looked_at) {
    for (const char* answer : {"1", "0", "", "garbage", "{}"}) {
        server.answer(answer);
        model_stock_allot_detail().do_add(full_line());
    }
    EXPECT_EQ(server.requests().size(), 5);
}

TEST_F(allot_detail_model, renews_an_expired_session_and_does_not_repeat_the_line) {
    server.answer("7");
    model_stock_allot_detail().do_add(full_line());
    EXPECT_EQ(server.paths(), (QList<QByteArray>{"wms_stock_allot_detail/do_add", "wms/check_login"}));
}

TEST_F(allot_detail_model, a_row_shows_the_line_with_its_total_computed_and_without_a_claim) {
    QTableWidget table;
    const auto& columns = model_stock_allot_detail::columns();
    set_up_columns(&table, faces(columns));
    append_record(&table, columns, full_line());
    expect_cells(
        &table, 0,
        {"L1", "扳手", "31", "c", "s", "2.50", "4", "10.00", "A-1", "急 & 用", "8", "1", "77", "(no cell)"});
}

TEST_F(allot_detail_model, a_row_is_taken_back_with_the_total_that_it_shows) {
    QTableWidget table;
    const auto& columns = model_stock_allot_detail::columns();
    set_up_columns(&table, faces(columns));
    append_record(&table, columns, full_line());
    set_cell(&table, 0, 7, QStringLiteral("11.25"));
    set_cell(&table, 0, 13, QStringLiteral("C9"));
    const auto line = read_record(&table, 0, columns);
    EXPECT_EQ(line.product, QStringLiteral("31"));
    EXPECT_DOUBLE_EQ(line.price, 2.5);
    EXPECT_EQ(line.amount, 4);
    EXPECT_DOUBLE_EQ(line.total, 11.25);
    EXPECT_EQ(line.place, QStringLiteral("A-1"));
    EXPECT_EQ(line.remark, QStringLiteral("急 & 用"));
    EXPECT_EQ(line.stock_id, QStringLiteral("8"));
    EXPECT_EQ(line.changed, 1);
    EXPECT_EQ(line.locked_id, QStringLiteral("C9"));
    EXPECT_TRUE(line.warehouse.isEmpty() && line.category.isEmpty());
}
