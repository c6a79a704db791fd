#include <QComboBox>
#include <QHeaderView>
#include <QTableWidget>

#include "model/model_warehouse.h"
#include "support/client_fixture.h"
#include "support/screen.h"
#include "support/time_zone.h"

namespace {

struct_warehouse full_warehouse() {
    struct_warehouse w;
    w.id = QStringLiteral("31");
    w.name = QStringLiteral("东仓");
    w.phone = QStringLiteral("010-1");
    w.address = QStringLiteral("路1号");
    w.mobile = QStringLiteral("13800000000");
    w.keeper = QStringLiteral("8");
    w.keeper_name = QStringLiteral("李强");
    w.remark = QStringLiteral("注");
    w.isdefault = 1;
    return w;
}

const char* const three_warehouses =
    "{\"list\":[{\"id\":\"1\",\"name\":\"n\",\"phone\":\"p\",\"isdefault\":\"1\",\"address\":\"a\","
    "\"keeper_name\":\"k\",\"mobile\":\"m\",\"remark\":\"r\",\"keeper\":\"4\",\"datetime\":1586696219},"
    "{\"id\":2,\"name\":\"second\",\"isdefault\":1,\"keeper\":4,\"datetime\":\"0\"},"
    "{\"id\":\"3\",\"name\":\"third\",\"isdefault\":\"0\"}],"
    "\"total\":\"42\",\"page_count\":3,\"page_num\":\"1\"}";

} // namespace

class warehouse_model : public client_test {
protected:
    warehouse_model() : model(&table) {}
    void load() {
        server.answer(three_warehouses);
        info = model.get_page(QString(), 1, 20);
    }

    QTableWidget table;
    model_warehouse model;
    QHash<QString, QVariant> info;
    const scoped_time_zone zone{"UTC"};
};

TEST_F(warehouse_model, answers_to_the_interfaces_name) {
    EXPECT_EQ(qobject_cast<model_interface*>(static_cast<QObject*>(&model)),
              static_cast<model_interface*>(&model));
}

TEST_F(warehouse_model, page_request_and_information) {
    model.get_page(QStringLiteral("name=东"), 3, 20);
    EXPECT_EQ(server.last().path, "wms_warehouse/get_page");
    EXPECT_EQ(server.last().body, QByteArray("name=东&page_num=3&page_size=20"));
    load();
    EXPECT_EQ(server.last().body, "&page_num=1&page_size=20");
    EXPECT_EQ(info.value(QStringLiteral("total")).toString(), QStringLiteral("42"));
    EXPECT_EQ(info.value(QStringLiteral("page_count")).toString(), QStringLiteral("3"));
    EXPECT_EQ(info.value(QStringLiteral("page_num")).toString(), QStringLiteral("1"));
}

TEST_F(warehouse_model, page_cells) {
    load();
    ASSERT_EQ(table.rowCount(), 3);
    expect_cells(&table, 0, {"1", "n", "p", "a", "k", "m", "默认", "r", "4", "1", "2020-04-12 12:56"});
    // A number is good enough for the word and not for the value behind it.
    expect_cells(&table, 1, {"", "second", "", "", "", "", "默认", "", "", "", ""});
    expect_cells(&table, 2, {"3", "third", "", "", "", "", "", "", "", "0", ""});
}

TEST_F(warehouse_model, page_headers_and_look) {
    model.get_page(QString(), 1, 20);
    const char* const headers[] = {"id",   "名称", "电话",     "地址",   "仓管员",  "手机",
                                   "默认", "备注", "仓管员id", "默认值", "添加时间"};
    ASSERT_EQ(table.columnCount(), 11);
    for (int i = 0; i < 11; ++i) {
        EXPECT_EQ(table.horizontalHeaderItem(i)->text(), QString::fromUtf8(headers[i]));
        EXPECT_EQ(table.isColumnHidden(i), i == 0 || i == 8 || i == 9) << i;
        EXPECT_EQ(table.horizontalHeader()->sectionResizeMode(i),
                  i == 0 ? QHeaderView::ResizeToContents : QHeaderView::Stretch);
    }
}

TEST_F(warehouse_model, a_failed_page_clears_the_table) {
    load();
    for (const char* body : {"", "[]", "7", "{\"total\":", "<html>"}) {
        server.answer(body);
        const auto failed = model.get_page(QString(), 1, 20);
        EXPECT_EQ(table.rowCount(), 0) << body;
        EXPECT_EQ(table.columnCount(), 11);
        EXPECT_EQ(failed.value(QStringLiteral("page_count")).toInt(), 0);
    }
}

TEST_F(warehouse_model, add_leaves_out_what_is_empty_but_for_the_flag) {
    model.do_add(full_warehouse());
    EXPECT_EQ(server.last().path, "wms_warehouse/do_add");
    EXPECT_EQ(server.last().body, QByteArray("name=东仓&phone=010-1&keeper=8&address=路1号"
                                             "&mobile=13800000000&isdefault=1&remark=注"));
    struct_warehouse w;
    model.do_add(w);
    EXPECT_EQ(server.last().body, "&isdefault=0");
    w.name = QStringLiteral("A&B=C+D%");
    w.keeper = QStringLiteral("8");
    w.keeper_name = QStringLiteral("never sent");
    model.do_add(w);
    EXPECT_EQ(server.last().body, "name=A&B=C+D%&keeper=8&isdefault=0");
}

TEST_F(warehouse_model, edit_sends_every_key) {
    model.do_edit(full_warehouse());
    EXPECT_EQ(server.last().path, "wms_warehouse/do_edit");
    EXPECT_EQ(server.last().body, QByteArray("id=31&name=东仓&phone=010-1&keeper=8&address=路1号"
                                             "&mobile=13800000000&isdefault=1&remark=注"));
    model.do_edit(struct_warehouse());
    EXPECT_EQ(server.last().body, "id=&name=&phone=&keeper=&address=&mobile=&isdefault=0&remark=");
}

TEST_F(warehouse_model, edit_patches_all_cells_of_the_current_row) {
    load();
    table.setCurrentCell(2, 1);
    struct_warehouse w = full_warehouse();
    w.datetime_text = QStringLiteral("then");
    server.answer("1");
    model.do_edit(w);
    expect_cells(&table, 2,
                 {"31", "东仓", "010-1", "路1号", "李强", "13800000000", "默认", "注", "8", "1", "then"});
    // The client does not know that there is one default: two rows say so until the next load.
    EXPECT_EQ(cell_text(&table, 0, 6), QStringLiteral("默认"));
    EXPECT_EQ(cell_text(&table, 0, 10), QStringLiteral("2020-04-12 12:56"));
    w.isdefault = 0;
    server.answer("1");
    model.do_edit(w);
    EXPECT_TRUE(cell_text(&table, 2, 6).isEmpty());
    EXPECT_EQ(cell_text(&table, 2, 9), QStringLiteral("0"));
}

TEST_F(warehouse_model, a_failed_edit_leaves_the_row_unchanged) {
    load();
    table.setCurrentCell(0, 1);
    for (const char* body : {"0", "-1", "", "no", "{\"http_state\":1}"}) {
        server.answer(body);
        model.do_edit(full_warehouse());
        EXPECT_EQ(cell_text(&table, 0, 1), QStringLiteral("n")) << body;
    }
}

TEST_F(warehouse_model, a_row_comes_back_as_a_record) {
    load();
    const struct_warehouse w = read_record(&table, 0, model_warehouse::columns());
    EXPECT_EQ(w.id, QStringLiteral("1"));
    EXPECT_EQ(w.name, QStringLiteral("n"));
    EXPECT_EQ(w.phone, QStringLiteral("p"));
    EXPECT_EQ(w.address, QStringLiteral("a"));
    EXPECT_EQ(w.keeper_name, QStringLiteral("k"));
    EXPECT_EQ(w.mobile, QStringLiteral("m"));
    EXPECT_EQ(w.remark, QStringLiteral("r"));
    EXPECT_EQ(w.keeper, QStringLiteral("4"));
    EXPECT_EQ(w.isdefault, 1);
    EXPECT_EQ(w.datetime_text, QStringLiteral("2020-04-12 12:56"));
}

TEST_F(warehouse_model, delete_takes_text_and_reads_a_count) {
    const struct {
        const char* body;
        bool done;
    } rows[] = {{"1", true},   {"2", true}, {" 1 ", true}, {"0", false},
                {"-1", false}, {"", false}, {"x", false}};
    for (const auto& r : rows) {
        server.answer(r.body);
        EXPECT_EQ(model.do_delete(QStringLiteral("012")), r.done) << r.body;
        EXPECT_EQ(server.last().path, "wms_warehouse/do_delete");
        EXPECT_EQ(server.last().body, "id=012");
    }
}

TEST_F(warehouse_model, add_row_goes_on_top) {
    load();
    table.setCurrentCell(0, 1);
    struct_warehouse w = full_warehouse();
    w.datetime = 1586696219;
    model.add_row(w);
    ASSERT_EQ(table.rowCount(), 4);
    expect_cells(
        &table, 0,
        {"31", "东仓", "010-1", "路1号", "李强", "13800000000", "默认", "注", "8", "1", "2020-04-12 12:56"});
    EXPECT_EQ(table.currentRow(), 1) << "the new row does not become the current one";
}

TEST_F(warehouse_model, search_arguments) {
    EXPECT_TRUE(model_warehouse::search_args(struct_warehouse()).isEmpty());
    EXPECT_EQ(model_warehouse::search_args(full_warehouse()),
              QStringLiteral("name=东仓&phone=010-1&keeper=8&mobile=13800000000"));
    struct_warehouse words;
    words.keeper = QStringLiteral("8");
    EXPECT_EQ(model_warehouse::search_args(words), QStringLiteral("&keeper=8"));
}

class warehouse_options : public client_test {
protected:
    warehouse_options() { combo.addItem(QStringLiteral("old"), QStringLiteral("x")); }
    void fill(int option_mode, int default_mode, const char* answer) {
        server.answer(answer);
        model_warehouse(option_mode).get_option(&combo, default_mode);
    }
    void fill_with_stat(int option_mode, const char* answer) {
        server.answer(answer);
        model_warehouse(option_mode).get_option_with_stat(&combo);
    }
    QComboBox combo;
};

const char* const two_options =
    "[{\"id\":\"4\",\"name\":\"东仓\",\"isdefault\":\"0\"},"
    "{\"id\":\"5\",\"name\":\"西仓\",\"isdefault\":\"1\"}]";

TEST_F(warehouse_options, entries) {
    fill(3, 2, two_options);
    EXPECT_EQ(server.last().method, "GET");
    EXPECT_EQ(server.last().path, "wms_warehouse/get_option");
    EXPECT_TRUE(server.last().body.isEmpty());
    ASSERT_EQ(combo.count(), 3);
    const char* const texts[] = {"【选择仓库】", "东仓", "西仓"};
    const char* const ids[] = {"", "4", "5"};
    for (int i = 0; i < 3; ++i) {
        EXPECT_EQ(combo.itemText(i), QString::fromUtf8(texts[i]));
        EXPECT_EQ(combo.itemData(i).type(), QVariant::String) << i;
        EXPECT_EQ(combo.itemData(i).toString(), QLatin1String(ids[i]));
    }
    EXPECT_EQ(combo.currentIndex(), 0);
}

TEST_F(warehouse_options, the_option_mode_words_the_first_entry) {
    for (int mode : {0, 1, 2, 3, 4, 5, -1}) {
        const QString first = mode == 4 ? QStringLiteral("【全部】") : QStringLiteral("【选择仓库】");
        fill(mode, 2, "[]");
        EXPECT_EQ(combo.itemText(0), first) << mode;
        fill_with_stat(mode, "[]");
        EXPECT_EQ(combo.itemText(0), first) << mode;
    }
}

TEST_F(warehouse_options, default_mode_1_selects_the_default_warehouse) {
    fill(3, 1, two_options);
    EXPECT_EQ(combo.currentData().toString(), QStringLiteral("5"));
    fill(3, 1,
         "[{\"id\":\"4\",\"name\":\"a\",\"isdefault\":1},{\"id\":\"5\",\"name\":\"b\",\"isdefault\":0}]");
    EXPECT_EQ(combo.currentData().toString(), QStringLiteral("4"));
    for (int mode : {0, 2, 3}) {
        fill(3, mode, two_options);
        EXPECT_EQ(combo.currentIndex(), 0) << mode;
    }
}

TEST_F(warehouse_options, default_mode_1_without_a_default_leaves_the_first_entry) {
    fill(3, 1, "[{\"id\":\"4\",\"name\":\"a\",\"isdefault\":\"0\"},{\"id\":\"5\",\"name\":\"b\"}]");
    EXPECT_EQ(combo.count(), 3);
    EXPECT_EQ(combo.currentIndex(), 0);
}

TEST_F(warehouse_options, stock_stands_behind_the_name_in_whole_units) {
    fill_with_stat(3,
                   "[{\"id\":\"4\",\"name\":\"东仓\",\"sum_amount\":\"12.7\"},"
                   "{\"id\":\"5\",\"name\":\"西仓\",\"sum_amount\":12.7},"
                   "{\"id\":\"6\",\"name\":\"南仓\",\"sum_amount\":\"0\"},"
                   "{\"id\":\"7\",\"name\":\"北仓\",\"sum_amount\":99999999999},"
                   "{\"id\":\"8\",\"name\":\"新仓\"}]");
    EXPECT_EQ(server.last().method, "GET");
    EXPECT_EQ(server.last().path, "wms_warehouse/get_option_with_stat");
    const char* const texts[] = {"【选择仓库】",   "东仓\t[库存:12]",          "西仓\t[库存:12]",
                                 "南仓\t[库存:0]", "北仓\t[库存:99999999999]", "新仓\t[库存:0]"};
    ASSERT_EQ(combo.count(), 6);
    for (int i = 0; i < 6; ++i) {
        EXPECT_EQ(combo.itemText(i), QString::fromUtf8(texts[i]));
        EXPECT_EQ(combo.itemData(i).toString(), i == 0 ? QString() : QString::number(i + 3));
    }
    EXPECT_EQ(combo.currentIndex(), 0);
}

TEST_F(warehouse_options, an_answer_that_does_not_come_leaves_the_first_entry) {
    for (const char* body : {"", "[]", "7", "{}", "[", "no"}) {
        fill(4, 1, body);
        ASSERT_EQ(combo.count(), 1) << body;
        EXPECT_EQ(combo.itemText(0), QStringLiteral("【全部】"));
        EXPECT_EQ(combo.itemData(0).toString(), QString());
        fill_with_stat(4, body);
        ASSERT_EQ(combo.count(), 1) << body;
    }
}
