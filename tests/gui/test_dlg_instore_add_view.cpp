#include <QPrintPreviewDialog>
#include <QPrinter>
#include <QTemporaryDir>

#include "gui/dlg_instore_fixture.h"
#include "support/paper.h"

// A saved document, on the screen and on paper.

class instore_editor_view : public instore_editor {
protected:
    static struct_instore document() {
        struct_instore d{};
        d.id = QStringLiteral("12");
        d.sn = QStringLiteral("RK0007");
        d.operater = QStringLiteral("65");
        d.operater_name = QStringLiteral("张三");
        d.writer = QStringLiteral("3");
        d.writer_name = QStringLiteral("王五");
        d.company_name = QStringLiteral("甲单位");
        d.dept_name = QStringLiteral("一车间");
        d.remark = QStringLiteral("急");
        d.total = 1234;
        auto line = line_of("9");
        line.id = QStringLiteral("31");
        line.main_id = QStringLiteral("77");
        line.changed = 0;
        d.details.append(line);
        line.id = QStringLiteral("32");
        line.product_name = QStringLiteral("锤子");
        line.amount = 3;
        line.price = 10;
        d.details.append(line);
        return d;
    }
    void view(int type = 1, const struct_instore& shown = document()) {
        open(5, type);
        editor->slot_instore_to_edit(shown);
    }
    /** Presses the button, prints to a file instead of a sheet, and gives the text that is on it, without
     * blanks. The last character is the number of the page, which the toolkit adds. */
    QString printed() {
        const QString path = folder.filePath(QStringLiteral("print.pdf"));
        with_preview([this] { click(editor.get(), "btn_print"); }, [](QPrintPreviewDialog*) {}, path);
        editor->slot_print();
        return paper_texts(path).join(QString());
    }

    QTemporaryDir folder;
};

TEST_F(instore_editor_view, shows_header_and_lines) {
    view();
    const struct {
        const char* name;
        const char* text;
    } rows[] = {{"txt_sn", "RK0007"},      {"txt_writer", "王五"}, {"txt_operater", "张三"},
                {"txt_company", "甲单位"}, {"txt_remark", "急"},   {"txt_dept", "一车间"}};
    for (const auto& r : rows)
        EXPECT_EQ(field(r.name)->text(), QString::fromUtf8(r.text));
    ASSERT_EQ(table->rowCount(), 2);
    // The stored totals are 99: what is shown is amount times price.
    expect_cells(table, 0,
                 {"31", "9", "扳手", "A1", "5", "工具", "9件", "3.46", "2", "6.91", "1", "主仓", "A-1",
                  "轻放", "0", "77"});
    expect_cells(table, 1,
                 {"32", "9", "锤子", "A1", "5", "工具", "9件", "10.00", "3", "30.00", "1", "主仓", "A-1",
                  "轻放", "0", "77"});
    EXPECT_TRUE(server.requests().isEmpty());
}

TEST_F(instore_editor_view, nothing_of_it_can_be_changed) {
    view(1);
    for (const char* name :
         {"txt_sn", "txt_writer", "txt_operater", "txt_company", "txt_remark", "txt_dept"}) {
        QTest::keyClicks(field(name), QStringLiteral("x"));
        EXPECT_FALSE(field(name)->text().contains(QLatin1Char('x'))) << name;
    }
    table->setCurrentCell(0, 2);
    QTest::keyClick(table, Qt::Key_F2);
    QTest::keyClick(table, Qt::Key_Delete);
    EXPECT_EQ(table->item(0, 2)->text(), QStringLiteral("扳手"));
    EXPECT_EQ(table->rowCount(), 2);
}

TEST_F(instore_editor_view, leaving_makes_no_call) {
    const std::function<void()> ways[] = {[this] { click(editor.get(), "btn_cancel"); },
                                          [this] { QTest::keyClick(editor.get(), Qt::Key_Escape); },
                                          [this] { editor->close(); }};
    for (const auto& leave : ways) {
        view();
        leave();
        EXPECT_FALSE(editor->isVisible());
        EXPECT_TRUE(server.requests().isEmpty());
    }
}

TEST_F(instore_editor_view, preview) {
    view();
    with_modal_of<QPrintPreviewDialog>(
        [this] { click(editor.get(), "btn_print"); },
        [this](QPrintPreviewDialog* preview) {
            EXPECT_EQ(preview->parentWidget(), editor.get());
            EXPECT_EQ(preview->printer()->pageLayout().pageSize().id(), QPageSize::A4);
            EXPECT_EQ(preview->printer()->pageLayout().orientation(), QPageLayout::Portrait);
            EXPECT_EQ(preview->printer()->resolution(), QPrinter().resolution());
            EXPECT_TRUE(preview->isMaximized());
            EXPECT_EQ(preview->windowFlags() & ~Qt::WindowTitleHint & ~Qt::WindowSystemMenuHint,
                      Qt::Dialog | Qt::WindowMinimizeButtonHint | Qt::WindowMaximizeButtonHint |
                          Qt::WindowCloseButtonHint);
            preview->close();
        });
    EXPECT_TRUE(server.requests().isEmpty());
}

TEST_F(instore_editor_view, each_preview_is_of_a4) {
    view();
    for (int i = 0; i < 3; ++i)
        with_modal_of<QPrintPreviewDialog>([this] { click(editor.get(), "btn_print"); },
                                           [](QPrintPreviewDialog* preview) {
                                               EXPECT_EQ(preview->printer()->pageLayout().pageSize().id(),
                                                         QPageSize::A4);
                                               preview->printer()->setPageSize(QPageSize(QPageSize::Letter));
                                               preview->close();
                                           });
}

TEST_F(instore_editor_view, the_menus_print_entry_would_open_the_preview_if_it_could_be_reached) {
    view();
    with_modal_of<QPrintPreviewDialog>([this] { action("打印")->trigger(); },
                                       [](QPrintPreviewDialog* preview) { preview->close(); });
}

TEST_F(instore_editor_view, on_paper) {
    view();
    EXPECT_EQ(printed(),
              QStringLiteral("入库明细单号：RK0007经办人：张三制单人：王五供应商：甲单位备注：急"
                             "货品名称编码类别规格单价数量总价仓库存储位置备注"
                             "扳手A1工具9件3.4626.91主仓A-1轻放锤子A1工具9件10.00330.00主仓A-1轻放1"));
}

TEST_F(instore_editor_view, a_department_is_not_on_paper) {
    auto shown = document();
    shown.company_name.clear();
    shown.details.clear();
    view(2, shown);
    EXPECT_EQ(field("txt_dept")->text(), QStringLiteral("一车间"));
    EXPECT_EQ(printed(), QStringLiteral("入库明细单号：RK0007经办人：张三制单人：王五供应商：备注：急"
                                        "货品名称编码类别规格单价数量总价仓库存储位置备注1"));
}

TEST_F(instore_editor_view, texts_are_markup_on_paper) {
    auto shown = document();
    shown.remark = QStringLiteral("<b>a</b>&lt;b");
    shown.details.clear();
    view(1, shown);
    EXPECT_EQ(field("txt_remark")->text(), shown.remark);
    EXPECT_TRUE(printed().contains(QStringLiteral("备注：a<b货品")));
}

TEST_F(instore_editor_view, an_edit_has_a_print_too_and_a_new_document_none) {
    open(1);
    editor->slot_instore_to_edit(document());
    EXPECT_TRUE(printed().contains(QStringLiteral("RK0007")));
    open(0);
    EXPECT_TRUE(is_hidden("btn_print"));
}
