#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QSignalSpy>

#include "gui/tree_fixture.h"
#include "master/dlg_dept_add.h"
#include "master/dlg_prodcate_add.h"

// The dialogs that name a department or a category.

struct name_dialog_kind {
    const char* what;
    QDialog* (*make)(int mode);
    QSize size;
    const char* title;
    bool marker;
    const char* add_signal;
    const char* edit_signal;
    int result_of_save;
};

namespace {

const name_dialog_kind kinds[] = {
    {"dept", [](int mode) -> QDialog* { return new dlg_dept_add(nullptr, mode); }, QSize(400, 112),
     "添加下级部门", true, SIGNAL(signal_dept_do_add(struct_dept)), SIGNAL(signal_dept_do_edit(struct_dept)),
     QDialog::Rejected},
    {"prodcate", [](int mode) -> QDialog* { return new dlg_prodcate_add(nullptr, mode); }, QSize(400, 117),
     "添加货品类别", false, SIGNAL(signal_prodcate_do_add(struct_prodcate)),
     SIGNAL(signal_prodcate_do_edit(struct_prodcate)), QDialog::Accepted}};

} // namespace

class name_dialog : public tree_test, public testing::WithParamInterface<name_dialog_kind> {
protected:
    void open(int mode) {
        qRegisterMetaType<struct_dept>("struct_dept");
        qRegisterMetaType<struct_prodcate>("struct_prodcate");
        dialog.reset(GetParam().make(mode));
        added = std::make_unique<QSignalSpy>(dialog.get(), GetParam().add_signal);
        edited = std::make_unique<QSignalSpy>(dialog.get(), GetParam().edit_signal);
        dialog->show();
    }
    QLineEdit* name() { return child<QLineEdit>(dialog.get(), "txt_name"); }

    std::unique_ptr<QSignalSpy> added;
    std::unique_ptr<QSignalSpy> edited;
};

INSTANTIATE_TEST_SUITE_P(trees, name_dialog, testing::ValuesIn(kinds),
                         [](const auto& p) { return std::string(p.param.what); });

TEST_P(name_dialog, window_and_widgets) {
    open(0);
    EXPECT_EQ(dialog->windowTitle(), QString::fromUtf8(GetParam().title));
    EXPECT_EQ(dialog->size(), GetParam().size);
    // Title and system menu come with any button.
    const auto titled = Qt::Dialog | Qt::WindowTitleHint | Qt::WindowSystemMenuHint;
    EXPECT_EQ(dialog->windowFlags(), titled | Qt::WindowCloseButtonHint);
    EXPECT_EQ(child<QLabel>(dialog.get(), "label")->text(), QStringLiteral("名称"));
    EXPECT_EQ(child<QPushButton>(dialog.get(), "btn_save")->text(), QStringLiteral("保存"));
    EXPECT_EQ(child<QPushButton>(dialog.get(), "btn_close")->text(), QStringLiteral("取消"));
    EXPECT_GT(child<QPushButton>(dialog.get(), "btn_save")->y(), name()->geometry().bottom());
    EXPECT_EQ(name()->validator(), nullptr);
    EXPECT_EQ(tab_order(name(), 3), (QStringList{QStringLiteral("txt_name"), QStringLiteral("btn_save"),
                                                 QStringLiteral("btn_close")}));
}

TEST_P(name_dialog, only_a_department_marks_its_name_as_required) {
    open(0);
    const auto* marker = dialog->findChild<QLabel*>(QStringLiteral("label_2"));
    ASSERT_EQ(marker != nullptr, GetParam().marker);
    ASSERT_EQ(dialog->findChildren<QLabel*>().size(), GetParam().marker ? 2 : 1);
    if (marker == nullptr) return;
    EXPECT_EQ(marker->text(), QStringLiteral("*"));
    EXPECT_EQ(marker->styleSheet(), QStringLiteral("color:red"));
    for (const char* button : {"btn_save", "btn_close"})
        EXPECT_EQ(child<QPushButton>(dialog.get(), button)->minimumHeight(), 30);
}

TEST_P(name_dialog, an_empty_name_is_refused) {
    open(0);
    for (const QString& text : {QString(), QStringLiteral("  \t")}) {
        name()->setText(text);
        click(dialog.get(), "btn_save");
        expect_tip(name(), QStringLiteral("名称不能为空"));
        EXPECT_TRUE(dialog->isVisible());
        EXPECT_EQ(added->size(), 0);
    }
}

TEST_P(name_dialog, save_emits_for_its_mode_and_ends_in_its_own_way) {
    for (int mode : {0, 1, 2}) {
        open(mode);
        name()->setText(QStringLiteral(" 甲 "));
        click(dialog.get(), "btn_save");
        EXPECT_EQ(added->size(), mode == 0 ? 1 : 0);
        EXPECT_EQ(edited->size(), mode == 1 ? 1 : 0);
        EXPECT_FALSE(dialog->isVisible());
        EXPECT_EQ(dialog->result(), GetParam().result_of_save);
        EXPECT_TRUE(server.requests().isEmpty()) << "the dialog itself sends nothing";
    }
}

TEST_P(name_dialog, cancel_says_nothing) {
    open(0);
    name()->setText(QStringLiteral("x"));
    click(dialog.get(), "btn_close");
    EXPECT_FALSE(dialog->isVisible());
    EXPECT_EQ(added->size() + edited->size(), 0);
    EXPECT_EQ(dialog->result(), int(QDialog::Rejected));
}

TEST_P(name_dialog, return_saves) {
    open(0);
    QTest::keyClicks(name(), QStringLiteral("x"));
    QTest::keyClick(name(), Qt::Key_Return);
    EXPECT_EQ(added->size(), 1);
}

TEST_F(tree_test, the_department_dialog_returns_the_record_with_another_name) {
    dlg_dept_add opened(nullptr, 1);
    struct_dept dept;
    dept.id = QStringLiteral("7");
    dept.name = QStringLiteral("old");
    dept.parent = QStringLiteral("3");
    dept.datetime_text = QStringLiteral("then");
    opened.slot_dept_to_edit(dept);
    EXPECT_EQ(child<QLineEdit>(&opened, "txt_name")->text(), QStringLiteral("old"));
    child<QLineEdit>(&opened, "txt_name")->setText(QStringLiteral(" new "));
    struct_dept back;
    QObject::connect(&opened, &dlg_dept_add::signal_dept_do_edit, &opened,
                     [&back](const struct_dept& d) { back = d; });
    opened.on_btn_save_clicked();
    EXPECT_EQ(back.name, QStringLiteral("new"));
    EXPECT_EQ(back.id, QStringLiteral("7"));
    EXPECT_EQ(back.parent, QStringLiteral("3"));
    EXPECT_EQ(back.datetime_text, QStringLiteral("then"));
}

TEST_F(tree_test, the_category_dialog_returns_the_record_with_another_name) {
    dlg_prodcate_add opened(nullptr, 1);
    opened.slot_prodcate_to_edit({QStringLiteral("7"), QStringLiteral("old"), QStringLiteral("3")});
    EXPECT_EQ(child<QLineEdit>(&opened, "txt_name")->text(), QStringLiteral("old"));
    child<QLineEdit>(&opened, "txt_name")->setText(QStringLiteral("new"));
    struct_prodcate back;
    QObject::connect(&opened, &dlg_prodcate_add::signal_prodcate_do_edit, &opened,
                     [&back](const struct_prodcate& p) { back = p; });
    opened.on_btn_save_clicked();
    EXPECT_EQ(back.name, QStringLiteral("new"));
    EXPECT_EQ(back.id, QStringLiteral("7"));
    EXPECT_EQ(back.parent, QStringLiteral("3"));
}
