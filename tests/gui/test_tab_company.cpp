#include <QAction>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QPushButton>
#include <QSignalSpy>
#include <QTest>

#include "gui/tab_company_fixture.h"

TEST_F(company_tab, widgets) {
    open();
    EXPECT_EQ(tab->size(), QSize(1300, 500));
    const struct {
        const char* label;
        const char* field;
        const char* text;
    } fields[] = {{"label", "txt_name", "名称"},
                  {"label_4", "txt_address", "地址"},
                  {"label_5", "txt_bank", "开户行"},
                  {"label_6", "txt_account", "银行帐号"},
                  {"label_7", "txt_remark", "备注"}};
    int left = -1;
    for (const auto& f : fields) {
        auto* edit = child<QLineEdit>(tab.get(), f.field);
        EXPECT_EQ(child<QLabel>(tab.get(), f.label)->text(), QString::fromUtf8(f.text));
        EXPECT_TRUE(edit->isClearButtonEnabled());
        EXPECT_LT(child<QLabel>(tab.get(), f.label)->x(), edit->x());
        EXPECT_GT(edit->x(), left);
        left = edit->x();
    }
    const struct {
        const char* name;
        const char* text;
    } buttons[] = {{"btn_search", "查询"}, {"btn_add", "添加"}, {"btn_edit", "编辑"}, {"btn_delete", "删除"}};
    for (const auto& b : buttons) {
        auto* button = child<QPushButton>(tab.get(), b.name);
        EXPECT_EQ(button->text(), QString::fromUtf8(b.text));
        EXPECT_GT(button->x(), left);
        left = button->x();
    }
    EXPECT_EQ(child<QPushButton>(tab.get(), "btn_add")->minimumHeight(), 30);
    EXPECT_GT(child<QLabel>(tab.get(), "lbl_total")->mapTo(tab.get(), QPoint()).y(),
              table->geometry().bottom());
}

TEST_F(company_tab, construction_alone_loads_nothing) {
    tab = std::make_unique<tab_company>(nullptr, 1);
    EXPECT_TRUE(server.requests().isEmpty());
}

TEST_F(company_tab, search_sends_kind_and_filled_fields_in_order) {
    open(3);
    server.forget();
    QSignalSpy sent(tab.get(), &tab_company::signal_send_args);
    click(tab.get(), "btn_search");
    EXPECT_EQ(server.last().body, "type=3&page_num=1&page_size=20");
    for (const char* name : {"txt_name", "txt_address", "txt_bank", "txt_account", "txt_remark"})
        child<QLineEdit>(tab.get(), name)
            ->setText(QStringLiteral("\t") + QLatin1String(name + 4) + QStringLiteral("  "));
    click(tab.get(), "btn_search");
    EXPECT_EQ(server.last().body,
              "type=3&name=name&address=address&bank=bank&account=account&remark=remark"
              "&page_num=1&page_size=20");
    child<QLineEdit>(tab.get(), "txt_name")->setText(QStringLiteral("  "));
    click(tab.get(), "btn_search");
    EXPECT_EQ(server.last().body,
              "type=3&address=address&bank=bank&account=account&remark=remark&page_num=1&page_size=20");
    EXPECT_EQ(server.requests().size(), 3);
    ASSERT_EQ(sent.size(), 3);
    EXPECT_EQ(sent[0].first().toString(), QStringLiteral("type=3"));
}

TEST_F(company_tab, return_and_enter_search_once_wherever_the_focus_is) {
    open();
    click_row(table, 0);
    server.forget();
    int expected = 0;
    for (Qt::Key key : {Qt::Key_Return, Qt::Key_Enter})
        for (const char* name : {"txt_name", "txt_remark", "tablewidget"}) {
            QTest::keyClick(child<QWidget>(tab.get(), name), key);
            EXPECT_EQ(server.requests().size(), ++expected) << name;
        }
}

TEST_F(company_tab, every_other_key_is_swallowed) {
    open();
    server.forget();
    for (int key : {int(Qt::Key_Escape), int(Qt::Key_F5), int(Qt::Key_A), int(Qt::Key_Delete)}) {
        QKeyEvent press(QEvent::KeyPress, key, Qt::NoModifier);
        QApplication::sendEvent(tab.get(), &press);
        EXPECT_TRUE(press.isAccepted()) << key;
    }
    EXPECT_TRUE(server.requests().isEmpty());
}

TEST_F(company_tab, context_menu_has_the_four_actions_with_separators) {
    open();
    EXPECT_EQ(
        menu_texts(table),
        QStringList({QStringLiteral("查询"), QStringLiteral("-"), QStringLiteral("添加"), QStringLiteral("-"),
                     QStringLiteral("编辑"), QStringLiteral("-"), QStringLiteral("删除")}));
}

TEST_F(company_tab, context_menu_opens_at_the_cursor) {
    open();
    expect_menu_at_pointer(table);
}

TEST_F(company_tab, context_menu_entries_do_what_the_buttons_do) {
    open();
    server.forget();
    action("查询")->trigger();
    EXPECT_EQ(server.paths(), QList<QByteArray>({"wms_company/get_page"}));
    with_modal([this] { action("添加")->trigger(); },
               [](QWidget* d) {
                   EXPECT_EQ(d->windowTitle(), QStringLiteral("添加来往单位"));
                   d->close();
               });
    click_row(table, 0);
    with_modal([this] { action("编辑")->trigger(); },
               [](QWidget* d) {
                   EXPECT_EQ(d->windowTitle(), QStringLiteral("编辑供应商"));
                   d->close();
               });
    with_question([this] { action("删除")->trigger(); }, QStringLiteral("确认删除"),
                  QStringLiteral("确认删除吗？"), QMessageBox::No);
    EXPECT_EQ(server.requests().size(), 1);
}

TEST_F(company_tab, page_turns_keep_the_search) {
    open();
    child<QLineEdit>(tab.get(), "txt_name")->setText(QStringLiteral("x"));
    server.always("wms_company/get_page", page_of(1, 3, 3));
    click(tab.get(), "btn_search");
    child<QLineEdit>(tab.get(), "txt_name")->setText(QStringLiteral("not searched for"));
    QTest::mousePress(child<QLabel>(tab.get(), "lbl_next"), Qt::LeftButton);
    EXPECT_EQ(server.last().body, "type=1&name=x&page_num=2&page_size=20");
}

TEST_F(company_tab, tab_order) {
    open();
    expect_tab_order(tab.get(), {"txt_name", "txt_address", "txt_bank", "txt_account", "txt_remark",
                                 "btn_search", "btn_add", "btn_edit", "btn_delete", "tablewidget"});
}

struct kind_row {
    int type;
    const char* title;
};
class company_kind : public company_tab, public testing::WithParamInterface<kind_row> {};

TEST_P(company_kind, decides_title_and_arguments) {
    open(GetParam().type);
    EXPECT_EQ(server.last().body,
              QByteArray("type=" + QByteArray::number(GetParam().type) + "&page_num=1&page_size=20"));
    click_row(table, 0);
    with_modal([this] { click(tab.get(), "btn_edit"); },
               [](QWidget* d) {
                   EXPECT_EQ(d->windowTitle(), QString::fromUtf8(GetParam().title));
                   d->close();
               });
    with_modal([this] { click(tab.get(), "btn_add"); },
               [](QWidget* d) {
                   EXPECT_EQ(d->windowTitle(), QStringLiteral("添加来往单位"));
                   d->close();
               });
}

INSTANTIATE_TEST_SUITE_P(kinds, company_kind,
                         testing::Values(kind_row{1, "编辑供应商"}, kind_row{2, "编辑客户"},
                                         kind_row{3, "编辑其他单位"}));
