#include "model/model_stock_detail.h"

#include <QHeaderView>
#include <QSignalSpy>
#include <QTableWidget>

#include "support/client_fixture.h"
#include "support/pages.h"
#include "support/screen.h"
#include "support/time_zone.h"

namespace {

struct_stock full_stock() {
    struct_stock s;
    s.date_start = 1;
    s.date_end = 2;
    s.id = QStringLiteral("31");
    s.product = QStringLiteral("7");
    s.product_name = QStringLiteral("扳手");
    s.category = QStringLiteral("3");
    s.category_name = QStringLiteral("工具");
    s.price = 12.5;
    s.amount = 4;
    s.total = 50;
    s.warehouse = QStringLiteral("2");
    s.warehouse_name = QStringLiteral("主仓");
    s.remark = QStringLiteral("a&b");
    s.spec = QStringLiteral("9件");
    s.place = QStringLiteral("A 1");
    s.code = QStringLiteral("SP-1");
    return s;
}

const char* const two_rows =
    R"({"list":[{"id":"1","warehouse_name":"主仓","warehouse":"2","place":"A1","product_name":"扳手",)"
    R"("product":"7","category_name":"工具","category":"3","code":"SP-1","spec":"9件","price":"12.5",)"
    R"("amount":"4","total":"50.000","remark":"r<b>&","datetime":1586696219},)"
    R"({"id":2,"warehouse_name":null,"product_name":"锤","price":12.5,"amount":4,"total":50,"datetime":"0"}],)"
    R"("total":"42","page_count":3,"page_num":"1"})";

const char* const list_head =
    "<style>table{border-color:#004EA1;color:#004EA1;border-style:solid;font-family:Microsoft YaHei;"
    "font-size:9pt;}#td_title{font-size:15pt;padding:10;}#tr_header{font-size:11pt;background-color:#E0EEFF;"
    "align:center}#tr_header td{align:center}</style>"
    "<table width=100% border=1 cellpadding=5 cellspacing=-1><tr><td colspan=11 align=center id=td_title>"
    "库存明细</td></tr><tr id=tr_header><td>仓库</td><td>存储位置</td><td>货品名称</td><td>类别</td>"
    "<td>编码</td><td>规格</td><td>价格</td><td>数量</td><td>总价</td><td>备注</td><td>时间</td></tr>";

} // namespace

class stock_model : public client_test {
protected:
    stock_model() : model(&table, 2) {}
    QHash<QString, QVariant> load(const char* body = two_rows) {
        server.answer(body);
        return model.get_page(QString(), 1, 20);
    }
    QByteArray html() {
        return model.get_page(QString(), 1, 20).value(QStringLiteral("html")).toString().toUtf8();
    }
    QByteArray locked(const struct_stock& stock, int type) {
        model.lock_stock(stock, type);
        return server.last().body;
    }

    QTableWidget table;
    model_stock_detail model;
    const scoped_time_zone zone{"UTC"};
};

TEST_F(stock_model, answers_to_the_interfaces_name) {
    EXPECT_NE(model.qt_metacast("model_interface"), nullptr);
    EXPECT_NE(QMetaType::type("struct_stock"), 0);
}

TEST_F(stock_model, an_empty_record) {
    const struct_stock s;
    EXPECT_EQ(s.date_start, 0);
    EXPECT_EQ(s.date_end, 0);
    EXPECT_EQ(s.amount, 0);
    EXPECT_DOUBLE_EQ(s.price, 0);
    EXPECT_DOUBLE_EQ(s.total, 0);
    EXPECT_TRUE(s.id.isEmpty() && s.product.isEmpty() && s.category.isEmpty() && s.warehouse.isEmpty());
}

TEST_F(stock_model, its_signals_are_declared_and_never_emitted) {
    const QSignalSpy to_edit(&model, &model_stock_detail::signal_stock_to_edit);
    const QSignalSpy args(&model, &model_stock_detail::signal_send_args);
    ASSERT_TRUE(to_edit.isValid() && args.isValid());
    load();
    model.do_add(full_stock());
    model.lock_stock(full_stock(), 1);
    model.unlock_stock(QStringLiteral("1"), 1);
    EXPECT_EQ(to_edit.size() + args.size(), 0);
}

TEST_F(stock_model, page_request) {
    model.get_page(QStringLiteral("&warehouse=2&remark=甲"), 3, 20);
    EXPECT_EQ(server.last().path, "wms_stock_detail/get_page");
    EXPECT_EQ(server.last().body, QByteArray("&warehouse=2&remark=甲&page_num=3&page_size=20"));
    model.get_page(QString(), -1, 10);
    EXPECT_EQ(server.last().body, "&page_num=-1&page_size=10");
}

TEST_F(stock_model, page_information_is_text_whatever_its_form) {
    const auto info = load();
    EXPECT_EQ(info.value(QStringLiteral("total")).toString(), QStringLiteral("42"));
    EXPECT_EQ(info.value(QStringLiteral("page_count")).toString(), QStringLiteral("3"));
    EXPECT_EQ(info.value(QStringLiteral("page_num")).toString(), QStringLiteral("1"));
}

TEST_F(stock_model, numbers_are_shown_as_they_come) {
    load();
    ASSERT_EQ(table.rowCount(), 2);
    expect_cells(&table, 0,
                 {"1", "主仓", "2", "A1", "扳手", "7", "工具", "3", "SP-1", "9件", "12.5", "4", "50.000",
                  "r<b>&", "2020-04-12 12:56"});
}

TEST_F(stock_model, numbers_that_are_no_text_show_nothing) {
    load();
    const QString text = cell_text(&table, 1, 0) + cell_text(&table, 1, 1) + cell_text(&table, 1, 10) +
                         cell_text(&table, 1, 11) + cell_text(&table, 1, 12);
    EXPECT_EQ(text, QString());
    EXPECT_EQ(cell_text(&table, 1, 4), QStringLiteral("锤"));
}

TEST_F(stock_model, a_row_without_a_time_keeps_that_of_the_row_above) {
    server.answer(R"({"list":[{"id":"1","datetime":0},{"id":"2","datetime":"1586696219"},{"id":"3"},)"
                  R"({"id":"4","datetime":0},{"id":"5","datetime":1586782619}]})");
    const QByteArray page = html();
    const QString day = QStringLiteral("2020-04-12 12:56");
    EXPECT_EQ(column_texts(&table, 14),
              QStringList({QString(), day, day, day, QStringLiteral("2020-04-13 12:56")}));
    EXPECT_EQ(page.count("<td>2020-04-12 12:56</td></tr>"), 3) << "on paper too";
    server.answer(R"({"list":[{"id":"6","datetime":0}]})");
    model.get_page(QString(), 2, 20);
    EXPECT_EQ(column_texts(&table, 14), QStringList{QString()}) << "not over pages";
}

TEST_F(stock_model, times_are_those_of_the_users_zone) {
    const scoped_time_zone shanghai("Asia/Shanghai");
    load();
    EXPECT_EQ(cell_text(&table, 0, 14), QStringLiteral("2020-04-12 20:56"));
}

TEST_F(stock_model, page_headers_and_look) {
    table.hideColumn(0);
    load();
    ASSERT_EQ(table.columnCount(), 15);
    const char* const headers[] = {"id",     "仓库",     "仓库id",     "存储位置", "货品名称",
                                   "货品id", "货品类别", "货品类别id", "货品编码", "规格",
                                   "价格",   "数量",     "总价",       "备注",     "时间"};
    for (int i = 0; i < 15; ++i) {
        EXPECT_EQ(table.horizontalHeaderItem(i)->text(), QString::fromUtf8(headers[i]));
        EXPECT_EQ(table.isColumnHidden(i), i == 0 || i == 2 || i == 5 || i == 7) << i;
        EXPECT_EQ(table.horizontalHeader()->sectionResizeMode(i),
                  i == 0 ? QHeaderView::ResizeToContents : QHeaderView::Stretch);
    }
    EXPECT_EQ(table.selectionBehavior(), QAbstractItemView::SelectRows);
    EXPECT_EQ(table.editTriggers(), QAbstractItemView::NoEditTriggers);
    EXPECT_EQ(table.contextMenuPolicy(), Qt::CustomContextMenu);
    EXPECT_TRUE(table.verticalHeader()->isHidden());
}

TEST_F(stock_model, every_cell_is_a_plain_item) {
    load();
    for (int row = 0; row < 2; ++row)
        for (int column = 0; column < 15; ++column) {
            ASSERT_NE(table.item(row, column), nullptr) << row << ' ' << column;
            EXPECT_EQ(table.cellWidget(row, column), nullptr);
        }
}

TEST_F(stock_model, the_print_byte_for_byte) {
    server.answer(two_rows);
    EXPECT_EQ(html(),
              QByteArray(list_head) +
                  "<tr><td>主仓</td><td>A1</td><td>扳手</td><td>工具</td><td>SP-1</td><td>9件</td>"
                  "<td>12.5</td><td>4</td><td>50.000</td><td>r<b>&</td><td>2020-04-12 12:56</td></tr>"
                  "<tr><td></td><td></td><td>锤</td><td></td><td></td><td></td><td></td><td></td><td></td>"
                  "<td></td><td>2020-04-12 12:56</td></tr></table>");
}

TEST_F(stock_model, a_page_without_rows_prints_title_and_headers) {
    for (const char* body : {R"({"list":[]})", "", "[]", "7", "{\"list\":", "<html>"}) {
        load();
        server.answer(body);
        EXPECT_EQ(html(), QByteArray(list_head) + "</table>") << body;
        EXPECT_EQ(table.rowCount(), 0) << body;
        EXPECT_EQ(table.columnCount(), 15);
    }
}

TEST_F(stock_model, a_failed_page_counts_zero) {
    for (const char* body : {"", "[]", "7", "{\"list\":"}) {
        const auto info = load(body);
        EXPECT_EQ(info.value(QStringLiteral("page_count")).toInt(), 0) << body;
        EXPECT_EQ(info.value(QStringLiteral("total")).toInt(), 0) << body;
    }
}

TEST_F(stock_model, add_sends_seven_keys_and_gives_the_answer_as_it_came) {
    server.answer("12 甲");
    EXPECT_EQ(model.do_add(full_stock()), QStringLiteral("12 甲"));
    EXPECT_EQ(server.last().path, "wms_stock_detail/do_add");
    EXPECT_EQ(server.last().body,
              QByteArray("product=7&price=12.50&amount=4&total=50.00&warehouse=2&remark=a&b&place=A 1"));
}

TEST_F(stock_model, add_sends_empty_values_too) {
    model.do_add(struct_stock());
    EXPECT_EQ(server.last().body, "product=&price=0.00&amount=0&total=0.00&warehouse=&remark=&place=");
}

TEST_F(stock_model, lock_gives_the_answer_as_it_came) {
    for (const char* body : {"77", "", "0", "7", "no lock", R"({"http_state":0})"}) {
        server.answer(body);
        EXPECT_EQ(model.lock_stock(full_stock(), lock_for_outstore), QString::fromUtf8(body)) << body;
    }
    EXPECT_EQ(server.last().path, "wms_stock_detail/lock_stock");
    EXPECT_EQ(server.last().body, "lock_type=3&id=31&amount=4&total=50");
}

TEST_F(stock_model, a_stocktaking_locks_the_row_as_a_whole) {
    struct_stock s;
    s.id = QStringLiteral("31");
    EXPECT_EQ(locked(s, lock_for_taking), "lock_type=2&id=31");
    EXPECT_EQ(lock_for_allot, 1);
}

TEST_F(stock_model, lock_sends_the_id_also_when_empty) {
    EXPECT_EQ(locked(struct_stock(), 1), "lock_type=1&id=");
}

struct total_row {
    double total;
    const char* locked;
    const char* added;
};
class stock_total : public stock_model, public testing::WithParamInterface<total_row> {};

TEST_P(stock_total, is_locked_with_six_digits_and_added_with_two_decimals) {
    struct_stock s;
    s.total = GetParam().total;
    EXPECT_EQ(locked(s, 3), QByteArray("lock_type=3&id=") + GetParam().locked);
    model.do_add(s);
    EXPECT_EQ(server.last().body, "product=&price=0.00&amount=0&total=" + QByteArray(GetParam().added) +
                                      "&warehouse=&remark=&place=");
}

INSTANTIATE_TEST_SUITE_P(totals, stock_total,
                         testing::Values(total_row{0, "", "0.00"}, total_row{1e-13, "", "0.00"},
                                         total_row{1e-12, "", "0.00"}, total_row{-1e-12, "", "-0.00"},
                                         total_row{2e-12, "&total=2e-12", "0.00"},
                                         total_row{1234567.5, "&total=1.23457e+06", "1234567.50"},
                                         total_row{123456, "&total=123456", "123456.00"},
                                         total_row{12345.67, "&total=12345.7", "12345.67"},
                                         total_row{0.015625, "&total=0.015625", "0.02"},
                                         total_row{-2.5, "&total=-2.5", "-2.50"}));

TEST_F(stock_model, a_lock_sends_an_amount_that_is_not_0) {
    struct_stock s;
    s.id = QStringLiteral("9");
    s.amount = -1;
    EXPECT_EQ(locked(s, 1), "lock_type=1&id=9&amount=-1");
    s.amount = 2147483647;
    EXPECT_EQ(locked(s, 1), "lock_type=1&id=9&amount=2147483647");
}

TEST_F(stock_model, unlock_reads_the_count_form) {
    const struct {
        const char* body;
        bool done;
    } rows[] = {{"1", true}, {"2", true},  {"0", false},  {"-1", false},
                {"", false}, {"x", false}, {"1x", false}, {R"({"http_state":1})", false}};
    for (const auto& r : rows) {
        server.answer(r.body);
        EXPECT_EQ(model.unlock_stock(QStringLiteral("a7&b"), 3), r.done) << r.body;
        EXPECT_EQ(server.last().path, "wms_stock_detail/unlock_stock");
        EXPECT_EQ(server.last().body, "locked_id=a7&b&lock_type=3");
    }
}

TEST_F(stock_model, locks_need_no_table) {
    model_stock_detail locks;
    server.answer("5");
    EXPECT_EQ(locks.lock_stock(full_stock(), 1), QStringLiteral("5"));
    server.answer("1");
    EXPECT_TRUE(locks.unlock_stock(QStringLiteral("5"), 1));
    EXPECT_EQ(server.last().body, "locked_id=5&lock_type=1") << "each body begins anew";
}

TEST_F(stock_model, a_row_reads_back_as_its_record) {
    load();
    const auto s = read_record(&table, 0, model_stock_detail::columns());
    EXPECT_EQ(s.id, QStringLiteral("1"));
    EXPECT_EQ(s.warehouse_name, QStringLiteral("主仓"));
    EXPECT_EQ(s.warehouse, QStringLiteral("2"));
    EXPECT_EQ(s.place, QStringLiteral("A1"));
    EXPECT_EQ(s.product_name, QStringLiteral("扳手"));
    EXPECT_EQ(s.product, QStringLiteral("7"));
    EXPECT_EQ(s.category_name, QStringLiteral("工具"));
    EXPECT_EQ(s.category, QStringLiteral("3"));
    EXPECT_EQ(s.code, QStringLiteral("SP-1"));
    EXPECT_EQ(s.spec, QStringLiteral("9件"));
    EXPECT_DOUBLE_EQ(s.price, 12.5);
    EXPECT_EQ(s.amount, 4);
    EXPECT_DOUBLE_EQ(s.total, 50);
    EXPECT_EQ(s.remark, QStringLiteral("r<b>&"));
    EXPECT_EQ(s.date_start, 0);
    EXPECT_EQ(s.date_end, 0);
}

TEST_F(stock_model, search_arguments_begin_with_an_ampersand) {
    EXPECT_EQ(model_stock_detail::search_args(struct_stock()), QString());
    EXPECT_EQ(model_stock_detail::search_args(full_stock()),
              QStringLiteral("&date_start=1&date_end=2&warehouse=2&product_name=扳手&spec=9件&code=SP-1"
                             "&place=A 1&remark=a&b"));
    struct_stock before;
    before.date_start = -1;
    EXPECT_EQ(model_stock_detail::search_args(before), QStringLiteral("&date_start=-1"));
}
