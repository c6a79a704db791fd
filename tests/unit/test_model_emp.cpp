#include <QComboBox>
#include <QHeaderView>
#include <QSignalSpy>
#include <QTableWidget>

#include "model/answers.h"
#include "model/model_emp.h"
#include "support/client_fixture.h"
#include "support/screen.h"
#include "support/time_zone.h"

namespace {

struct_emp full_emp() {
    struct_emp e;
    e.id = QStringLiteral("31");
    e.name = QStringLiteral("李强");
    e.mobile = QStringLiteral("13800000000");
    e.address = QStringLiteral("路1号");
    e.idnum = QStringLiteral("110101199001011237");
    e.jobnum = QStringLiteral("A7");
    e.remark = QStringLiteral("注");
    e.isdefault = 1;
    e.dimission = 2;
    return e;
}

const char* const full_body =
    "name=李强&jobnum=A7&mobile=13800000000&address=路1号"
    "&idnum=110101199001011237&remark=注&isdefault=1&dimission=2";

const char* const three_emps =
    "{\"list\":[{\"id\":\"1\",\"name\":\"n\",\"idnum\":\"i\",\"jobnum\":\"j\",\"mobile\":\"m\",\"address\":"
    "\"a\",\"remark\":\"r\",\"isdefault\":\"1\",\"dimission\":\"2\",\"datetime\":1586696219},"
    "{\"id\":2,\"name\":\"second\",\"isdefault\":1,\"dimission\":1,\"datetime\":\"0\"},"
    "{\"id\":\"3\",\"name\":\"third\",\"isdefault\":\"2\",\"dimission\":\"1\"}],"
    "\"total\":42,\"page_count\":\"3\",\"page_num\":1}";

} // namespace

class emp_model : public client_test {
protected:
    emp_model() : model(&table) {}
    void load() {
        server.answer(three_emps);
        info = model.get_page(QString(), 1, 20);
    }

    QTableWidget table;
    model_emp model;
    QHash<QString, QVariant> info;
    const scoped_time_zone zone{"UTC"};
};

TEST_F(emp_model, answers_to_the_interfaces_name) {
    EXPECT_EQ(qobject_cast<model_interface*>(static_cast<QObject*>(&model)),
              static_cast<model_interface*>(&model));
}

TEST_F(emp_model, an_empty_record_says_no_with_2) {
    EXPECT_EQ(struct_emp().isdefault, 2);
    EXPECT_EQ(struct_emp().dimission, 2);
}

TEST_F(emp_model, its_signal_is_declared_and_never_emitted) {
    EXPECT_GE(model.metaObject()->indexOfSignal("signal_emp_to_edit(struct_emp)"), 0);
    const QSignalSpy to_edit(&model, &model_emp::signal_emp_to_edit);
    load();
    model.add_row(full_emp());
    table.setCurrentCell(1, 1);
    server.answer("1");
    model.do_edit(full_emp());
    model.do_add(full_emp());
    EXPECT_EQ(to_edit.size(), 0);
}

TEST_F(emp_model, page_request) {
    model.get_page(QStringLiteral("name=李"), 3, 20);
    EXPECT_EQ(server.last().path, "wms_emp/get_page");
    EXPECT_EQ(server.last().body, QByteArray("name=李&page_num=3&page_size=20"));
    model.get_page(QString(), -1, 10);
    EXPECT_EQ(server.last().body, "&page_num=-1&page_size=10");
}

TEST_F(emp_model, page_information) {
    load();
    EXPECT_EQ(info.value(QStringLiteral("total")).toString(), QStringLiteral("42"));
    EXPECT_EQ(info.value(QStringLiteral("page_count")).toString(), QStringLiteral("3"));
    EXPECT_EQ(info.value(QStringLiteral("page_num")).toString(), QStringLiteral("1"));
}

TEST_F(emp_model, page_cells) {
    load();
    ASSERT_EQ(table.rowCount(), 3);
    expect_cells(&table, 0, {"1", "n", "i", "j", "m", "a", "r", "1", "2", "是", "", "2020-04-12 12:56"});
    // A number is good enough for the word and not for the value behind it.
    expect_cells(&table, 1, {"", "second", "", "", "", "", "", "", "", "是", "是", ""});
    expect_cells(&table, 2, {"3", "third", "", "", "", "", "", "2", "1", "", "是", ""});
}

TEST_F(emp_model, page_headers_and_look) {
    model.get_page(QString(), 1, 20);
    const char* const headers[] = {"id",   "姓名",     "身份证",   "工号", "手机", "地址",
                                   "备注", "默认数值", "离职数值", "默认", "离职", "添加时间"};
    ASSERT_EQ(table.columnCount(), 12);
    for (int i = 0; i < 12; ++i) {
        EXPECT_EQ(table.horizontalHeaderItem(i)->text(), QString::fromUtf8(headers[i]));
        EXPECT_EQ(table.isColumnHidden(i), i == 0 || i == 7 || i == 8) << i;
        EXPECT_EQ(table.horizontalHeader()->sectionResizeMode(i),
                  i == 0 ? QHeaderView::ResizeToContents : QHeaderView::Stretch);
    }
}

TEST_F(emp_model, a_failed_page_clears_the_table) {
    load();
    for (const char* body : {"", "[]", "7", "{\"total\":", "<html>"}) {
        server.answer(body);
        const auto failed = model.get_page(QString(), 1, 20);
        EXPECT_EQ(table.rowCount(), 0) << body;
        EXPECT_EQ(table.columnCount(), 12);
        EXPECT_EQ(failed.value(QStringLiteral("page_count")).toInt(), 0);
    }
}

TEST_F(emp_model, add_sends_every_key) {
    model.do_add(full_emp());
    EXPECT_EQ(server.last().path, "wms_emp/do_add");
    EXPECT_EQ(server.last().body, QByteArray(full_body));
    model.do_add(struct_emp());
    EXPECT_EQ(server.last().body, "name=&jobnum=&mobile=&address=&idnum=&remark=&isdefault=2&dimission=2");
}

TEST_F(emp_model, edit_sends_every_key) {
    model.do_edit(full_emp());
    EXPECT_EQ(server.last().path, "wms_emp/do_edit");
    EXPECT_EQ(server.last().body, QByteArray("id=31&") + full_body);
    model.do_edit(struct_emp());
    EXPECT_EQ(server.last().body,
              "id=&name=&jobnum=&mobile=&address=&idnum=&remark=&isdefault=2&dimission=2");
}

TEST_F(emp_model, the_answer_to_an_addition) {
    const struct {
        const char* body;
        bool taken;
    } rows[] = {{"{\"http_state\":1,\"insert_id\":\"5\",\"datetime\":9}", true},
                {"{\"http_state\":\"1\",\"insert_id\":\"5\",\"datetime\":\"9\"}", true},
                {"{\"http_state\":0}", false},
                {"{\"http_state\":7}", false},
                {"[]", false},
                {"", false},
                {"7", false},
                {"no", false}};
    for (const auto& r : rows) {
        server.answer(r.body);
        struct_emp sent;
        EXPECT_EQ(take_added(sent, model.do_add(full_emp())), r.taken) << r.body;
        EXPECT_EQ(sent.id, r.taken ? QStringLiteral("5") : QString());
        EXPECT_EQ(sent.datetime, r.taken ? 9 : 0);
    }
}

TEST_F(emp_model, nothing_is_escaped) {
    struct_emp e;
    e.name = QStringLiteral("A&B=C+D%");
    model.do_add(e);
    EXPECT_TRUE(server.last().body.startsWith("name=A&B=C+D%&jobnum=&"));
}

TEST_F(emp_model, edit_patches_all_cells_of_the_current_row) {
    load();
    table.setCurrentCell(1, 1);
    struct_emp e = full_emp();
    e.datetime_text = QStringLiteral("then");
    e.dimission = 1;
    server.answer("1");
    model.do_edit(e);
    expect_cells(&table, 1,
                 {"31", "李强", "110101199001011237", "A7", "13800000000", "路1号", "注", "1", "1", "是",
                  "是", "then"});
    EXPECT_EQ(cell_text(&table, 0, 11), QStringLiteral("2020-04-12 12:56"));
    e.isdefault = e.dimission = 2;
    server.answer("2");
    model.do_edit(e);
    for (int column : {7, 8})
        EXPECT_EQ(cell_text(&table, 1, column), QStringLiteral("2"));
    for (int column : {9, 10})
        EXPECT_TRUE(cell_text(&table, 1, column).isEmpty());
}

TEST_F(emp_model, a_failed_edit_leaves_the_row_unchanged) {
    load();
    table.setCurrentCell(0, 1);
    for (const char* body : {"0", "-1", "", "no", "{\"http_state\":1}"}) {
        server.answer(body);
        model.do_edit(full_emp());
        EXPECT_EQ(cell_text(&table, 0, 1), QStringLiteral("n")) << body;
    }
}

TEST_F(emp_model, a_row_comes_back_as_a_record) {
    load();
    const struct_emp e = read_record(&table, 0, model_emp::columns());
    EXPECT_EQ(e.id, QStringLiteral("1"));
    EXPECT_EQ(e.name, QStringLiteral("n"));
    EXPECT_EQ(e.idnum, QStringLiteral("i"));
    EXPECT_EQ(e.jobnum, QStringLiteral("j"));
    EXPECT_EQ(e.mobile, QStringLiteral("m"));
    EXPECT_EQ(e.address, QStringLiteral("a"));
    EXPECT_EQ(e.remark, QStringLiteral("r"));
    EXPECT_EQ(e.isdefault, 1);
    EXPECT_EQ(e.dimission, 2);
    EXPECT_EQ(e.datetime_text, QStringLiteral("2020-04-12 12:56"));
    EXPECT_EQ(e.datetime, 0);
    EXPECT_EQ(read_record(&table, 1, model_emp::columns()).isdefault, 0) << "an empty value is no number";
}

struct count_row {
    const char* body;
    bool counts;
};
const count_row counts[] = {{"1", true},   {"2", true}, {" 1 ", true}, {"0", false},
                            {"-1", false}, {"", false}, {"x", false},  {"{}", false}};

TEST_F(emp_model, delete_takes_a_number_and_reads_a_count) {
    for (const auto& r : counts) {
        server.answer(r.body);
        EXPECT_EQ(model.do_delete(12), r.counts) << r.body;
        EXPECT_EQ(server.last().path, "wms_emp/do_delete");
        EXPECT_EQ(server.last().body, "id=12");
    }
}

struct check_row {
    const char* path;
    const char* key;
    bool (model_emp::*check)(QString, QString);
};
class emp_check : public emp_model, public testing::WithParamInterface<check_row> {};

TEST_P(emp_check, asks_with_the_own_id_when_there_is_one) {
    const check_row& row = GetParam();
    (model.*row.check)(QStringLiteral("12&3"), QString());
    EXPECT_EQ(server.last().path, row.path);
    EXPECT_EQ(server.last().body, QByteArray(row.key) + "=12&3");
    (model.*row.check)(QStringLiteral("12"), QStringLiteral("9"));
    EXPECT_EQ(server.last().body, QByteArray(row.key) + "=12&id=9");
}

TEST_P(emp_check, reads_a_count_and_takes_a_failure_for_free) {
    for (const auto& r : counts) {
        server.answer(r.body);
        EXPECT_EQ((model.*GetParam().check)(QStringLiteral("1"), QString()), r.counts) << r.body;
    }
    server.answer(scripted_answer::dropped());
    server.answer(scripted_answer::dropped());
    EXPECT_FALSE((model.*GetParam().check)(QStringLiteral("1"), QString()));
}

INSTANTIATE_TEST_SUITE_P(
    numbers, emp_check,
    testing::Values(check_row{"wms_emp/check_mobile", "mobile", &model_emp::check_mobile},
                    check_row{"wms_emp/check_jobnum_exist", "jobnum", &model_emp::check_jobnum_exist},
                    check_row{"wms_emp/check_idnum_exist", "idnum", &model_emp::check_idnum_exist}));

TEST_F(emp_model, options) {
    QComboBox combo;
    combo.addItem(QStringLiteral("old"));
    server.answer("[{\"id\":\"4\",\"name\":\"李\",\"jobnum\":\"A1\"},{\"id\":5,\"name\":\"王\"}]");
    model.get_option(&combo);
    EXPECT_EQ(server.last().method, "GET");
    EXPECT_EQ(server.last().path, "wms_emp/get_option");
    EXPECT_TRUE(server.last().body.isEmpty());
    ASSERT_EQ(combo.count(), 3);
    EXPECT_EQ(combo.itemText(0), QStringLiteral("【选择员工】"));
    EXPECT_EQ(combo.itemText(1), QStringLiteral("李\t[工号:A1]"));
    EXPECT_EQ(combo.itemText(2), QStringLiteral("王\t[工号:]"));
    for (int i = 0; i < 3; ++i) {
        EXPECT_EQ(combo.itemData(i).type(), QVariant::Int);
        EXPECT_EQ(combo.itemData(i).toInt(), i == 0 ? 0 : i + 3);
    }
    EXPECT_EQ(combo.currentIndex(), 0);
}

TEST_F(emp_model, options_that_do_not_come_leave_the_first_entry) {
    for (const char* body : {"", "[]", "7", "{}", "[", "no"}) {
        QComboBox combo;
        combo.addItem(QStringLiteral("old"));
        server.answer(body);
        model.get_option(&combo);
        ASSERT_EQ(combo.count(), 1) << body;
        EXPECT_EQ(combo.itemText(0), QStringLiteral("【选择员工】"));
    }
}

TEST_F(emp_model, add_row_goes_on_top) {
    load();
    table.setCurrentCell(0, 1);
    struct_emp e = full_emp();
    e.datetime = 1586696219;
    model.add_row(e);
    ASSERT_EQ(table.rowCount(), 4);
    expect_cells(&table, 0,
                 {"31", "李强", "110101199001011237", "A7", "13800000000", "路1号", "注", "1", "2", "是", "",
                  "2020-04-12 12:56"});
    EXPECT_EQ(table.currentRow(), 1) << "the new row does not become the current one";
    e.datetime = 0;
    model.add_row(e);
    EXPECT_TRUE(cell_text(&table, 0, 11).isEmpty());
}

TEST_F(emp_model, search_arguments) {
    EXPECT_TRUE(model_emp::search_args(struct_emp()).isEmpty());
    EXPECT_EQ(model_emp::search_args(full_emp()),
              QStringLiteral("name=李强&idnum=110101199001011237&jobnum=A7&mobile=13800000000"));
    struct_emp without_name;
    without_name.jobnum = QStringLiteral("7");
    EXPECT_EQ(model_emp::search_args(without_name), QStringLiteral("&jobnum=7"));
}
