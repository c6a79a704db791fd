#include <QCheckBox>
#include <QSignalSpy>
#include <QTest>

#include "gui/emp_fixture.h"
#include "master/dlg_emp_add.h"

class emp_dialog : public emp_test {
protected:
    void open(int mode, const struct_emp& emp = struct_emp()) {
        dialog = std::make_unique<dlg_emp_add>(nullptr, mode, emp);
        added = std::make_unique<QSignalSpy>(dialog.get(), &dlg_emp_add::signal_emp_do_add);
        edited = std::make_unique<QSignalSpy>(dialog.get(), &dlg_emp_add::signal_emp_do_edit);
        dialog->show();
    }
    QLineEdit* field(const char* name) { return child<QLineEdit>(dialog.get(), name); }
    QCheckBox* box(const char* name) { return child<QCheckBox>(dialog.get(), name); }
    void set(const char* name, const char* text) { field(name)->setText(QString::fromUtf8(text)); }
    void fill_required() {
        set("txt_name", "李强");
        set("txt_jobnum", "A1");
    }
    void fill_all() {
        fill_required();
        set("txt_idnum", "110101199001011237");
        set("txt_mobile", "13800000000");
    }
    void save() { click(dialog.get(), "btn_save"); }
    void expect_stays() {
        EXPECT_TRUE(dialog->isVisible());
        EXPECT_EQ(added->size() + edited->size(), 0);
    }
    static struct_emp known() {
        struct_emp e;
        e.id = QStringLiteral("8");
        e.name = QStringLiteral("n");
        e.idnum = QStringLiteral("110101900101123");
        e.jobnum = QStringLiteral("j");
        e.mobile = QStringLiteral("13800000000");
        e.address = QStringLiteral("a");
        e.remark = QStringLiteral("r");
        e.isdefault = 1;
        e.dimission = 1;
        e.datetime_text = QStringLiteral("then");
        return e;
    }

    std::unique_ptr<dlg_emp_add> dialog;
    std::unique_ptr<QSignalSpy> added;
    std::unique_ptr<QSignalSpy> edited;
};

TEST_F(emp_dialog, window_and_widgets) {
    open(0);
    EXPECT_EQ(dialog->windowTitle(), QStringLiteral("添加员工"));
    expect_window(dialog.get(), QSize(431, 287), Qt::WindowCloseButtonHint);
    expect_form_rows(dialog.get(), {{"name", "姓名", true},
                                    {"idnum", "身份证", false},
                                    {"jobnum", "工号", true},
                                    {"mobile", "手机", false},
                                    {"address", "地址", false},
                                    {"remark", "备注", false}});
    EXPECT_EQ(box("chk_default")->text(), QStringLiteral("默认经办人"));
    EXPECT_EQ(box("chk_leave")->text(), QStringLiteral("离职"));
    EXPECT_GT(box("chk_default")->y(), field("txt_remark")->y());
    EXPECT_EQ(child<QPushButton>(dialog.get(), "btn_save")->text(), QStringLiteral("保存"));
    EXPECT_EQ(child<QPushButton>(dialog.get(), "btn_cancel")->text(), QStringLiteral("关闭"));
    EXPECT_GT(child<QPushButton>(dialog.get(), "btn_save")->y(), box("chk_leave")->y());
    for (const char* name :
         {"txt_name", "txt_idnum", "txt_jobnum", "txt_mobile", "txt_address", "txt_remark"})
        EXPECT_TRUE(field(name)->text().isEmpty());
    EXPECT_FALSE(box("chk_default")->isChecked());
    EXPECT_FALSE(box("chk_leave")->isChecked());
    EXPECT_TRUE(server.requests().isEmpty());
}

TEST_F(emp_dialog, tab_order_is_top_to_bottom) {
    open(0);
    expect_tab_order(dialog.get(), {"txt_name", "txt_idnum", "txt_jobnum", "txt_mobile", "txt_address",
                                    "txt_remark", "chk_default", "chk_leave", "btn_save", "btn_cancel"});
}

TEST_F(emp_dialog, identity_card_and_mobile_have_validators) {
    open(0);
    for (const char* name :
         {"txt_name", "txt_idnum", "txt_jobnum", "txt_mobile", "txt_address", "txt_remark"})
        EXPECT_EQ(field(name)->validator() != nullptr,
                  QByteArray(name) == "txt_idnum" || QByteArray(name) == "txt_mobile")
            << name;
    type_into(dialog.get(), "txt_mobile", QStringLiteral("12a23800000000099"));
    EXPECT_EQ(field("txt_mobile")->text(), QStringLiteral("13800000000"));
    type_into(dialog.get(), "txt_idnum", QStringLiteral("0x11010119900101123X9"));
    EXPECT_EQ(field("txt_idnum")->text(), QStringLiteral("11010119900101123X"));
}

struct idnum_row {
    const char* text;
    bool accepted;
};
class emp_idnum : public emp_dialog, public testing::WithParamInterface<idnum_row> {};

TEST_P(emp_idnum, decides_about_the_save) {
    open(0);
    fill_required();
    set("txt_idnum", GetParam().text);
    save();
    EXPECT_EQ(added->size(), GetParam().accepted ? 1 : 0);
    if (GetParam().accepted) return;
    expect_tip(field("txt_idnum"), QStringLiteral("格式不正确"));
    EXPECT_TRUE(server.requests().isEmpty());
}

INSTANTIATE_TEST_SUITE_P(
    numbers, emp_idnum,
    testing::Values(idnum_row{"", true}, idnum_row{"   ", true},
                    // 15 digits: area, then year, month and day, then three more.
                    idnum_row{"110101900101123", true}, idnum_row{"110101901231123", true},
                    idnum_row{"010101900101123", false}, idnum_row{"110101901301123", false},
                    idnum_row{"110101900141123", false}, idnum_row{"11010190010112", false},
                    idnum_row{"1101019001011234", false}, idnum_row{"11010190010112X", false},
                    // 18: the year has four digits, a last one follows.
                    idnum_row{"110101199001011237", true}, idnum_row{"11010119900101123X", true},
                    idnum_row{"11010119900101123x", false}, idnum_row{"110101199013011237", false},
                    idnum_row{"110101199000011237", true}, idnum_row{"110101199001321237", false},
                    idnum_row{"110101099001011237", false}, idnum_row{"11010119900101123", false},
                    idnum_row{"1101011990010112371", false}, idnum_row{"1101011990010112AX", false},
                    // The class of the day's first digit has a bar in it.
                    idnum_row{"110101199001|11237", true}, idnum_row{" 110101199001011237", false}));

class emp_mobile : public emp_dialog, public testing::WithParamInterface<idnum_row> {};

TEST_P(emp_mobile, decides_about_the_save) {
    open(0);
    fill_required();
    set("txt_mobile", GetParam().text);
    save();
    EXPECT_EQ(added->size(), GetParam().accepted ? 1 : 0);
    if (!GetParam().accepted) expect_tip(field("txt_mobile"), QStringLiteral("格式不正确"));
}

INSTANTIATE_TEST_SUITE_P(numbers, emp_mobile,
                         testing::Values(idnum_row{"", true}, idnum_row{"13800000000", true},
                                         idnum_row{"12000000000", false}, idnum_row{"1380000000", false},
                                         idnum_row{"  ", true}, idnum_row{" 13800000000", false}));

TEST_F(emp_dialog, local_checks_come_in_their_order_and_ask_nobody) {
    open(0);
    set("txt_idnum", "1");
    set("txt_mobile", "12");
    set("txt_name", "   ");
    save();
    expect_tip(field("txt_name"), QStringLiteral("姓名不能为空"));
    set("txt_name", "李强");
    save();
    expect_tip(field("txt_jobnum"), QStringLiteral("工号不能为空"));
    set("txt_jobnum", "A1");
    save();
    expect_tip(field("txt_mobile"), QStringLiteral("格式不正确"));
    set("txt_mobile", "13800000000");
    save();
    expect_tip(field("txt_idnum"), QStringLiteral("格式不正确"));
    expect_stays();
    EXPECT_TRUE(server.requests().isEmpty());
}

TEST_F(emp_dialog, the_service_is_asked_in_order_and_the_first_refusal_ends_it) {
    open(0);
    fill_all();
    server.answer("1");
    save();
    EXPECT_EQ(server.paths(), QList<QByteArray>({"wms_emp/check_idnum_exist"}));
    EXPECT_EQ(server.last().body, "idnum=110101199001011237");
    expect_tip(field("txt_idnum"), QStringLiteral("已存在其他重复的身份证号"));

    server.forget();
    server.answer("0");
    server.answer("2");
    save();
    EXPECT_EQ(server.paths(), QList<QByteArray>({"wms_emp/check_idnum_exist", "wms_emp/check_jobnum_exist"}));
    EXPECT_EQ(server.last().body, "jobnum=A1");
    expect_tip(field("txt_jobnum"), QStringLiteral("已存在其他重复的工号"));

    server.forget();
    for (const char* answer : {"0", "0", "1"})
        server.answer(answer);
    save();
    EXPECT_EQ(server.paths(), QList<QByteArray>({"wms_emp/check_idnum_exist", "wms_emp/check_jobnum_exist",
                                                 "wms_emp/check_mobile"}));
    EXPECT_EQ(server.last().body, "mobile=13800000000");
    expect_tip(field("txt_mobile"), QStringLiteral("已存在其他重复的手机号"));
    expect_stays();

    for (const char* answer : {"0", "0", "0"})
        server.answer(answer);
    save();
    EXPECT_EQ(added->size(), 1);
}

TEST_F(emp_dialog, the_job_number_alone_is_always_checked) {
    open(0);
    fill_required();
    save();
    EXPECT_EQ(server.paths(), QList<QByteArray>({"wms_emp/check_jobnum_exist"}));
    EXPECT_EQ(added->size(), 1);
}

TEST_F(emp_dialog, a_check_that_fails_counts_as_free) {
    for (const char* answer : {"", "no", "{}", "-1"}) {
        open(0);
        fill_all();
        for (int i = 0; i < 3; ++i)
            server.answer(answer);
        save();
        EXPECT_EQ(added->size(), 1) << answer;
    }
}

TEST_F(emp_dialog, add_hands_over_the_record_and_closes) {
    open(0);
    set("txt_name", "  李强 ");
    set("txt_jobnum", "\tA1 ");
    set("txt_mobile", "13800000000");
    set("txt_idnum", "11010119900101123X");
    set("txt_address", " 路 ");
    set("txt_remark", " 注 ");
    save();
    ASSERT_EQ(added->size(), 1);
    EXPECT_EQ(edited->size(), 0);
    const auto e = added->first().first().value<struct_emp>();
    EXPECT_TRUE(e.id.isEmpty());
    EXPECT_EQ(e.name, QStringLiteral("李强"));
    EXPECT_EQ(e.jobnum, QStringLiteral("A1"));
    EXPECT_EQ(e.mobile, QStringLiteral("13800000000"));
    EXPECT_EQ(e.idnum, QStringLiteral("11010119900101123X"));
    EXPECT_EQ(e.address, QStringLiteral("路"));
    EXPECT_EQ(e.remark, QStringLiteral("注"));
    EXPECT_EQ(e.isdefault, 2);
    EXPECT_EQ(e.dimission, 2);
    EXPECT_FALSE(dialog->isVisible());
    EXPECT_EQ(dialog->result(), int(QDialog::Accepted));
}

TEST_F(emp_dialog, the_boxes_are_1_and_2) {
    for (bool is_default : {false, true})
        for (bool has_left : {false, true}) {
            open(0);
            fill_required();
            box("chk_default")->setChecked(is_default);
            box("chk_leave")->setChecked(has_left);
            save();
            ASSERT_EQ(added->size(), 1);
            const auto e = added->first().first().value<struct_emp>();
            EXPECT_EQ(e.isdefault, is_default ? 1 : 2);
            EXPECT_EQ(e.dimission, has_left ? 1 : 2);
        }
}

TEST_F(emp_dialog, edit_shows_the_record_from_the_start_and_returns_it) {
    open(1, known());
    const struct {
        const char* name;
        const char* text;
    } shown[] = {{"txt_name", "n"},
                 {"txt_idnum", "110101900101123"},
                 {"txt_mobile", "13800000000"},
                 {"txt_jobnum", "j"},
                 {"txt_address", "a"},
                 {"txt_remark", "r"}};
    for (const auto& s : shown)
        EXPECT_EQ(field(s.name)->text(), QLatin1String(s.text));
    EXPECT_TRUE(box("chk_default")->isChecked());
    EXPECT_TRUE(box("chk_leave")->isChecked());
    set("txt_remark", "");
    box("chk_leave")->setChecked(false);
    save();
    ASSERT_EQ(edited->size(), 1);
    EXPECT_EQ(added->size(), 0);
    const auto back = edited->first().first().value<struct_emp>();
    EXPECT_EQ(back.id, QStringLiteral("8"));
    EXPECT_EQ(back.datetime_text, QStringLiteral("then"));
    EXPECT_TRUE(back.remark.isEmpty());
    EXPECT_EQ(back.isdefault, 1);
    EXPECT_EQ(back.dimission, 2);
}

TEST_F(emp_dialog, a_flag_other_than_1_leaves_its_box_clear) {
    for (int flag : {0, 2, 3, -1}) {
        struct_emp e = known();
        e.isdefault = e.dimission = flag;
        open(1, e);
        EXPECT_FALSE(box("chk_default")->isChecked());
        EXPECT_FALSE(box("chk_leave")->isChecked());
    }
}

TEST_F(emp_dialog, the_checks_of_an_edit_name_the_own_record) {
    open(1, known());
    save();
    EXPECT_EQ(server.bodies("wms_emp/check_idnum_exist"), QList<QByteArray>({"idnum=110101900101123&id=8"}));
    EXPECT_EQ(server.bodies("wms_emp/check_jobnum_exist"), QList<QByteArray>({"jobnum=j&id=8"}));
    EXPECT_EQ(server.bodies("wms_emp/check_mobile"), QList<QByteArray>({"mobile=13800000000&id=8"}));
    EXPECT_EQ(server.requests().size(), 3);
    EXPECT_EQ(edited->size(), 1);
}

TEST_F(emp_dialog, a_stored_identity_number_that_does_not_fit_blocks_the_save) {
    struct_emp e = known();
    e.idnum = QStringLiteral("123");
    open(1, e);
    save();
    expect_tip(field("txt_idnum"), QStringLiteral("格式不正确"));
    expect_stays();
    EXPECT_TRUE(server.requests().isEmpty());
    set("txt_idnum", "");
    save();
    EXPECT_EQ(edited->size(), 1);
}

TEST_F(emp_dialog, another_mode_checks_and_then_closes) {
    for (int mode : {2, -1}) {
        open(mode);
        save();
        expect_tip(field("txt_name"), QStringLiteral("姓名不能为空"));
        expect_stays();
        fill_required();
        save();
        EXPECT_FALSE(dialog->isVisible());
        EXPECT_EQ(added->size() + edited->size(), 0);
    }
}

TEST_F(emp_dialog, cancel_closes_without_a_word) {
    open(0);
    fill_required();
    click(dialog.get(), "btn_cancel");
    EXPECT_FALSE(dialog->isVisible());
    EXPECT_EQ(dialog->result(), int(QDialog::Rejected));
    EXPECT_EQ(added->size(), 0);
    EXPECT_TRUE(server.requests().isEmpty());
}
