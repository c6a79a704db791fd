#include <QLabel>
#include <QPushButton>

#include "gui/tab_product_fixture.h"
#include "master/dlg_product_add.h"

class product_rows : public product_tab {
protected:
    product_rows() { open(); }

    /** Opens the dialog with a button, drives it and saves. */
    void save(const char* button, const std::function<void(dlg_product_add*)>& drive) {
        with_modal_of<dlg_product_add>([&] { click(tab.get(), button); },
                                       [&](dlg_product_add* d) {
                                           drive(d);
                                           click(d, "btn_submit");
                                       });
    }
    void add(const QString& price = QStringLiteral("2.5")) {
        save("btn_add", [&](dlg_product_add* d) {
            set_texts(d, {{"txt_name", QStringLiteral("新")}, {"txt_price", price}});
            pick_category(d, "txt_category", QStringLiteral("茶"), QStringLiteral("选择类别"));
        });
    }
    void remove(QMessageBox::StandardButton answer) {
        with_question([this] { click(tab.get(), "btn_delete"); }, QStringLiteral("确认删除"),
                      QStringLiteral("确认删除吗？"), answer);
    }
    QStringList names() { return column_texts(table, 2); }
};

TEST_F(product_rows, add_posts_and_puts_the_row_on_top) {
    click_row(table, 1);
    server.always("wms_product/do_add", R"({"http_state":"1","insert_id":"77","datetime":"1586696220"})");
    add();
    EXPECT_EQ(server.paths(), (QList<QByteArray>{"wms_prodcate/get_prodcate", "wms_product/do_add"}))
        << "no reload";
    EXPECT_EQ(server.last().body, QByteArray("name=新&category=2&price=2.50"));
    EXPECT_EQ(row_texts(table, 0), words({"77", "茶", "新", "", "", "2.50", "2", "2020-04-12 12:57"}));
    EXPECT_EQ(names(), words({"新", "货1", "货2", "货3"}));
    EXPECT_EQ(table->currentRow(), 2) << "the current row moved down with its record";
    EXPECT_EQ(child<QLabel>(tab.get(), "lbl_total")->text(), QStringLiteral("共1页/3条记录"));
}

TEST_F(product_rows, a_price_of_0_is_not_sent_by_an_add) {
    server.always("wms_product/do_add", R"({"http_state":1,"insert_id":"77","datetime":0})");
    for (const char* price : {"", "0", "0.00"}) {
        add(QLatin1String(price));
        EXPECT_EQ(server.last().body, QByteArray("name=新&category=2"));
        EXPECT_EQ(cell_text(table, 0, 5), QStringLiteral("0.00"));
        EXPECT_TRUE(cell_text(table, 0, 7).isEmpty());
    }
}

TEST_F(product_rows, the_root_assigns_category_0) {
    server.always("wms_product/do_add", R"({"http_state":1,"insert_id":"77"})");
    save("btn_add", [](dlg_product_add* d) {
        set_texts(d, {{"txt_name", QStringLiteral("新")}});
        pick_category(d, "txt_category", QStringLiteral("【货品分类】"), QStringLiteral("选择类别"));
        EXPECT_EQ(child<QLineEdit>(d, "txt_category")->text(), QStringLiteral("【货品分类】"));
    });
    EXPECT_EQ(server.last().body, QByteArray("name=新&category=0"));
    EXPECT_EQ(cell_text(table, 0, 6), QStringLiteral("0"));
}

class refused_product : public product_rows, public testing::WithParamInterface<const char*> {};

TEST_P(refused_product, add_shows_nothing_and_the_dialog_is_gone) {
    server.always("wms_product/do_add", GetParam());
    add();
    EXPECT_EQ(server.bodies("wms_product/do_add").size(), 1);
    EXPECT_EQ(names(), words({"货1", "货2", "货3"}));
    EXPECT_TRUE(shown_tip().isEmpty());
    EXPECT_EQ(QApplication::activeModalWidget(), nullptr);
}

INSTANTIATE_TEST_SUITE_P(answers, refused_product,
                         testing::Values("{\"http_state\":0}", "{\"http_state\":2,\"insert_id\":\"1\"}", "{}",
                                         "", "[1]", "7"));

TEST_F(product_rows, edit_and_delete_need_a_row) {
    click(tab.get(), "btn_edit");
    expect_tip(table, QStringLiteral("请先选中行"), QPoint(10, 30));
    click(tab.get(), "btn_delete");
    expect_tip(table, QStringLiteral("请先选中行"), QPoint(10, 30));
    EXPECT_EQ(QApplication::activeModalWidget(), nullptr);
    EXPECT_TRUE(server.requests().isEmpty());
}

TEST_F(product_rows, edit_takes_the_row_and_patches_it) {
    click_row(table, 2);
    server.answer("1");
    save("btn_edit", [](dlg_product_add* d) {
        EXPECT_EQ(d->windowTitle(), QStringLiteral("编辑货品"));
        const struct {
            const char* field;
            const char* text;
        } shown[] = {{"txt_name", "货3"},
                     {"txt_category", "类"},
                     {"txt_code", "code3"},
                     {"txt_spec", "spec3"},
                     {"txt_price", "3.50"}};
        for (const auto& s : shown)
            EXPECT_EQ(child<QLineEdit>(d, s.field)->text(), QString::fromUtf8(s.text));
        set_texts(d, {{"txt_name", QStringLiteral("改")}, {"txt_code", QString()}, {"txt_spec", QString()}});
    });
    EXPECT_EQ(server.paths(), QList<QByteArray>{"wms_product/do_edit"});
    EXPECT_EQ(server.last().body, QByteArray("id=3&name=改&category=5&price=3.50"));
    EXPECT_EQ(row_texts(table, 2), words({"3", "类", "改", "", "", "3.50", "5", "2020-04-12 12:59"}))
        << "cleared fields are shown empty, though no key went out for them";
    EXPECT_EQ(cell_text(table, 0, 7), QStringLiteral("2020-04-12 12:57")) << "the first row keeps its time";
}

TEST_F(product_rows, a_price_edited_down_to_0_is_shown_and_not_sent) {
    click_row(table, 0);
    server.answer("1");
    save("btn_edit", [](dlg_product_add* d) { set_texts(d, {{"txt_price", QStringLiteral("0")}}); });
    EXPECT_EQ(server.last().body, QByteArray("id=1&name=货1&code=code1&spec=spec1&category=5"));
    EXPECT_EQ(cell_text(table, 0, 5), QStringLiteral("0.00"));
}

TEST_F(product_rows, an_edit_can_change_the_category) {
    click_row(table, 0);
    server.always("wms_product/do_edit", "1");
    save("btn_edit", [](dlg_product_add* d) {
        pick_category(d, "txt_category", QStringLiteral("食品"), QStringLiteral("选择类别"));
    });
    EXPECT_EQ(server.last().body, QByteArray("id=1&name=货1&code=code1&spec=spec1&category=1&price=1.50"));
    EXPECT_EQ(cell_text(table, 0, 1), QStringLiteral("食品"));
    EXPECT_EQ(cell_text(table, 0, 6), QStringLiteral("1"));
}

TEST_F(product_rows, a_refused_edit_leaves_the_row_and_closes) {
    const QStringList before = row_texts(table, 1);
    for (const char* body : {"0", "-3", "", "{\"http_state\":1}"}) {
        click_row(table, 1);
        server.answer(body);
        save("btn_edit", [](dlg_product_add* d) { set_texts(d, {{"txt_name", QStringLiteral("改")}}); });
        EXPECT_EQ(row_texts(table, 1), before) << body;
        EXPECT_TRUE(shown_tip().isEmpty());
    }
}

TEST_F(product_rows, delete_asks_and_walks_from_the_last_row_to_the_first) {
    click_row(table, 0);
    click_row(table, 2, Qt::ShiftModifier);
    remove(QMessageBox::No);
    EXPECT_TRUE(server.requests().isEmpty());
    server.answer("1");
    server.answer("0");
    server.answer("1");
    remove(QMessageBox::Yes);
    EXPECT_EQ(server.bodies("wms_product/do_delete"), (QList<QByteArray>{"id=3", "id=2", "id=1"}));
    EXPECT_EQ(names(), words({"货2"})) << "a refused one stays, the next is tried";
    EXPECT_TRUE(shown_tip().isEmpty()) << "nothing is said";
    EXPECT_EQ(QApplication::activeModalWidget(), nullptr);
    EXPECT_EQ(server.requests().size(), 3) << "no reload";
}

TEST_F(product_rows, delete_passes_the_id_as_text) {
    table->item(0, 0)->setText(QStringLiteral("007x"));
    click_row(table, 0);
    remove(QMessageBox::Yes);
    EXPECT_EQ(server.last().body, "id=007x");
}

TEST_F(product_rows, the_menu_does_what_the_buttons_do) {
    click_row(table, 1);
    for (const auto& entry : {std::make_pair("添加", "添加货品"), std::make_pair("编辑", "编辑货品")})
        with_modal_of<dlg_product_add>([&] { menu_action(table, entry.first)->trigger(); },
                                       [&](dlg_product_add* d) {
                                           EXPECT_EQ(d->windowTitle(), QString::fromUtf8(entry.second));
                                           click(d, "btn_cancel");
                                       });
    with_question([this] { menu_action(table, "删除")->trigger(); }, QStringLiteral("确认删除"),
                  QStringLiteral("确认删除吗？"), QMessageBox::No);
    EXPECT_TRUE(server.requests().isEmpty());
}

TEST_F(product_rows, a_selection_from_the_bottom_upward_deletes_by_numbers_that_have_moved) {
    click_row(table, 2);
    click_row(table, 0, Qt::ControlModifier);
    server.always("wms_product/do_delete", "1");
    remove(QMessageBox::Yes);
    EXPECT_EQ(server.bodies("wms_product/do_delete"), QList<QByteArray>({"id=1", "id="}));
    EXPECT_EQ(names(), words({"货2", "货3"}));
}
