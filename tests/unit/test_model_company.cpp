#include <QHeaderView>
#include <QTableWidget>

#include "model/model_company.h"
#include "support/client_fixture.h"
#include "support/screen.h"
#include "support/time_zone.h"

namespace {

struct_company full_company() {
    struct_company c;
    c.id = QStringLiteral("31");
    c.name = QStringLiteral("甲公司");
    c.linkman = QStringLiteral("李");
    c.phone = QStringLiteral("010-1");
    c.mobile = QStringLiteral("13800000000");
    c.fax = QStringLiteral("f");
    c.address = QStringLiteral("路1号");
    c.remark = QStringLiteral("注");
    c.bank = QStringLiteral("行");
    c.account = QStringLiteral("62");
    c.type = 2;
    return c;
}

const char* const two_partners =
    "{\"list\":[{\"id\":\"1\",\"name\":\"n\",\"phone\":\"p\",\"linkman\":\"l\",\"mobile\":\"m\",\"fax\":"
    "\"f\","
    "\"address\":\"a\",\"bank\":\"b\",\"account\":\"c\",\"remark\":\"r\",\"type\":\"3\",\"datetime\":"
    "1586696219},"
    "{\"id\":2,\"name\":\"second\",\"type\":3,\"datetime\":\"0\"}],"
    "\"total\":42,\"page_count\":\"3\",\"page_num\":1}";

} // namespace

class company_model : public client_test {
protected:
    company_model() : model(&table) {}
    QTableWidget table;
    model_company model;
    const scoped_time_zone zone{"UTC"};
};

TEST_F(company_model, answers_to_the_interfaces_name) {
    EXPECT_EQ(qobject_cast<model_interface*>(static_cast<QObject*>(&model)),
              static_cast<model_interface*>(&model));
    EXPECT_NE(model.qt_metacast("model_interface"), nullptr);
}

TEST_F(company_model, page_request) {
    model.get_page(QStringLiteral("type=1&name=甲"), 3, 20);
    EXPECT_EQ(server.last().path, "wms_company/get_page");
    EXPECT_EQ(server.last().body, QByteArray("type=1&name=甲&page_num=3&page_size=20"));
    model.get_page(QString(), -1, 10);
    EXPECT_EQ(server.last().body, "&page_num=-1&page_size=10");
}

TEST_F(company_model, page_information_is_text_whatever_its_form) {
    server.answer(two_partners);
    const auto info = model.get_page(QString(), 1, 20);
    EXPECT_EQ(info.value(QStringLiteral("total")).toString(), QStringLiteral("42"));
    EXPECT_EQ(info.value(QStringLiteral("page_count")).toString(), QStringLiteral("3"));
    EXPECT_EQ(info.value(QStringLiteral("page_num")).toString(), QStringLiteral("1"));
    EXPECT_EQ(info.value(QStringLiteral("total")).type(), QVariant::String);
}

TEST_F(company_model, page_cells) {
    server.answer(two_partners);
    model.get_page(QString(), 1, 20);
    ASSERT_EQ(table.rowCount(), 2);
    const char* const first[] = {"1", "n", "p", "l", "m", "f", "a", "b", "c", "r", "3", "2020-04-12 12:56"};
    const char* const second[] = {"", "second", "", "", "", "", "", "", "", "", "", ""};
    for (int i = 0; i < 12; ++i) {
        EXPECT_EQ(cell_text(&table, 0, i), QLatin1String(first[i])) << i;
        EXPECT_EQ(cell_text(&table, 1, i), QLatin1String(second[i])) << i << ": numbers are no text";
    }
}

TEST_F(company_model, page_headers_and_look) {
    model.get_page(QString(), 1, 20);
    const char* const headers[] = {"id",   "名称",   "电话",     "联系人", "手机", "传真",
                                   "地址", "开户行", "银行帐号", "备注",   "类型", "添加时间"};
    ASSERT_EQ(table.columnCount(), 12);
    for (int i = 0; i < 12; ++i) {
        EXPECT_EQ(table.horizontalHeaderItem(i)->text(), QString::fromUtf8(headers[i]));
        EXPECT_EQ(table.isColumnHidden(i), i == 0 || i == 10) << i;
        EXPECT_EQ(table.horizontalHeader()->sectionResizeMode(i),
                  i == 0 ? QHeaderView::ResizeToContents : QHeaderView::Stretch);
    }
}

TEST_F(company_model, a_failed_page_clears_the_table_shows_headers_and_counts_zero) {
    server.answer(two_partners);
    model.get_page(QString(), 1, 20);
    for (const char* body : {"", "[]", "7", "{\"total\":", "<html>"}) {
        server.answer(body);
        const auto info = model.get_page(QString(), 1, 20);
        EXPECT_EQ(table.rowCount(), 0) << body;
        EXPECT_EQ(table.columnCount(), 12);
        EXPECT_EQ(info.value(QStringLiteral("page_count")).toInt(), 0);
        EXPECT_TRUE(info.value(QStringLiteral("total")).toString().isEmpty());
    }
}

TEST_F(company_model, add_body) {
    server.answer("{\"http_state\":1,\"insert_id\":\"5\",\"datetime\":9}");
    const QJsonObject answer = model.do_add(full_company());
    EXPECT_EQ(server.last().path, "wms_company/do_add");
    EXPECT_EQ(server.last().body,
              QByteArray("&type=2&name=甲公司&phone=010-1&linkman=李&mobile=13800000000&fax=f"
                         "&address=路1号&account=62&bank=行&remark=注"));
    EXPECT_EQ(answer.value(QLatin1String("insert_id")).toString(), QStringLiteral("5"));
}

TEST_F(company_model, add_leaves_empty_values_out_and_keeps_the_type) {
    model.do_add(struct_company());
    EXPECT_EQ(server.last().body, "&type=4");
}

TEST_F(company_model, a_model_builds_every_body_anew) {
    model.do_add(full_company());
    model.do_delete(QStringLiteral("9"));
    EXPECT_EQ(server.last().body, "id=9");
}

TEST_F(company_model, edit_body_has_no_type) {
    model.do_edit(full_company());
    EXPECT_EQ(server.last().path, "wms_company/do_edit");
    EXPECT_EQ(server.last().body,
              QByteArray("&id=31&name=甲公司&phone=010-1&linkman=李&mobile=13800000000&fax=f"
                         "&address=路1号&account=62&bank=行&remark=注"));
    model.do_edit(struct_company());
    EXPECT_EQ(server.last().body, "&id=");
}

TEST_F(company_model, a_value_with_an_ampersand_goes_out_unescaped) {
    struct_company c;
    c.name = QStringLiteral("A&B=C+D%");
    model.do_add(c);
    EXPECT_EQ(server.last().body, "&type=4&name=A&B=C+D%");
}

TEST_F(company_model, edit_patches_the_current_row_and_the_add_time_of_row_0) {
    server.answer(two_partners);
    model.get_page(QString(), 1, 20);
    table.setCurrentCell(1, 1);
    struct_company c = full_company();
    c.datetime_text = QStringLiteral("edited");
    server.answer("1");
    model.do_edit(c);
    const char* const shown[] = {"31",    "甲公司", "010-1", "李", "13800000000", "f",
                                 "路1号", "行",     "62",    "注", "2",           ""};
    for (int i = 0; i < 12; ++i)
        EXPECT_EQ(cell_text(&table, 1, i), QString::fromUtf8(shown[i])) << i;
    EXPECT_EQ(cell_text(&table, 0, 11), QStringLiteral("edited"));
    EXPECT_EQ(cell_text(&table, 0, 1), QStringLiteral("n"));
}

TEST_F(company_model, a_failed_edit_leaves_the_row_unchanged) {
    server.answer(two_partners);
    model.get_page(QString(), 1, 20);
    table.setCurrentCell(0, 1);
    for (const char* body : {"0", "-1", "", "no", "{\"http_state\":1}"}) {
        server.answer(body);
        model.do_edit(full_company());
        EXPECT_EQ(cell_text(&table, 0, 1), QStringLiteral("n")) << body;
        EXPECT_EQ(cell_text(&table, 0, 11), QStringLiteral("2020-04-12 12:56"));
    }
}

TEST_F(company_model, the_session_code_counts_as_a_saved_edit) {
    server.answer(two_partners);
    model.get_page(QString(), 1, 20);
    table.setCurrentCell(0, 1);
    server.answer("7");
    model.do_edit(full_company());
    EXPECT_EQ(cell_text(&table, 0, 1), QStringLiteral("甲公司"));
    EXPECT_EQ(server.last().path, "wms/check_login");
}

TEST_F(company_model, delete_reads_the_count_form) {
    const struct {
        const char* body;
        bool done;
    } rows[] = {{"1", true},   {"2", true}, {" 1 ", true}, {"0", false},
                {"-1", false}, {"", false}, {"x", false}};
    for (const auto& r : rows) {
        server.answer(r.body);
        EXPECT_EQ(model.do_delete(QStringLiteral("12")), r.done) << r.body;
        EXPECT_EQ(server.last().path, "wms_company/do_delete");
        EXPECT_EQ(server.last().body, "id=12");
    }
}

TEST_F(company_model, add_row_goes_on_top) {
    server.answer(two_partners);
    model.get_page(QString(), 1, 20);
    table.setCurrentCell(0, 1);
    struct_company c = full_company();
    c.datetime = 1586696219;
    model.add_row(c);
    ASSERT_EQ(table.rowCount(), 3);
    const char* const shown[] = {"31",    "甲公司", "010-1", "李", "13800000000", "f",
                                 "路1号", "行",     "62",    "注", "2",           "2020-04-12 12:56"};
    for (int i = 0; i < 12; ++i)
        EXPECT_EQ(cell_text(&table, 0, i), QString::fromUtf8(shown[i])) << i;
    EXPECT_EQ(table.currentRow(), 1) << "the new row does not become the current one";
    c.datetime = 0;
    model.add_row(c);
    EXPECT_TRUE(cell_text(&table, 0, 11).isEmpty());
}

TEST_F(company_model, search_arguments) {
    struct_company words;
    words.type = 3;
    EXPECT_EQ(model_company::search_args(words), QStringLiteral("type=3"));
    EXPECT_EQ(model_company::search_args(full_company()),
              QStringLiteral("type=2&name=甲公司&address=路1号&bank=行&account=62&remark=注"));
}
