#include <QCheckBox>
#include <QSignalSpy>
#include <QTest>

#include "gui/emp_fixture.h"
#include "master/dlg_search_emp.h"
#include "master/dlg_warehouse_add.h"

class warehouse_dialog : public emp_test {
protected:
    void open(int mode) {
        server.always("wms_emp/get_page", page_of({65}));
        dialog = std::make_unique<dlg_warehouse_add>(nullptr, mode);
        added = std::make_unique<QSignalSpy>(dialog.get(), &dlg_warehouse_add::signal_warehouse_do_add);
        edited = std::make_unique<QSignalSpy>(dialog.get(), &dlg_warehouse_add::signal_warehouse_do_edit);
        listed = std::make_unique<QSignalSpy>(dialog.get(), &dlg_warehouse_add::signal_warehouse_list);
        selected = std::make_unique<QSignalSpy>(dialog.get(), &dlg_warehouse_add::signal_keeper_selected);
        dialog->show();
    }
    QLineEdit* field(const char* name) { return child<QLineEdit>(dialog.get(), name); }
    QCheckBox* box() { return child<QCheckBox>(dialog.get(), "chk_default"); }
    void set(const char* name, const char* text) { field(name)->setText(QString::fromUtf8(text)); }
    void give_keeper() {
        struct_emp e;
        e.id = QStringLiteral("8");
        e.name = QStringLiteral("李强");
        dialog->slot_emp_selected(e);
    }
    void fill_required() {
        set("txt_name", "东仓");
        give_keeper();
    }
    void save() { click(dialog.get(), "btn_save"); }
    void expect_stays() {
        EXPECT_TRUE(dialog->isVisible());
        EXPECT_EQ(added->size() + edited->size(), 0);
    }
    static struct_warehouse known() {
        struct_warehouse w;
        w.id = QStringLiteral("5");
        w.name = QStringLiteral("n");
        w.keeper = QStringLiteral("8");
        w.keeper_name = QStringLiteral("k");
        w.mobile = QStringLiteral("13800000000");
        w.phone = QStringLiteral("p");
        w.address = QStringLiteral("a");
        w.remark = QStringLiteral("r");
        w.isdefault = 1;
        w.datetime_text = QStringLiteral("then");
        return w;
    }

    std::unique_ptr<dlg_warehouse_add> dialog;
    std::unique_ptr<QSignalSpy> added;
    std::unique_ptr<QSignalSpy> edited;
    std::unique_ptr<QSignalSpy> listed;
    std::unique_ptr<QSignalSpy> selected;
};

TEST_F(warehouse_dialog, window_and_widgets) {
    open(0);
    EXPECT_EQ(dialog->windowTitle(), QStringLiteral("添加仓库"));
    expect_window(dialog.get(), QSize(433, 309), Qt::WindowCloseButtonHint);
    expect_form_rows(dialog.get(), {{"name", "名称", true},
                                    {"keeper", "仓管员", true},
                                    {"mobile", "手机", false},
                                    {"phone", "电话", false},
                                    {"address", "地址", false},
                                    {"remark", "备注", false}});
    EXPECT_TRUE(field("txt_keeper")->isReadOnly());
    EXPECT_EQ(field("txt_keeper")->placeholderText(), QStringLiteral("点击选择"));
    EXPECT_EQ(field("txt_keeper")->cursor().shape(), Qt::PointingHandCursor);
    EXPECT_EQ(box()->text(), QStringLiteral("是否默认选中"));
    EXPECT_FALSE(box()->isChecked());
    EXPECT_GT(box()->y(), field("txt_remark")->y());
    EXPECT_EQ(child<QPushButton>(dialog.get(), "btn_save")->text(), QStringLiteral("保存"));
    EXPECT_EQ(child<QPushButton>(dialog.get(), "btn_cancel")->text(), QStringLiteral("取消"));
    EXPECT_GT(child<QPushButton>(dialog.get(), "btn_save")->y(), box()->y());
    expect_tab_order(dialog.get(), {"txt_name", "txt_keeper", "txt_mobile", "txt_phone", "txt_address",
                                    "txt_remark", "chk_default", "btn_save", "btn_cancel"});
}

TEST_F(warehouse_dialog, the_mobile_number_alone_has_a_validator) {
    open(0);
    for (const char* name :
         {"txt_name", "txt_keeper", "txt_mobile", "txt_phone", "txt_address", "txt_remark"})
        EXPECT_EQ(field(name)->validator() != nullptr, QByteArray(name) == "txt_mobile") << name;
    type_into(dialog.get(), "txt_mobile", QStringLiteral("12a23800000000099"));
    EXPECT_EQ(field("txt_mobile")->text(), QStringLiteral("13800000000"));
}

TEST_F(warehouse_dialog, checks_come_in_their_order) {
    open(0);
    set("txt_mobile", "12");
    set("txt_name", "  ");
    save();
    expect_tip(field("txt_name"), QStringLiteral("名称不能为空"));
    set("txt_name", "东仓");
    save();
    expect_tip(field("txt_keeper"), QStringLiteral("仓管员不能为空"));
    give_keeper();
    save();
    expect_tip(field("txt_mobile"), QStringLiteral("手机格式不正确"));
    set("txt_mobile", " 13800000000");
    save();
    expect_tip(field("txt_mobile"), QStringLiteral("手机格式不正确"));
    expect_stays();
    set("txt_mobile", "  ");
    save();
    EXPECT_EQ(added->size(), 1);
    EXPECT_TRUE(server.requests().isEmpty());
}

TEST_F(warehouse_dialog, add_hands_over_the_record_and_closes) {
    open(0);
    fill_required();
    set("txt_name", " 东仓 ");
    set("txt_mobile", "13800000000");
    set("txt_phone", " 1 ");
    set("txt_address", " 路 ");
    set("txt_remark", "\t注 ");
    save();
    ASSERT_EQ(added->size(), 1);
    EXPECT_EQ(edited->size() + listed->size() + selected->size(), 0);
    const auto w = added->first().first().value<struct_warehouse>();
    EXPECT_TRUE(w.id.isEmpty());
    EXPECT_EQ(w.name, QStringLiteral("东仓"));
    EXPECT_EQ(w.keeper, QStringLiteral("8"));
    EXPECT_EQ(w.keeper_name, QStringLiteral("李强"));
    EXPECT_EQ(w.mobile, QStringLiteral("13800000000"));
    EXPECT_EQ(w.phone, QStringLiteral("1"));
    EXPECT_EQ(w.address, QStringLiteral("路"));
    EXPECT_EQ(w.remark, QStringLiteral("注"));
    EXPECT_EQ(w.isdefault, 0);
    EXPECT_FALSE(dialog->isVisible());
    EXPECT_EQ(dialog->result(), int(QDialog::Accepted));
}

TEST_F(warehouse_dialog, the_box_is_1_and_0) {
    for (bool checked : {false, true}) {
        open(0);
        fill_required();
        box()->setChecked(checked);
        save();
        ASSERT_EQ(added->size(), 1);
        EXPECT_EQ(added->first().first().value<struct_warehouse>().isdefault, checked ? 1 : 0);
    }
}

TEST_F(warehouse_dialog, edit_shows_and_returns_the_record) {
    open(1);
    dialog->slot_warehouse_to_edit(known());
    const struct {
        const char* name;
        const char* text;
    } shown[] = {{"txt_name", "n"},  {"txt_keeper", "k"},  {"txt_mobile", "13800000000"},
                 {"txt_phone", "p"}, {"txt_address", "a"}, {"txt_remark", "r"}};
    for (const auto& s : shown)
        EXPECT_EQ(field(s.name)->text(), QLatin1String(s.text));
    EXPECT_TRUE(box()->isChecked());
    set("txt_phone", "");
    box()->setChecked(false);
    save();
    ASSERT_EQ(edited->size(), 1);
    EXPECT_EQ(added->size(), 0);
    const auto back = edited->first().first().value<struct_warehouse>();
    EXPECT_EQ(back.id, QStringLiteral("5"));
    EXPECT_EQ(back.keeper, QStringLiteral("8"));
    EXPECT_EQ(back.keeper_name, QStringLiteral("k"));
    EXPECT_EQ(back.datetime_text, QStringLiteral("then"));
    EXPECT_TRUE(back.phone.isEmpty());
    EXPECT_EQ(back.isdefault, 0);
}

TEST_F(warehouse_dialog, a_stored_mobile_number_that_does_not_fit_blocks_the_save) {
    open(1);
    struct_warehouse w = known();
    w.mobile = QStringLiteral("0571-88");
    dialog->slot_warehouse_to_edit(w);
    save();
    expect_tip(field("txt_mobile"), QStringLiteral("手机格式不正确"));
    expect_stays();
}

TEST_F(warehouse_dialog, a_left_press_picks_the_keeper) {
    open(0);
    set("txt_name", "东仓");
    with_modal_of<dlg_search_emp>([this] { QTest::mousePress(field("txt_keeper"), Qt::LeftButton); },
                                  [](dlg_search_emp* picker) {
                                      EXPECT_EQ(picker->windowTitle(), QStringLiteral("查询选择仓管员"));
                                      click_row(child<QTableWidget>(picker, "tablewidget"), 0);
                                      click(picker, "btn_choose");
                                  });
    EXPECT_EQ(field("txt_keeper")->text(), QStringLiteral("员工65"));
    save();
    ASSERT_EQ(added->size(), 1);
    EXPECT_EQ(added->first().first().value<struct_warehouse>().keeper, QStringLiteral("A"))
        << "the picker's button gives a character";
    EXPECT_EQ(selected->size(), 0);
}

TEST_F(warehouse_dialog, all_of_the_picker_takes_the_keeper_away) {
    open(1);
    dialog->slot_warehouse_to_edit(known());
    with_modal_of<dlg_search_emp>([this] { QTest::mousePress(field("txt_keeper"), Qt::LeftButton); },
                                  [](dlg_search_emp* picker) { click(picker, "btn_all"); });
    EXPECT_TRUE(field("txt_keeper")->text().isEmpty());
    save();
    expect_tip(field("txt_keeper"), QStringLiteral("仓管员不能为空"));
    expect_stays();
}

TEST_F(warehouse_dialog, other_buttons_of_the_mouse_pick_nobody) {
    open(0);
    for (Qt::MouseButton button : {Qt::RightButton, Qt::MiddleButton}) {
        QTest::mousePress(field("txt_keeper"), button);
        EXPECT_EQ(QApplication::activeModalWidget(), nullptr);
    }
    EXPECT_TRUE(server.requests().isEmpty());
}

TEST_F(warehouse_dialog, another_mode_checks_the_fields_and_then_closes) {
    for (int mode : {2, -1}) {
        open(mode);
        save();
        expect_tip(field("txt_name"), QStringLiteral("名称不能为空"));
        expect_stays();
        fill_required();
        save();
        EXPECT_FALSE(dialog->isVisible());
        EXPECT_EQ(added->size() + edited->size(), 0);
    }
}

TEST_F(warehouse_dialog, cancel_closes_without_a_word) {
    open(0);
    fill_required();
    click(dialog.get(), "btn_cancel");
    EXPECT_FALSE(dialog->isVisible());
    EXPECT_EQ(dialog->result(), int(QDialog::Rejected));
    EXPECT_EQ(added->size(), 0);
}
