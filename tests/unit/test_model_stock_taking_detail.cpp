#include "model/model_stock_taking_detail.h"

#include <QTableWidget>

#include "support/client_fixture.h"
#include "support/screen.h"

namespace {

struct_stock_taking_detail full_line() {
    struct_stock_taking_detail line;
    line.id = QStringLiteral("L1");
    line.stock_id = QStringLiteral("8");
    line.main_id = QStringLiteral("77");
    line.product = QStringLiteral("31");
    line.product_name = QStringLiteral("扳手");
    line.code = QStringLiteral("c");
    line.price = 2.345;
    line.sys_amount = 10;
    line.real_amount = 8;
    line.remark = QStringLiteral("急 & 用");
    line.changed = 1;
    line.spec = QStringLiteral("s");
    line.profitloss_amount = -2;
    line.profitloss_total = -4;
    line.warehouse = QStringLiteral("6");
    line.warehouse_name = QStringLiteral("一号");
    line.place = QStringLiteral("A-1");
    line.locked_id = QStringLiteral("C9");
    return line;
}

} // namespace

class taking_detail_model : public client_test {
protected:
    taking_detail_model() {
        set_up_columns(&table, faces(columns));
        append_record(&table, columns, full_line());
    }

    const record_columns<struct_stock_taking_detail>& columns = model_stock_taking_detail::columns();
    QTableWidget table;
};

TEST_F(taking_detail_model, its_record_travels_in_signals) {
    const model_stock_taking_detail model;
    EXPECT_NE(QMetaType::type("struct_stock_taking_detail"), 0);
}

TEST_F(taking_detail_model, posts_a_line_with_every_key) {
    server.answer("1");
    EXPECT_TRUE(model_stock_taking_detail().do_add(full_line()));
    EXPECT_EQ(server.last().path, "wms_stock_taking_detail/do_add");
    EXPECT_EQ(server.last().body,
              QByteArray("main_id=77&product=31&price=2.35&sys_amount=10&real_amount=8&profitloss_amount=-2"
                         "&profitloss_total=-4.00&remark=急 & 用&warehouse=6&stock_id=8&place=A-1"
                         "&locked_id=C9"));
}

TEST_F(taking_detail_model, posts_empty_values_and_zeros_too_and_one_model_posts_line_after_line) {
    model_stock_taking_detail model;
    for (int i = 0; i < 2; ++i) {
        model.do_add(struct_stock_taking_detail());
        EXPECT_EQ(server.last().body,
                  "main_id=&product=&price=0.00&sys_amount=0&real_amount=0&profitloss_amount=0"
                  "&profitloss_total=0.00&remark=&warehouse=&stock_id=&place=&locked_id=");
    }
    EXPECT_EQ(server.requests().size(), 2);
}

TEST_F(taking_detail_model, its_answer_is_a_count) {
    const struct {
        const char* body;
        bool done;
    } answers[] = {{"1", true}, {"2", true}, {"0", false}, {"-1", false}, {"", false}, {"x", false}};
    for (const auto& a : answers) {
        server.answer(a.body);
        EXPECT_EQ(model_stock_taking_detail().do_add(full_line()), a.done) << a.body;
    }
}

TEST_F(taking_detail_model, has_no_call_that_changes_or_deletes_a_line) {
    EXPECT_EQ(model_stock_taking_detail().metaObject()->methodCount(),
              QObject::staticMetaObject.methodCount())
        << "nor signals or slots of its own";
}

TEST_F(taking_detail_model, renews_an_expired_session_and_does_not_repeat_the_line) {
    server.answer("7");
    model_stock_taking_detail().do_add(full_line());
    EXPECT_EQ(server.paths(), (QList<QByteArray>{"wms_stock_taking_detail/do_add", "wms/check_login"}));
}

TEST_F(taking_detail_model, a_row_shows_the_line_without_a_claim) {
    expect_cells(&table, 0,
                 {"L1", "6", "一号", "A-1", "31", "扳手", "s", "c", "2.35", "10", "8", "-2", "-4.00",
                  "急 & 用", "8", "1", "(no cell)"});
}

TEST_F(taking_detail_model, a_row_is_taken_back_as_it_shows_the_line) {
    set_cell(&table, 0, 12, QStringLiteral("-4.50"));
    set_cell(&table, 0, 16, QStringLiteral("C9"));
    const auto line = read_record(&table, 0, columns);
    EXPECT_EQ(line.id, QStringLiteral("L1"));
    EXPECT_EQ(line.warehouse, QStringLiteral("6"));
    EXPECT_EQ(line.warehouse_name, QStringLiteral("一号"));
    EXPECT_EQ(line.place, QStringLiteral("A-1"));
    EXPECT_EQ(line.product, QStringLiteral("31"));
    EXPECT_EQ(line.product_name, QStringLiteral("扳手"));
    EXPECT_EQ(line.spec, QStringLiteral("s"));
    EXPECT_EQ(line.code, QStringLiteral("c"));
    EXPECT_DOUBLE_EQ(line.price, 2.35) << "with the decimals that are shown";
    EXPECT_EQ(line.sys_amount, 10);
    EXPECT_EQ(line.real_amount, 8);
    EXPECT_EQ(line.profitloss_amount, -2);
    EXPECT_DOUBLE_EQ(line.profitloss_total, -4.5);
    EXPECT_EQ(line.remark, QStringLiteral("急 & 用"));
    EXPECT_EQ(line.stock_id, QStringLiteral("8"));
    EXPECT_EQ(line.changed, 1);
    EXPECT_EQ(line.locked_id, QStringLiteral("C9"));
    EXPECT_TRUE(line.main_id.isEmpty()) << "the table does not hold it";
}
