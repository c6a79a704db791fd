#include "model/model_product.h"

#include <QHeaderView>
#include <QSignalSpy>
#include <QTableWidget>

#include "support/client_fixture.h"
#include "support/pages.h"
#include "support/screen.h"
#include "support/time_zone.h"

namespace {

struct_product full_product() {
    struct_product p;
    p.id = QStringLiteral("31");
    p.name = QStringLiteral("扳手");
    p.code = QStringLiteral("SP-1");
    p.category = QStringLiteral("3");
    p.category_name = QStringLiteral("工具");
    p.price = 12.5;
    p.spec = QStringLiteral("9件");
    return p;
}

const char* const two_products =
    R"({"list":[{"id":"1","category_name":"c","name":"n","code":"o","spec":"s","price":"3.456","category":"4",)"
    R"("datetime":1586696219},)"
    R"({"id":2,"category_name":5,"name":"second","price":1e3,"category":7,"datetime":"0"}],)"
    R"("total":"42","page_count":3,"page_num":"1"})";

QStringList words(std::initializer_list<const char*> texts) {
    QStringList result;
    for (const char* text : texts)
        result.append(QString::fromUtf8(text));
    return result;
}

} // namespace

class product_model : public client_test {
protected:
    product_model() : model(&table) {}
    void load() {
        server.answer(two_products);
        model.get_page(QString(), 1, 20);
    }
    QByteArray added(const struct_product& product) {
        model.do_add(product);
        return server.last().body;
    }
    QByteArray edited(const struct_product& product) {
        model.do_edit(product);
        return server.last().body;
    }

    QTableWidget table;
    model_product model;
    const scoped_time_zone zone{"UTC"};
};

TEST_F(product_model, answers_to_the_interfaces_name) {
    EXPECT_NE(model.qt_metacast("model_interface"), nullptr);
    EXPECT_NE(QMetaType::type("struct_product"), 0);
}

TEST_F(product_model, its_signal_is_declared_and_never_emitted) {
    EXPECT_GE(model.metaObject()->indexOfSignal("signal_product_to_edit(struct_product)"), 0);
    const QSignalSpy to_edit(&model, &model_product::signal_product_to_edit);
    load();
    model.add_row(full_product());
    table.setCurrentCell(1, 1);
    server.answer("1");
    model.do_edit(full_product());
    model.do_add(full_product());
    EXPECT_EQ(to_edit.size(), 0);
}

TEST_F(product_model, page_request) {
    model.get_page(QStringLiteral("&category=0&name=甲"), 3, 20);
    EXPECT_EQ(server.last().path, "wms_product/get_page");
    EXPECT_EQ(server.last().body, QByteArray("&category=0&name=甲&page_num=3&page_size=20"));
    model.get_page(QString(), -1, 10);
    EXPECT_EQ(server.last().body, "&page_num=-1&page_size=10");
}

TEST_F(product_model, page_information_is_text_whatever_its_form) {
    server.answer(two_products);
    const auto info = model.get_page(QString(), 1, 20);
    EXPECT_EQ(info.value(QStringLiteral("total")).toString(), QStringLiteral("42"));
    EXPECT_EQ(info.value(QStringLiteral("page_count")).toString(), QStringLiteral("3"));
    EXPECT_EQ(info.value(QStringLiteral("page_num")).toString(), QStringLiteral("1"));
}

TEST_F(product_model, page_cells) {
    load();
    ASSERT_EQ(table.rowCount(), 2);
    EXPECT_EQ(row_texts(&table, 0), words({"1", "c", "n", "o", "s", "3.46", "4", "2020-04-12 12:56"}));
    EXPECT_EQ(row_texts(&table, 1), words({"", "", "second", "", "", "1000.00", "", ""}))
        << "numbers are no text, but a price may be either";
}

TEST_F(product_model, page_headers_and_look) {
    load();
    ASSERT_EQ(table.columnCount(), 8);
    const QStringList headers = words({"id", "类别", "名称", "编码", "规格", "参考价", "类别id", "添加时间"});
    for (int i = 0; i < 8; ++i) {
        EXPECT_EQ(table.horizontalHeaderItem(i)->text(), headers[i]);
        EXPECT_EQ(table.isColumnHidden(i), i == 0 || i == 6) << i;
        EXPECT_EQ(table.horizontalHeader()->sectionResizeMode(i),
                  i == 0 ? QHeaderView::ResizeToContents : QHeaderView::Stretch);
    }
    EXPECT_EQ(table.selectionBehavior(), QAbstractItemView::SelectRows);
    EXPECT_EQ(table.editTriggers(), QAbstractItemView::NoEditTriggers);
    EXPECT_EQ(table.contextMenuPolicy(), Qt::CustomContextMenu);
    EXPECT_TRUE(table.verticalHeader()->isHidden());
}

TEST_F(product_model, a_failed_page_clears_the_table_and_counts_zero) {
    for (const char* body : {"", "[]", "7", "{\"total\":", "<html>"}) {
        load();
        server.answer(body);
        const auto info = model.get_page(QString(), 1, 20);
        EXPECT_EQ(table.rowCount(), 0) << body;
        EXPECT_EQ(table.columnCount(), 8);
        EXPECT_EQ(info.value(QStringLiteral("page_count")).toInt(), 0);
    }
}

TEST_F(product_model, add_body) {
    server.answer(R"({"http_state":1,"insert_id":"5","datetime":9})");
    const QJsonObject answer = model.do_add(full_product());
    EXPECT_EQ(server.last().path, "wms_product/do_add");
    EXPECT_EQ(server.last().body, QByteArray("name=扳手&code=SP-1&spec=9件&category=3&price=12.50"));
    EXPECT_EQ(answer.value(QLatin1String("insert_id")).toString(), QStringLiteral("5"));
}

TEST_F(product_model, empty_values_are_left_out_the_first_ones_too) {
    EXPECT_EQ(added(struct_product()), "");
    EXPECT_EQ(edited(struct_product()), "");
    struct_product p = full_product();
    p.name.clear();
    p.id.clear();
    EXPECT_EQ(added(p), QByteArray("&code=SP-1&spec=9件&category=3&price=12.50"));
    EXPECT_EQ(edited(p), QByteArray("&code=SP-1&spec=9件&category=3&price=12.50"));
    p = full_product();
    p.code.clear();
    p.spec.clear();
    EXPECT_EQ(edited(p), QByteArray("id=31&name=扳手&category=3&price=12.50"));
}

TEST_F(product_model, edit_body) {
    EXPECT_EQ(edited(full_product()),
              QByteArray("id=31&name=扳手&code=SP-1&spec=9件&category=3&price=12.50"));
    EXPECT_EQ(server.last().path, "wms_product/do_edit");
}

TEST_F(product_model, values_go_out_unescaped) {
    struct_product p;
    p.name = QStringLiteral("A&B=C+D%");
    EXPECT_EQ(added(p), "name=A&B=C+D%");
}

struct price_row {
    double price;
    const char* sent;
};
class product_price : public product_model, public testing::WithParamInterface<price_row> {};

TEST_P(product_price, goes_out_with_two_decimals_unless_it_is_0) {
    struct_product p;
    p.id = p.name = QStringLiteral("1");
    p.price = GetParam().price;
    EXPECT_EQ(added(p), QByteArray("name=1") + GetParam().sent);
    EXPECT_EQ(edited(p), QByteArray("id=1&name=1") + GetParam().sent);
}

INSTANTIATE_TEST_SUITE_P(prices, product_price,
                         testing::Values(price_row{0, ""}, price_row{-0.0, ""}, price_row{1e-13, ""},
                                         price_row{1e-12, ""}, price_row{2e-12, "&price=0.00"},
                                         price_row{-2.5, "&price=-2.50"}, price_row{0.01, "&price=0.01"},
                                         price_row{12.346, "&price=12.35"}, price_row{7, "&price=7.00"},
                                         price_row{99999999, "&price=99999999.00"},
                                         price_row{1234567.891, "&price=1234567.89"}));

TEST_F(product_model, edit_patches_every_cell_of_the_current_row) {
    load();
    table.setCurrentCell(1, 2);
    struct_product p = full_product();
    p.datetime_text = QStringLiteral("then");
    p.datetime = 1586696219;
    server.answer("1");
    model.do_edit(p);
    EXPECT_EQ(row_texts(&table, 1), words({"31", "工具", "扳手", "SP-1", "9件", "12.50", "3", "then"}));
    EXPECT_EQ(row_texts(&table, 0), words({"1", "c", "n", "o", "s", "3.46", "4", "2020-04-12 12:56"}))
        << "the first row is no other's business here";
}

TEST_F(product_model, an_edit_down_to_0_is_shown_and_not_sent) {
    load();
    table.setCurrentCell(0, 1);
    struct_product p = full_product();
    p.price = 0;
    server.answer("1");
    EXPECT_EQ(edited(p), QByteArray("id=31&name=扳手&code=SP-1&spec=9件&category=3"));
    EXPECT_EQ(cell_text(&table, 0, 5), QStringLiteral("0.00"));
}

TEST_F(product_model, a_failed_edit_leaves_the_row_unchanged) {
    load();
    table.setCurrentCell(0, 1);
    const QStringList before = row_texts(&table, 0);
    for (const char* body : {"0", "-1", "", "no", R"({"http_state":1})"}) {
        server.answer(body);
        model.do_edit(full_product());
        EXPECT_EQ(row_texts(&table, 0), before) << body;
    }
}

TEST_F(product_model, an_edit_without_a_current_row_does_no_harm) {
    load();
    table.setCurrentCell(-1, -1);
    server.answer("1");
    model.do_edit(full_product());
    EXPECT_EQ(column_texts(&table, 2), words({"n", "second"}));
}

TEST_F(product_model, delete_passes_the_id_as_it_is_and_reads_the_count_form) {
    const struct {
        const char* body;
        bool done;
    } rows[] = {{"1", true}, {"2", true}, {"0", false}, {"-1", false}, {"", false}, {"x", false}};
    for (const auto& r : rows) {
        server.answer(r.body);
        EXPECT_EQ(model.do_delete(QStringLiteral("007x")), r.done) << r.body;
        EXPECT_EQ(server.last().path, "wms_product/do_delete");
        EXPECT_EQ(server.last().body, "id=007x");
    }
}

TEST_F(product_model, add_row_goes_on_top) {
    load();
    struct_product p = full_product();
    p.datetime = 1586696219;
    p.datetime_text = QStringLiteral("not this");
    model.add_row(p);
    ASSERT_EQ(table.rowCount(), 3);
    EXPECT_EQ(row_texts(&table, 0),
              words({"31", "工具", "扳手", "SP-1", "9件", "12.50", "3", "2020-04-12 12:56"}));
    p.datetime = 0;
    model.add_row(p);
    EXPECT_TRUE(cell_text(&table, 0, 7).isEmpty());
}

TEST_F(product_model, a_row_reads_back_as_its_record) {
    load();
    const auto p = read_record(&table, 0, model_product::columns());
    EXPECT_EQ(p.id, QStringLiteral("1"));
    EXPECT_EQ(p.category_name, QStringLiteral("c"));
    EXPECT_EQ(p.name, QStringLiteral("n"));
    EXPECT_EQ(p.code, QStringLiteral("o"));
    EXPECT_EQ(p.spec, QStringLiteral("s"));
    EXPECT_DOUBLE_EQ(p.price, 3.46);
    EXPECT_EQ(p.category, QStringLiteral("4"));
    EXPECT_EQ(p.datetime_text, QStringLiteral("2020-04-12 12:56"));
    EXPECT_EQ(p.datetime, 0);
}

TEST_F(product_model, search_arguments_begin_with_an_ampersand) {
    EXPECT_EQ(model_product::search_args(struct_product()), QString());
    EXPECT_EQ(model_product::search_args(full_product()),
              QStringLiteral("&category=3&name=扳手&code=SP-1&spec=9件"));
    struct_product words;
    words.category = QStringLiteral("0");
    EXPECT_EQ(model_product::search_args(words), QStringLiteral("&category=0"));
}
