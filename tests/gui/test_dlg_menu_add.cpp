#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QSignalSpy>
#include <QTest>

#include "access/dlg_menu_add.h"
#include "support/client_fixture.h"
#include "support/screen.h"

class menu_form : public client_test {
protected:
    menu_form() { qRegisterMetaType<struct_menu>("struct_menu"); }

    void open(int mode) {
        dialog = std::make_unique<dlg_menu_add>(nullptr, mode);
        added = std::make_unique<QSignalSpy>(dialog.get(), &dlg_menu_add::signal_menu_do_add);
        edited = std::make_unique<QSignalSpy>(dialog.get(), &dlg_menu_add::signal_menu_do_edit);
        dialog->show();
    }
    void open_row(const char* action, int show = 1) {
        open(1);
        struct_menu row;
        row.id = QStringLiteral("31");
        row.name = QStringLiteral("搜索");
        row.action = QLatin1String(action);
        row.sort = QStringLiteral("4");
        row.show = show;
        row.real_level = QStringLiteral("2");
        row.parent = QStringLiteral("11");
        dialog->slot_menu_to_edit(row);
    }
    template <class kind>
    kind* part(const char* name) {
        return child<kind>(dialog.get(), name);
    }
    QString text(const char* field) { return part<QLineEdit>(field)->text(); }
    void set(const char* field, const QString& typed) { part<QLineEdit>(field)->setText(typed); }
    bool checked(const char* radio) { return part<QRadioButton>(radio)->isChecked(); }
    void press(const char* radio) { part<QRadioButton>(radio)->click(); }
    void expect_custom(bool custom) {
        EXPECT_EQ(part<QComboBox>("combo_name")->isVisible(), !custom);
        EXPECT_EQ(part<QLineEdit>("txt_name")->isVisible(), custom);
        EXPECT_EQ(part<QLabel>("label_action")->isVisible(), custom);
        EXPECT_EQ(part<QLineEdit>("txt_action")->isVisible(), custom);
        for (const char* name : {"txt_sort", "txt_real_level"})
            EXPECT_TRUE(part<QLineEdit>(name)->isVisible()) << name;
    }
    struct_menu submitted(QSignalSpy& by) {
        click(dialog.get(), "btn_submit");
        EXPECT_EQ(by.size(), 1);
        EXPECT_EQ(added->size() + edited->size(), 1);
        EXPECT_EQ(dialog->result(), int(QDialog::Accepted));
        EXPECT_FALSE(dialog->isVisible());
        EXPECT_TRUE(server.requests().isEmpty()) << "the dialog itself sends nothing";
        return by.value(0).value(0).value<struct_menu>();
    }

    std::unique_ptr<dlg_menu_add> dialog;
    std::unique_ptr<QSignalSpy> added;
    std::unique_ptr<QSignalSpy> edited;
};

TEST_F(menu_form, window_labels_and_buttons) {
    open(0);
    EXPECT_EQ(dialog->windowFlags(),
              Qt::Dialog | Qt::WindowTitleHint | Qt::WindowSystemMenuHint | Qt::WindowCloseButtonHint);
    const struct {
        const char* label;
        const char* text;
    } labels[] = {{"label_mode", "模式"}, {"label_name", "中文名称"},       {"label_action", "操作"},
                  {"label_sort", "排序"}, {"label_real_level", "真实级别"}, {"label_show", "是否显示"}};
    press("radio_custom");
    QApplication::sendPostedEvents();
    int above = -1;
    for (const auto& each : labels) {
        EXPECT_EQ(part<QLabel>(each.label)->text(), QString::fromUtf8(each.text));
        EXPECT_GT(part<QLabel>(each.label)->y(), above) << each.label;
        above = part<QLabel>(each.label)->y();
    }
    EXPECT_EQ(part<QRadioButton>("radio_template")->text(), QStringLiteral("模板"));
    EXPECT_EQ(part<QRadioButton>("radio_custom")->text(), QStringLiteral("自定义"));
    EXPECT_EQ(part<QRadioButton>("radio_show")->text(), QStringLiteral("显示"));
    EXPECT_EQ(part<QRadioButton>("radio_hide")->text(), QStringLiteral("隐藏"));
    EXPECT_EQ(part<QPushButton>("btn_submit")->text(), QStringLiteral("保存"));
    EXPECT_EQ(part<QPushButton>("btn_close")->text(), QStringLiteral("取消"));
}

TEST_F(menu_form, tab_order_is_top_to_bottom) {
    open(0);
    EXPECT_EQ(
        tab_order(part<QRadioButton>("radio_template"), 11).join(QLatin1Char(' ')),
        QStringLiteral("radio_template radio_custom combo_name txt_name txt_action txt_sort txt_real_level "
                       "radio_show radio_hide btn_submit btn_close"));
}

TEST_F(menu_form, the_template_has_the_usual_rights) {
    open(0);
    const struct {
        const char* text;
        const char* data;
    } entries[] = {{"查询", "search"},
                   {"查看", "view"},
                   {"添加", "add"},
                   {"编辑", "edit"},
                   {"删除", "delete"},
                   {"打印", "print"},
                   {"添加明细", "detail_add"},
                   {"删除明细", "detail_delete"},
                   {"打印明细", "detail_print"},
                   {"添加子节点", "add_child"}};
    const auto* combo = part<QComboBox>("combo_name");
    ASSERT_EQ(combo->count(), 10);
    for (int i = 0; i < 10; ++i) {
        EXPECT_EQ(combo->itemText(i), QString::fromUtf8(entries[i].text));
        EXPECT_EQ(combo->itemData(i).toString(), QLatin1String(entries[i].data));
    }
}

TEST_F(menu_form, a_new_row_begins_with_the_template_and_shown) {
    open(0);
    EXPECT_TRUE(checked("radio_template"));
    EXPECT_FALSE(checked("radio_custom"));
    EXPECT_TRUE(checked("radio_show"));
    EXPECT_FALSE(checked("radio_hide"));
    expect_custom(false);
    EXPECT_TRUE(text("txt_sort").isEmpty() && text("txt_real_level").isEmpty());
}

TEST_F(menu_form, the_two_pairs_of_radio_buttons_are_apart) {
    open(0);
    press("radio_custom");
    EXPECT_TRUE(checked("radio_custom") && checked("radio_show"));
    expect_custom(true);
    press("radio_hide");
    EXPECT_TRUE(checked("radio_custom") && checked("radio_hide"));
    press("radio_template");
    EXPECT_TRUE(checked("radio_template") && checked("radio_hide"));
    expect_custom(false);
}

TEST_F(menu_form, the_slots_alone_show_the_fields) {
    open(0);
    dialog->on_radio_custom_clicked();
    expect_custom(true);
    dialog->on_radio_template_clicked();
    expect_custom(false);
}

TEST_F(menu_form, add_takes_name_and_action_from_the_template) {
    open(0);
    part<QComboBox>("combo_name")->setCurrentIndex(6);
    set("txt_sort", QStringLiteral("5"));
    set("txt_real_level", QStringLiteral("2"));
    press("radio_hide");
    const struct_menu row = submitted(*added);
    EXPECT_TRUE(row.id.isEmpty() && row.parent.isEmpty());
    EXPECT_EQ(row.name, QStringLiteral("添加明细"));
    EXPECT_EQ(row.action, QStringLiteral("detail_add"));
    EXPECT_EQ(row.sort, QStringLiteral("5"));
    EXPECT_EQ(row.real_level, QStringLiteral("2"));
    EXPECT_EQ(row.show, 0);
}

TEST_F(menu_form, add_takes_what_is_typed_untrimmed) {
    open(0);
    press("radio_custom");
    set("txt_name", QStringLiteral("  盘 点 "));
    set("txt_action", QStringLiteral(" a&b "));
    set("txt_sort", QStringLiteral(" x "));
    set("txt_real_level", QStringLiteral("很深"));
    const struct_menu row = submitted(*added);
    EXPECT_EQ(row.name, QStringLiteral("  盘 点 "));
    EXPECT_EQ(row.action, QStringLiteral(" a&b "));
    EXPECT_EQ(row.sort, QStringLiteral(" x "));
    EXPECT_EQ(row.real_level, QStringLiteral("很深"));
    EXPECT_EQ(row.show, 1);
}

TEST_F(menu_form, nothing_is_checked) {
    open(0);
    press("radio_custom");
    for (const char* name : {"txt_name", "txt_action", "txt_sort", "txt_real_level"})
        EXPECT_EQ(part<QLineEdit>(name)->validator(), nullptr) << name;
    const struct_menu row = submitted(*added);
    EXPECT_TRUE(row.name.isEmpty() && row.action.isEmpty() && row.sort.isEmpty() && row.real_level.isEmpty());
    EXPECT_TRUE(shown_tip().isEmpty());
}

TEST_F(menu_form, edit_shows_a_row_of_the_template) {
    open_row("delete");
    EXPECT_TRUE(checked("radio_template"));
    EXPECT_EQ(part<QComboBox>("combo_name")->currentText(), QStringLiteral("删除"));
    expect_custom(false);
    EXPECT_EQ(text("txt_sort"), QStringLiteral("4"));
    EXPECT_EQ(text("txt_real_level"), QStringLiteral("2"));
}

TEST_F(menu_form, a_row_of_the_template_gets_the_name_of_the_template) {
    open_row("search");
    const struct_menu row = submitted(*edited);
    EXPECT_EQ(row.name, QStringLiteral("查询")) << "it was called otherwise";
    EXPECT_EQ(row.action, QStringLiteral("search"));
    EXPECT_EQ(row.id, QStringLiteral("31"));
    EXPECT_EQ(row.parent, QStringLiteral("11"));
}

TEST_F(menu_form, edit_shows_and_returns_any_other_row) {
    open_row("Search");
    EXPECT_TRUE(checked("radio_custom"));
    expect_custom(true);
    EXPECT_EQ(text("txt_name"), QStringLiteral("搜索"));
    EXPECT_EQ(text("txt_action"), QStringLiteral("Search"));
    const struct_menu row = submitted(*edited);
    EXPECT_EQ(row.id, QStringLiteral("31"));
    EXPECT_EQ(row.name, QStringLiteral("搜索"));
    EXPECT_EQ(row.action, QStringLiteral("Search"));
    EXPECT_EQ(row.sort, QStringLiteral("4"));
    EXPECT_EQ(row.real_level, QStringLiteral("2"));
    EXPECT_EQ(row.show, 1);
    EXPECT_EQ(row.parent, QStringLiteral("11"));
}

TEST_F(menu_form, show_and_hide_follow_the_row) {
    for (int show : {0, 1, 2}) {
        open_row("product", show);
        EXPECT_EQ(checked("radio_show"), show == 1) << show;
        EXPECT_EQ(checked("radio_hide"), show != 1) << show;
        EXPECT_EQ(submitted(*edited).show, show == 1 ? 1 : 0);
    }
}

TEST_F(menu_form, any_mode_but_0_is_an_edit) {
    for (int mode : {1, 2, -1}) {
        open(mode);
        submitted(*edited);
    }
}

TEST_F(menu_form, cancel_and_escape_close_without_a_word) {
    open(0);
    click(dialog.get(), "btn_close");
    EXPECT_FALSE(dialog->isVisible());
    EXPECT_EQ(dialog->result(), int(QDialog::Rejected));
    open(0);
    QTest::keyClick(dialog.get(), Qt::Key_Escape);
    EXPECT_FALSE(dialog->isVisible());
    EXPECT_EQ(added->size() + edited->size(), 0);
}

TEST_F(menu_form, return_submits) {
    open(0);
    QTest::keyClick(part<QLineEdit>("txt_sort"), Qt::Key_Return);
    EXPECT_EQ(added->size(), 1);
    EXPECT_FALSE(dialog->isVisible());
}
