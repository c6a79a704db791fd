#include <QAbstractButton>
#include <QApplication>
#include <QCursor>
#include <QFocusEvent>
#include <QLineEdit>
#include <QMenu>
#include <QPushButton>
#include <QRadioButton>
#include <QSignalSpy>
#include <QTest>
#include <QTreeWidget>

#include "access/dlg_menu.h"
#include "access/dlg_menu_add.h"
#include "support/client_fixture.h"
#include "support/modal.h"
#include "support/screen.h"

namespace {

const char* const menu_rows = R"([
 {"id":"100","name":"基础信息","action":"base","real_level":"0","sort":"1","show":"1","child":[
  {"id":"110","name":"货品管理","action":"product","real_level":"1","sort":"2","show":"0","child":[
   {"id":"111","name":"查询","action":"search","real_level":"2","sort":"1","show":"1","child":[]}]}]}
])";

} // namespace

class menu_dialog : public client_test {
protected:
    menu_dialog() {
        server.always("wms_menu/get_menu", menu_rows);
        dialog = std::make_unique<dlg_menu>();
        dialog->show();
        tree = child<QTreeWidget>(dialog.get(), "treewidget");
        server.forget();
    }

    QTreeWidgetItem* item(const char* id) {
        const auto found = tree->findItems(QLatin1String(id), Qt::MatchExactly | Qt::MatchRecursive, 1);
        return found.isEmpty() ? nullptr : found.first();
    }
    QTreeWidgetItem* select(const char* id) {
        tree->setCurrentItem(item(id));
        return tree->currentItem();
    }
    QAction* entry(const char* text) {
        for (QAction* each : tree->findChild<QMenu*>()->actions())
            if (each->text() == QString::fromUtf8(text)) return each;
        throw std::runtime_error(std::string("no menu entry ") + text);
    }
    static QStringList cells(const QTreeWidgetItem* of) {
        QStringList result;
        for (int i = 0; i < 7; ++i)
            result.append(of->text(i));
        return result;
    }
    /** Adds through the dialog; the service answers the addition so. */
    void add(const char* answer) {
        server.answer(answer);
        with_modal_of<dlg_menu_add>(
            [this] { entry("添加子操作")->trigger(); },
            [](dlg_menu_add* form) {
                EXPECT_EQ(form->windowTitle(), QStringLiteral("添加子操作"));
                child<QLineEdit>(form, "txt_sort")->setText(QStringLiteral("3"));
                child<QLineEdit>(form, "txt_real_level")->setText(QStringLiteral("2"));
                click(form, "btn_submit");
            });
    }
    void remove(QMessageBox::StandardButton answer) {
        with_question([this] { entry("删除")->trigger(); }, QStringLiteral("确认删除"),
                      QStringLiteral("确认删除吗？"), answer);
    }

    std::unique_ptr<dlg_menu> dialog;
    QTreeWidget* tree = nullptr;
};

TEST_F(menu_dialog, window_and_widgets) {
    EXPECT_EQ(dialog->windowFlags(),
              Qt::Dialog | Qt::WindowTitleHint | Qt::WindowSystemMenuHint | Qt::WindowCloseButtonHint);
    EXPECT_TRUE(dialog->windowTitle().isEmpty()) << "who opens it says what it is";
    EXPECT_EQ(tree->minimumWidth(), 200);
    EXPECT_EQ(tree->contextMenuPolicy(), Qt::CustomContextMenu);
    EXPECT_EQ(child<QPushButton>(dialog.get(), "btn_reload")->text(), QStringLiteral("刷新"));
    EXPECT_EQ(child<QPushButton>(dialog.get(), "btn_close")->text(), QStringLiteral("关闭"));
    EXPECT_EQ(tab_order(tree, 3), QStringList({QStringLiteral("treewidget"), QStringLiteral("btn_reload"),
                                               QStringLiteral("btn_close")}));
}

TEST_F(menu_dialog, loads_the_whole_table_when_it_is_made_and_on_reload) {
    ASSERT_EQ(tree->topLevelItemCount(), 1);
    EXPECT_EQ(tree->topLevelItem(0)->text(0), QStringLiteral("权限结构"));
    EXPECT_TRUE(item("111") != nullptr) << "a right is a row here";
    EXPECT_FALSE(tree->isHeaderHidden());
    server.answer("[]");
    click(dialog.get(), "btn_reload");
    EXPECT_EQ(server.bodies("wms_menu/get_menu"), QList<QByteArray>{"action=edit"});
    EXPECT_EQ(item("111"), nullptr);
    const dlg_menu another;
    EXPECT_EQ(server.bodies("wms_menu/get_menu").size(), 2);
}

TEST_F(menu_dialog, the_context_menu_comes_at_the_cursor) {
    auto* menu = tree->findChild<QMenu*>();
    QStringList texts;
    for (const QAction* action : menu->actions())
        if (!action->isSeparator()) texts.append(action->text());
    EXPECT_EQ(texts,
              QStringList({QStringLiteral("添加子操作"), QStringLiteral("编辑"), QStringLiteral("删除")}));
    QCursor::setPos(dialog->mapToGlobal(QPoint(60, 60)));
    emit tree->customContextMenuRequested(QPoint(1, 1));
    ASSERT_TRUE(menu->isVisible());
    EXPECT_EQ(menu->pos(), QCursor::pos());
    menu->close();
    EXPECT_FALSE(dialog->connect(tree, &QWidget::customContextMenuRequested, dialog.get(),
                                 &dlg_menu::slot_right_menu, Qt::UniqueConnection))
        << "connected already";
}

TEST_F(menu_dialog, add_goes_under_the_current_row) {
    QTreeWidgetItem* product = select("110");
    add("20009");
    EXPECT_EQ(server.paths(), QList<QByteArray>{"wms_menu/do_add"});
    EXPECT_EQ(server.last().body, "name=查询&parent=110&action=search&sort=3&show=1&real_level=2");
    ASSERT_EQ(product->childCount(), 2);
    EXPECT_EQ(
        cells(product->child(1)),
        QStringList({QStringLiteral("查询"), QStringLiteral("20009"), QStringLiteral("search"),
                     QStringLiteral("2"), QStringLiteral("3"), QStringLiteral("1"), QStringLiteral("110")}));
}

TEST_F(menu_dialog, the_first_row_under_a_row_stays_out_of_sight) {
    QTreeWidgetItem* right = select("111");
    right->setExpanded(false);
    add("20010");
    EXPECT_FALSE(right->isExpanded());
    EXPECT_EQ(right->childCount(), 1);
}

TEST_F(menu_dialog, add_under_the_root_goes_to_the_top) {
    select("0");
    add("600");
    EXPECT_TRUE(server.last().body.contains("&parent=0&"));
    EXPECT_EQ(item("600")->parent(), tree->topLevelItem(0));
}

TEST_F(menu_dialog, an_empty_answer_adds_nothing_and_nothing_is_said) {
    QTreeWidgetItem* product = select("110");
    add("");
    EXPECT_EQ(product->childCount(), 1);
    EXPECT_EQ(QApplication::activeModalWidget(), nullptr);
    EXPECT_TRUE(shown_tip().isEmpty());
}

TEST_F(menu_dialog, a_session_code_becomes_an_id_until_the_next_load) {
    select("110");
    add("7");
    EXPECT_EQ(server.paths(), QList<QByteArray>({"wms_menu/do_add", "wms/check_login"}));
    EXPECT_EQ(item("7")->parent(), item("110"));
    click(dialog.get(), "btn_reload");
    EXPECT_EQ(item("7"), nullptr);
}

TEST_F(menu_dialog, edit_shows_the_row_and_rewrites_it) {
    select("110");
    server.answer("1");
    const QSignalSpy handed(dialog.get(), &dlg_menu::signal_menu_to_edit);
    with_modal_of<dlg_menu_add>([this] { entry("编辑")->trigger(); },
                                [](dlg_menu_add* form) {
                                    EXPECT_EQ(form->windowTitle(), QStringLiteral("编辑"));
                                    EXPECT_TRUE(child<QRadioButton>(form, "radio_hide")->isChecked());
                                    child<QLineEdit>(form, "txt_name")->setText(QStringLiteral("商品"));
                                    child<QLineEdit>(form, "txt_sort")->setText(QStringLiteral("9"));
                                    child<QRadioButton>(form, "radio_show")->click();
                                    click(form, "btn_submit");
                                });
    ASSERT_EQ(handed.size(), 1);
    const auto record = handed.first().first().value<struct_menu>();
    EXPECT_EQ(record.id, QStringLiteral("110"));
    EXPECT_EQ(record.show, 0);
    EXPECT_EQ(server.paths(), QList<QByteArray>{"wms_menu/do_edit"});
    EXPECT_EQ(server.last().body, "name=商品&parent=100&action=product&sort=9&show=1&real_level=1&id=110");
    EXPECT_EQ(
        cells(item("110")),
        QStringList({QStringLiteral("商品"), QStringLiteral("110"), QStringLiteral("product"),
                     QStringLiteral("1"), QStringLiteral("9"), QStringLiteral("1"), QStringLiteral("100")}));
    EXPECT_EQ(item("110")->childCount(), 1);
}

TEST_F(menu_dialog, a_refused_edit_leaves_the_row) {
    for (const char* answer : {"0", "", "-1", "x"}) {
        const QStringList before = cells(select("110"));
        server.answer(answer);
        with_modal_of<dlg_menu_add>([this] { entry("编辑")->trigger(); },
                                    [](dlg_menu_add* form) {
                                        child<QLineEdit>(form, "txt_name")->setText(QStringLiteral("商品"));
                                        click(form, "btn_submit");
                                    });
        EXPECT_EQ(cells(item("110")), before) << answer;
        EXPECT_EQ(QApplication::activeModalWidget(), nullptr);
    }
}

TEST_F(menu_dialog, cancelling_a_form_sends_nothing) {
    select("110");
    for (const char* text : {"添加子操作", "编辑"})
        with_modal_of<dlg_menu_add>([this, text] { entry(text)->trigger(); },
                                    [](dlg_menu_add* form) { click(form, "btn_close"); });
    EXPECT_TRUE(server.requests().isEmpty());
}

TEST_F(menu_dialog, delete_asks_and_takes_the_row_away_when_the_service_agreed) {
    select("110");
    remove(QMessageBox::No);
    EXPECT_TRUE(server.requests().isEmpty());
    for (const char* refusal : {"0", "", "x"}) {
        server.answer(refusal);
        remove(QMessageBox::Yes);
        EXPECT_TRUE(item("110") != nullptr && item("111") != nullptr) << refusal;
    }
    server.forget();
    server.answer("1");
    remove(QMessageBox::Yes);
    EXPECT_EQ(server.paths(), QList<QByteArray>{"wms_menu/do_delete"});
    EXPECT_EQ(server.last().body, "id=110");
    EXPECT_EQ(item("110"), nullptr);
    EXPECT_EQ(item("111"), nullptr) << "with what stood under it";
    EXPECT_TRUE(item("100") != nullptr);
}

TEST_F(menu_dialog, without_a_current_row_nothing_is_sent_and_deletion_still_asks) {
    tree->setCurrentItem(nullptr);
    const QSignalSpy handed(dialog.get(), &dlg_menu::signal_menu_to_edit);
    entry("添加子操作")->trigger();
    entry("编辑")->trigger();
    EXPECT_EQ(QApplication::activeModalWidget(), nullptr);
    EXPECT_EQ(handed.size(), 0);
    remove(QMessageBox::Yes);
    dialog->slot_menu_do_add(struct_menu());
    dialog->slot_menu_do_edit(struct_menu());
    EXPECT_TRUE(server.requests().isEmpty());
}

TEST_F(menu_dialog, deletion_after_a_load_without_a_current_row_sends_nothing) {
    dialog->on_btn_reload_clicked();
    ASSERT_EQ(tree->currentItem(), nullptr);
    server.forget();
    with_modal_of<QMessageBox>([this] { entry("删除")->trigger(); },
                               [this](QMessageBox* box) {
                                   QFocusEvent back(QEvent::FocusIn);
                                   QApplication::sendEvent(tree, &back);
                                   EXPECT_NE(tree->currentItem(), nullptr);
                                   box->button(QMessageBox::Yes)->click();
                               });
    EXPECT_TRUE(server.requests().isEmpty())
        << "the row that the returning focus makes current was not the one asked about";
}

TEST_F(menu_dialog, the_root_can_be_edited_and_deleted_like_any_row) {
    select("0");
    server.answer("0");
    with_modal_of<dlg_menu_add>([this] { entry("编辑")->trigger(); },
                                [](dlg_menu_add* form) { click(form, "btn_submit"); });
    EXPECT_EQ(server.paths(), QList<QByteArray>{"wms_menu/do_edit"});
    EXPECT_TRUE(server.last().body.endsWith("&id=0"));
    server.answer("0");
    remove(QMessageBox::Yes);
    EXPECT_EQ(server.last().path, "wms_menu/do_delete");
    EXPECT_EQ(server.last().body, "id=0");
    EXPECT_TRUE(item("0") != nullptr) << "the service refuses both";
}

TEST_F(menu_dialog, a_load_while_a_change_is_being_saved_does_no_harm) {
    for (const char* path : {"wms_menu/do_add", "wms_menu/do_edit", "wms_menu/do_delete"})
        server.always(path, [this](const recorded_request&) {
            tree->clear();
            return scripted_answer("1");
        });
    select("110");
    dialog->slot_menu_do_add(struct_menu());
    click(dialog.get(), "btn_reload");
    select("110");
    dialog->slot_menu_do_edit(struct_menu());
    click(dialog.get(), "btn_reload");
    select("110");
    remove(QMessageBox::Yes);
    EXPECT_EQ(tree->topLevelItemCount(), 0) << "what was loaded stays as it is";
}

TEST_F(menu_dialog, close_and_escape_close_it_and_return_does_nothing) {
    QTest::keyClick(tree, Qt::Key_Return);
    EXPECT_TRUE(dialog->isVisible());
    click(dialog.get(), "btn_close");
    EXPECT_FALSE(dialog->isVisible());
    dialog->show();
    QTest::keyClick(dialog.get(), Qt::Key_Escape);
    EXPECT_FALSE(dialog->isVisible());
    EXPECT_TRUE(server.requests().isEmpty());
}
