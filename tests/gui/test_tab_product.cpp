#include <QLabel>
#include <QPushButton>
#include <QSignalSpy>

#include "gui/tab_product_fixture.h"

TEST_F(product_tab, widgets) {
    open();
    EXPECT_EQ(tab->size(), QSize(1300, 500));
    const struct {
        const char* label;
        const char* field;
        const char* text;
    } fields[] = {{"label", "txt_prodcate", "类别"},
                  {"label_2", "txt_product", "货品名称"},
                  {"label_3", "txt_code", "编码"},
                  {"label_4", "txt_spec", "规格"}};
    int left = -1;
    for (const auto& f : fields) {
        auto* edit = child<QLineEdit>(tab.get(), f.field);
        const bool category = QLatin1String(f.field) == QLatin1String("txt_prodcate");
        EXPECT_EQ(child<QLabel>(tab.get(), f.label)->text(), QString::fromUtf8(f.text));
        EXPECT_LT(child<QLabel>(tab.get(), f.label)->x(), edit->x());
        EXPECT_EQ(edit->isClearButtonEnabled(), !category) << f.field;
        EXPECT_EQ(edit->isReadOnly(), category) << f.field;
        EXPECT_EQ(edit->placeholderText(), category ? QStringLiteral("点击选择类别") : QString());
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
    EXPECT_EQ(tab->findChild<QPushButton*>(QStringLiteral("btn_view")), nullptr);
    EXPECT_GT(child<QLabel>(tab.get(), "lbl_total")->mapTo(tab.get(), QPoint()).y(),
              table->geometry().bottom());
    EXPECT_EQ(tab_order(child<QLineEdit>(tab.get(), "txt_prodcate"), 9),
              words({"txt_prodcate", "txt_product", "txt_code", "txt_spec", "btn_search", "btn_add",
                     "btn_edit", "btn_delete", "tablewidget"}));
}

TEST_F(product_tab, opens_with_the_first_page_of_20_and_no_words) {
    grant("product", {"search"});
    open_with_rights_as_they_are();
    EXPECT_EQ(server.paths(), QList<QByteArray>{"wms_product/get_page"});
    EXPECT_EQ(server.last().body, "&page_num=1&page_size=20");
    EXPECT_EQ(row_texts(table, 0),
              words({"1", "类", "货1", "code1", "spec1", "1.50", "5", "2020-04-12 12:57"}));
    EXPECT_TRUE(table->isColumnHidden(0) && table->isColumnHidden(6));
}

TEST_F(product_tab, search_sends_the_filled_words_in_order) {
    open();
    QSignalSpy sent(tab.get(), &tab_product::signal_send_args);
    set_texts(tab.get(), {{"txt_product", QStringLiteral(" a b ")},
                          {"txt_code", QStringLiteral("\tc")},
                          {"txt_spec", QStringLiteral("s&t ")}});
    click(tab.get(), "btn_search");
    EXPECT_EQ(server.last().body, "&name=a b&code=c&spec=s&t&page_num=1&page_size=20");
    ASSERT_EQ(sent.size(), 1);
    EXPECT_EQ(sent[0].first().toString(), QStringLiteral("&name=a b&code=c&spec=s&t"));
    set_texts(tab.get(), {{"txt_product", QStringLiteral("  ")}, {"txt_code", QString()}});
    click(tab.get(), "btn_search");
    EXPECT_EQ(server.last().body, "&spec=s&t&page_num=1&page_size=20");
}

TEST_F(product_tab, page_turns_keep_the_search) {
    open();
    set_texts(tab.get(), {{"txt_code", QStringLiteral("x")}});
    server.always("wms_product/get_page", page_of(3, 3));
    click(tab.get(), "btn_search");
    set_texts(tab.get(), {{"txt_code", QStringLiteral("not searched for")}});
    QTest::mousePress(child<QLabel>(tab.get(), "lbl_next"), Qt::LeftButton);
    EXPECT_EQ(server.last().body, "&code=x&page_num=2&page_size=20");
}

TEST_F(product_tab, return_and_enter_search_and_other_keys_are_swallowed) {
    open();
    int expected = 0;
    for (Qt::Key key : {Qt::Key_Return, Qt::Key_Enter})
        for (const char* name : {"txt_product", "txt_prodcate", "tablewidget"}) {
            QTest::keyClick(child<QWidget>(tab.get(), name), key);
            EXPECT_EQ(server.requests().size(), ++expected) << name;
        }
    for (int key : {int(Qt::Key_Escape), int(Qt::Key_F5), int(Qt::Key_A)}) {
        QKeyEvent press(QEvent::KeyPress, key, Qt::NoModifier);
        QApplication::sendEvent(tab.get(), &press);
        EXPECT_TRUE(press.isAccepted()) << key;
    }
    EXPECT_EQ(server.requests().size(), expected);
}

TEST_F(product_tab, choosing_a_category_does_not_search) {
    open();
    pick_category(tab.get(), "txt_prodcate", QStringLiteral("茶"), QStringLiteral("选择货品类别"));
    EXPECT_EQ(child<QLineEdit>(tab.get(), "txt_prodcate")->text(), QStringLiteral("茶"));
    EXPECT_EQ(server.paths(), QList<QByteArray>{"wms_prodcate/get_prodcate"});
    set_texts(tab.get(), {{"txt_product", QStringLiteral("n")}});
    click(tab.get(), "btn_search");
    EXPECT_EQ(server.last().body, "&category=2&name=n&page_num=1&page_size=20");
}

TEST_F(product_tab, the_root_shows_all_and_is_searched_for_as_category_0) {
    open();
    pick_category(tab.get(), "txt_prodcate", QStringLiteral("【全部】"), QStringLiteral("选择货品类别"));
    EXPECT_EQ(child<QLineEdit>(tab.get(), "txt_prodcate")->text(), QStringLiteral("【全部】"));
    click(tab.get(), "btn_search");
    EXPECT_EQ(server.last().body, "&category=0&page_num=1&page_size=20");
}

TEST_F(product_tab, an_empty_id_lifts_the_restriction) {
    open();
    tab->slot_prodcate_selected({QStringLiteral("2"), QStringLiteral("茶"), QString()});
    tab->slot_prodcate_selected({QString(), QStringLiteral("x"), QString()});
    EXPECT_EQ(child<QLineEdit>(tab.get(), "txt_prodcate")->text(), QStringLiteral("【全部】"));
    click(tab.get(), "btn_search");
    EXPECT_EQ(server.last().body, "&page_num=1&page_size=20");
}

TEST_F(product_tab, a_left_press_on_the_category_is_consumed) {
    open();
    expect_left_press_alone_picks(child<QLineEdit>(tab.get(), "txt_prodcate"));
}

TEST_F(product_tab, leaving_the_picker_keeps_the_category) {
    open();
    tab->slot_prodcate_selected({QStringLiteral("2"), QStringLiteral("茶"), QString()});
    with_modal([this] { QTest::mousePress(child<QLineEdit>(tab.get(), "txt_prodcate"), Qt::LeftButton); },
               [](QWidget* picker) { click(picker, "btn_ok"); });
    EXPECT_EQ(child<QLineEdit>(tab.get(), "txt_prodcate")->text(), QStringLiteral("茶"));
}

struct product_rights_row {
    const char* what;
    std::vector<const char*> rights;
    bool search;
    bool add;
    bool edit;
    bool remove;
};
class product_rights : public product_tab, public testing::WithParamInterface<product_rights_row> {};

TEST_P(product_rights, hide_the_button_and_grey_the_entry) {
    const auto& row = GetParam();
    grant("product", row.rights);
    open_with_rights_as_they_are();
    EXPECT_EQ(server.requests().size(), row.search ? 1 : 0);
    EXPECT_EQ(tab->isEnabled(), row.search);
    const struct {
        const char* button;
        const char* entry;
        bool granted;
    } controls[] = {
        {"btn_add", "添加", row.add}, {"btn_edit", "编辑", row.edit}, {"btn_delete", "删除", row.remove}};
    for (const auto& c : controls) {
        EXPECT_EQ(child<QPushButton>(tab.get(), c.button)->isVisible(), c.granted) << c.button;
        EXPECT_EQ(menu_action(table, c.entry)->isEnabled(), c.granted) << c.entry;
    }
    EXPECT_EQ(child<QPushButton>(tab.get(), "btn_search")->isVisible(), row.search);
    EXPECT_TRUE(menu_action(table, "查询")->isEnabled());
}

INSTANTIATE_TEST_SUITE_P(
    rights, product_rights,
    testing::Values(product_rights_row{"nothing", {}, false, false, false, false},
                    product_rights_row{"all", {"search", "add", "edit", "delete"}, true, true, true, true},
                    product_rights_row{"search_alone", {"search"}, true, false, false, false},
                    product_rights_row{"add_without_search", {"add"}, false, true, false, false},
                    product_rights_row{
                        "search_and_edit", {"search", "edit", "view"}, true, false, true, false}),
    [](const auto& p) { return std::string(p.param.what); });

TEST_F(product_tab, context_menu) {
    open();
    auto* menu = table->findChild<QMenu*>();
    EXPECT_EQ(menu_texts(menu), words({"查询", "-", "添加", "-", "编辑", "-", "删除"}));
    QCursor::setPos(QPoint(123, 77));
    emit table->customContextMenuRequested(QPoint(1, 1));
    EXPECT_TRUE(menu->isVisible());
    EXPECT_EQ(menu->pos(), QCursor::pos());
    menu->close();
    menu_action(table, "查询")->trigger();
    EXPECT_EQ(server.paths(), QList<QByteArray>{"wms_product/get_page"});
}
