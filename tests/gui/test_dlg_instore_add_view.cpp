#include <QPrintPreviewDialog>
#include <QPrinter>
#include <QProcess>
#include <QTemporaryDir>

#include "gui/dlg_instore_fixture.h"
#include "net/constants.h"

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
    /** Presses the button, prints to a file instead of a sheet, and gives the text that is on it. The
     * last word is the number of the page, which the toolkit adds. */
    QString printed() {
        const QString path = folder.filePath(QStringLiteral("print.pdf"));
        with_modal_of<QPrintPreviewDialog>([this] { click(editor.get(), "btn_print"); },
                                           [&](QPrintPreviewDialog* preview) {
                                               preview->printer()->setOutputFormat(QPrinter::PdfFormat);
                                               preview->printer()->setOutputFileName(path);
                                               editor->slot_print();
                                               preview->close();
                                           });
        QProcess reader;
        reader.start(QStringLiteral("pdftotext"), {QStringLiteral("-layout"), path, QStringLiteral("-")});
        EXPECT_TRUE(reader.waitForFinished());
        return QString::fromUtf8(reader.readAllStandardOutput()).simplified();
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
            EXPECT_TRUE(preview->isMaximized());
            EXPECT_EQ(preview->windowFlags() & ~Qt::WindowTitleHint & ~Qt::WindowSystemMenuHint,
                      Qt::Dialog | Qt::WindowMinimizeButtonHint | Qt::WindowMaximizeButtonHint |
                          Qt::WindowCloseButtonHint);
            preview->close();
        });
    EXPECT_TRUE(server.requests().isEmpty());
}

TEST_F(instore_editor_view, the_menus_print_entry_would_open_the_preview_if_it_could_be_reached) {
    view();
    with_modal_of<QPrintPreviewDialog>([this] { action("打印")->trigger(); },
                                       [](QPrintPreviewDialog* preview) { preview->close(); });
}

TEST_F(instore_editor_view, on_paper) {
    view();
    EXPECT_EQ(printed(),
              QStringLiteral("入库明细 单号：RK0007 经办人：张三 制单人：王五 供应商：甲单位 备注：急 "
                             "货品名称 编码 类别 规格 单价 数量 总价 仓库 存储位置 备注 "
                             "扳手 A1 工具 9件 3.46 2 6.91 主仓 A-1 轻放 "
                             "锤子 A1 工具 9件 10.00 3 30.00 主仓 A-1 轻放 1"));
}

TEST_F(instore_editor_view, a_department_is_not_on_paper) {
    auto shown = document();
    shown.company_name.clear();
    shown.details.clear();
    view(2, shown);
    EXPECT_EQ(field("txt_dept")->text(), QStringLiteral("一车间"));
    EXPECT_EQ(printed(), QStringLiteral("入库明细 单号：RK0007 经办人：张三 制单人：王五 供应商： 备注：急 "
                                        "货品名称 编码 类别 规格 单价 数量 总价 仓库 存储位置 备注 1"));
}

TEST_F(instore_editor_view, texts_are_markup_on_paper) {
    auto shown = document();
    shown.remark = QStringLiteral("<b>a</b>&lt;b");
    shown.details.clear();
    view(1, shown);
    EXPECT_EQ(field("txt_remark")->text(), shown.remark);
    EXPECT_TRUE(printed().contains(QStringLiteral("备注：a<b ")));
}

TEST_F(instore_editor_view, an_edit_has_a_print_too_and_a_new_document_none) {
    open(1);
    editor->slot_instore_to_edit(document());
    EXPECT_TRUE(printed().contains(QStringLiteral("RK0007")));
    open(0);
    EXPECT_TRUE(is_hidden("btn_print"));
}
