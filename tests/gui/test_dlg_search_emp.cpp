#include <QSignalSpy>
#include <QTest>

#include "gui/emp_fixture.h"
#include "master/dlg_search_emp.h"

class emp_picker : public emp_test {
protected:
    void open(std::initializer_list<int> numbers = {1, 2, 3, 65}) {
        server.always("wms_emp/get_page", page_of(numbers));
        picker = std::make_unique<dlg_search_emp>(nullptr);
        picked = std::make_unique<QSignalSpy>(picker.get(), &dlg_search_emp::signal_emp_selected);
        sent = std::make_unique<QSignalSpy>(picker.get(), &dlg_search_emp::signal_send_args);
        picker->show();
        table = child<QTableWidget>(picker.get(), "tablewidget");
    }
    QLineEdit* field(const char* name) { return child<QLineEdit>(picker.get(), name); }
    struct_emp result() { return picked->first().first().value<struct_emp>(); }
    void expect_picked(const QString& id, const QString& name) {
        ASSERT_EQ(picked->size(), 1);
        EXPECT_EQ(result().id, id);
        EXPECT_EQ(result().name, name);
        EXPECT_FALSE(picker->isVisible());
        EXPECT_EQ(picker->result(), int(QDialog::Accepted));
    }
    QAction* entry(const char* text) {
        for (QAction* a : table->findChild<QMenu*>()->actions())
            if (a->text() == QString::fromUtf8(text)) return a;
        throw std::runtime_error(std::string("no menu entry ") + text);
    }

    std::unique_ptr<dlg_search_emp> picker;
    std::unique_ptr<QSignalSpy> picked;
    std::unique_ptr<QSignalSpy> sent;
    QTableWidget* table = nullptr;
};

TEST_F(emp_picker, window_and_widgets) {
    open();
    expect_window(picker.get(), QSize(1300, 564), Qt::WindowMaximizeButtonHint | Qt::WindowCloseButtonHint);
    const struct {
        const char* field;
        const char* text;
    } fields[] = {
        {"txt_name", "姓名"}, {"txt_idnum", "身份证"}, {"txt_jobnum", "工号"}, {"txt_mobile", "手机"}};
    for (const auto& f : fields) {
        EXPECT_TRUE(field(f.field)->isClearButtonEnabled());
        expect_label_of(picker.get(), f.field, f.text);
    }
    expect_left_to_right(picker.get(),
                         {"txt_name", "txt_idnum", "txt_jobnum", "txt_mobile", "btn_search", "btn_all"});
    const struct {
        const char* name;
        const char* text;
    } buttons[] = {
        {"btn_search", "查询"}, {"btn_all", "全部"}, {"btn_choose", "选择"}, {"btn_close", "关闭"}};
    for (const auto& b : buttons)
        EXPECT_EQ(child<QPushButton>(picker.get(), b.name)->text(), QString::fromUtf8(b.text));
    EXPECT_LT(table->y(), child<QPushButton>(picker.get(), "btn_choose")->y());
    expect_tab_order(picker.get(), {"txt_name", "txt_idnum", "txt_jobnum", "txt_mobile", "btn_search",
                                    "btn_all", "tablewidget"});
}

TEST_F(emp_picker, opens_with_ten_employees_and_no_arguments) {
    open();
    ASSERT_EQ(server.paths(), QList<QByteArray>({"wms_emp/get_page"}));
    EXPECT_EQ(server.last().body, "&page_num=1&page_size=10");
    EXPECT_EQ(table->rowCount(), 4);
    ASSERT_EQ(table->columnCount(), 12);
    for (int i = 0; i < 12; ++i)
        EXPECT_EQ(table->isColumnHidden(i), i == 0 || i == 7 || i == 8);
    EXPECT_TRUE(table->toolTip().isEmpty());
}

TEST_F(emp_picker, search) {
    open();
    for (const char* name : {"txt_name", "txt_idnum", "txt_jobnum", "txt_mobile"})
        field(name)->setText(QStringLiteral(" ") + QLatin1String(name + 4) + QStringLiteral(" "));
    click(picker.get(), "btn_search");
    EXPECT_EQ(server.last().body,
              "name=name&idnum=idnum&jobnum=jobnum&mobile=mobile&page_num=1&page_size=10");
    ASSERT_EQ(sent->size(), 1);
    EXPECT_EQ(sent->first().first().toString(),
              QStringLiteral("name=name&idnum=idnum&jobnum=jobnum&mobile=mobile"));
    field("txt_name")->clear();
    field("txt_idnum")->setText(QStringLiteral("  "));
    click(picker.get(), "btn_search");
    EXPECT_EQ(server.last().body, "&jobnum=jobnum&mobile=mobile&page_num=1&page_size=10");
}

TEST_F(emp_picker, keys_act_as_on_any_dialog) {
    open();
    for (Qt::Key key : {Qt::Key_Return, Qt::Key_Enter}) {
        server.forget();
        QTest::keyClick(field("txt_name"), key);
        EXPECT_EQ(server.requests().size(), 1) << "the first button is the default one";
        EXPECT_TRUE(picker->isVisible());
    }
    QTest::keyClick(child<QPushButton>(picker.get(), "btn_all"), Qt::Key_Return);
    expect_picked(QString(), QString());
    open();
    QTest::keyClick(picker.get(), Qt::Key_Escape);
    EXPECT_FALSE(picker->isVisible());
    EXPECT_EQ(picked->size(), 0);
}

TEST_F(emp_picker, context_menu) {
    open();
    EXPECT_EQ(menu_texts(table),
              QStringList({QStringLiteral("查询"), QStringLiteral("-"), QStringLiteral("全部")}));
    expect_menu_at_pointer(table);
    server.forget();
    entry("查询")->trigger();
    EXPECT_EQ(server.requests().size(), 1);
    EXPECT_TRUE(picker->isVisible());
    entry("全部")->trigger();
    expect_picked(QString(), QString());
}

TEST_F(emp_picker, choose_needs_a_row) {
    open();
    click(picker.get(), "btn_choose");
    expect_tip(table, QStringLiteral("请先选中行"), QPoint(10, 30));
    EXPECT_TRUE(picker->isVisible());
    EXPECT_EQ(picked->size(), 0);
}

TEST_F(emp_picker, a_double_click_hands_over_the_id_and_choose_a_character) {
    open();
    click_row(table, 3);
    QTest::mouseDClick(table->viewport(), Qt::LeftButton, Qt::NoModifier,
                       table->visualItemRect(table->item(3, 1)).center());
    expect_picked(QStringLiteral("65"), QStringLiteral("员工65"));
    open();
    click_row(table, 3);
    click(picker.get(), "btn_choose");
    expect_picked(QStringLiteral("A"), QStringLiteral("员工65"));
}

struct character_row {
    int id;
    ushort character;
};
class emp_character : public emp_picker, public testing::WithParamInterface<character_row> {};

TEST_P(emp_character, has_the_low_8_bits_of_the_number) {
    open({GetParam().id});
    click_row(table, 0);
    click(picker.get(), "btn_choose");
    expect_picked(QString(QChar(GetParam().character)), QStringLiteral("员工%1").arg(GetParam().id));
    EXPECT_EQ(result().id.size(), 1);
}

INSTANTIATE_TEST_SUITE_P(ids, emp_character,
                         testing::Values(character_row{1, 1}, character_row{49, '1'}, character_row{127, 127},
                                         character_row{200, 0xC8}, character_row{255, 0xFF},
                                         character_row{256, 0}, character_row{305, '1'},
                                         character_row{-1, 0xFF}));

TEST_F(emp_picker, choose_takes_an_id_that_is_no_number_for_0) {
    open();
    table->item(0, 0)->setText(QStringLiteral("x"));
    click_row(table, 0);
    click(picker.get(), "btn_choose");
    expect_picked(QString(QChar(0)), QStringLiteral("员工1"));
}

TEST_F(emp_picker, a_double_click_takes_the_current_row_and_not_the_index) {
    open();
    table->setCurrentCell(1, 1);
    picker->on_tablewidget_doubleClicked(table->model()->index(3, 0));
    expect_picked(QStringLiteral("2"), QStringLiteral("员工2"));
}

TEST_F(emp_picker, all_hands_over_an_empty_id_and_name) {
    open();
    click_row(table, 1);
    click(picker.get(), "btn_all");
    expect_picked(QString(), QString());
}

TEST_F(emp_picker, the_other_fields_keep_the_search_words) {
    open();
    for (const char* name : {"txt_name", "txt_idnum", "txt_jobnum", "txt_mobile"})
        field(name)->setText(QStringLiteral(" ") + QLatin1String(name + 4));
    click(picker.get(), "btn_search");
    field("txt_jobnum")->setText(QStringLiteral("not searched for"));
    table->setCurrentCell(1, 1);
    picker->on_tablewidget_doubleClicked(table->currentIndex());
    ASSERT_EQ(picked->size(), 1);
    const auto emp = picked->first().first().value<struct_emp>();
    EXPECT_EQ(emp.id, QStringLiteral("2"));
    EXPECT_EQ(emp.name, QStringLiteral("员工2"));
    EXPECT_EQ(emp.idnum, QStringLiteral("idnum"));
    EXPECT_EQ(emp.jobnum, QStringLiteral("jobnum"));
    EXPECT_EQ(emp.mobile, QStringLiteral("mobile"));
    EXPECT_TRUE(emp.address.isEmpty());
}

TEST_F(emp_picker, close_says_nothing) {
    open();
    click_row(table, 1);
    click(picker.get(), "btn_close");
    EXPECT_FALSE(picker->isVisible());
    EXPECT_EQ(picked->size(), 0);
    EXPECT_EQ(picker->result(), int(QDialog::Rejected));
}
