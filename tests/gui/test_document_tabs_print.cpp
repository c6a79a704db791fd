#include <QPrintPreviewWidget>
#include <QPrinter>
#include <QTemporaryDir>

#include "gui/document_tab_fixture.h"
#include "support/paper.h"
#include "widgets/paging.h"
#include "widgets/print_preview.h"

/** The toolkit puts it below the text. */
const QString g_page_number = QStringLiteral("1");

class document_list_print : public any_document_tab {
protected:
    /** The text that the last page of the list would be printed from. */
    QString html() { return tab->findChild<paging*>()->html; }

    /** Shows the preview, then prints to a file; gives what can be read there, without blanks. */
    QString on_paper(const std::function<void(QPrintPreviewDialog*)>& look = [](QPrintPreviewDialog*) {}) {
        const QString file = folder.filePath(QStringLiteral("list.pdf"));
        with_preview([this] { QMetaObject::invokeMethod(tab.get(), "on_btn_print_clicked"); }, look, file);
        QMetaObject::invokeMethod(tab.get(), "slot_print");
        return paper_texts(file).join(QString());
    }

    QTemporaryDir folder;
};

INSTANTIATE_TEST_SUITE_P(inbound, document_list_print, testing::ValuesIn(inbound_rows),
                         [](const auto& p) { return p.param.word(); });
INSTANTIATE_TEST_SUITE_P(outbound, document_list_print, testing::ValuesIn(outbound_rows),
                         [](const auto& p) { return p.param.word(); });

TEST_P(document_list_print, a_page_of_the_list_comes_out_on_paper) {
    open();
    const QString text = on_paper();
    QString expected = kind->inbound ? u("入库记录单号") : u("出库记录单号");
    expected += u(kind->header) + u("经办人制单人总价备注时间");
    for (const char* n : {"1", "2", "3"}) {
        expected += u("N-") + u(n);
        if (kind->has("dept")) expected += u("部门") + u(n);
        if (kind->has("company") || (kind->has("") && kind->inbound)) expected += u("单位") + u(n);
        expected += u("员工") + u(n) + u("用户") + u(n) + u(n) + u(".25") + u("附注") + u(n) +
                    u("2020-04-1212:5") + QString::number(6 + QString::fromLatin1(n).toInt());
    }
    EXPECT_EQ(text, expected + g_page_number);
}

TEST_P(document_list_print, preview_is_maximised_on_a4_and_shows_the_page) {
    open();
    on_paper([](QPrintPreviewDialog* preview) {
        EXPECT_TRUE(preview->windowState().testFlag(Qt::WindowMaximized));
        EXPECT_EQ(preview->windowFlags() & ~(Qt::WindowTitleHint | Qt::WindowSystemMenuHint),
                  Qt::Dialog | Qt::WindowMinimizeButtonHint | Qt::WindowMaximizeButtonHint |
                      Qt::WindowCloseButtonHint);
        EXPECT_EQ(preview->printer()->pageLayout().pageSize().id(), QPageSize::A4);
        EXPECT_EQ(preview->printer()->pageLayout().orientation(), QPageLayout::Portrait);
        EXPECT_EQ(preview->printer()->resolution(), QPrinter().resolution());
        auto* pages = preview->findChild<QPrintPreviewWidget*>();
        pages->updatePreview();
        EXPECT_EQ(pages->pageCount(), 1);
    });
    EXPECT_TRUE(server.requests().isEmpty()) << "printing asks the service for nothing";
}

TEST_P(document_list_print, each_preview_is_of_a4) {
    open();
    for (int i = 0; i < 3; ++i)
        on_paper([](QPrintPreviewDialog* preview) {
            EXPECT_EQ(preview->printer()->pageLayout().pageSize().id(), QPageSize::A4);
            preview->printer()->setPageSize(QPageSize(QPageSize::Letter));
        });
}

TEST_P(document_list_print, the_button_and_the_entry_show_the_preview) {
    open();
    int shown = 0;
    const auto look = [&shown](QPrintPreviewDialog* preview) {
        ++shown;
        preview->reject();
    };
    with_modal_of<QPrintPreviewDialog>([this] { click(tab.get(), "btn_print"); }, look);
    with_modal_of<QPrintPreviewDialog>([this] { action("打印")->trigger(); }, look);
    EXPECT_EQ(shown, 2);
    EXPECT_EQ(QApplication::activeModalWidget(), nullptr) << "a second preview";
}

TEST_P(document_list_print, a_new_page_replaces_what_is_printed) {
    open();
    server.always(path("get_page"), page_body({document(2)}));
    click(tab.get(), "btn_search");
    const QString text = on_paper();
    EXPECT_TRUE(text.contains(u("N-2")));
    EXPECT_FALSE(text.contains(u("N-1")));
    EXPECT_EQ(html().count(u("<tr><td>N-")), 1);
}

TEST_P(document_list_print, an_empty_list_prints_title_and_headers) {
    open();
    server.always(path("get_page"), "");
    click(tab.get(), "btn_search");
    EXPECT_TRUE(html().endsWith(u("<td>备注</td><td>时间</td></tr></table>")));
    EXPECT_TRUE(on_paper().startsWith(kind->inbound ? u("入库记录单号") : u("出库记录单号")));
}

TEST_P(document_list_print, before_any_search_an_empty_text_is_printed) {
    open_with(GetParam(), {"print"});
    EXPECT_TRUE(html().isEmpty());
    EXPECT_EQ(on_paper(), g_page_number);
}

TEST_P(document_list_print, values_are_read_as_html) {
    open();
    QJsonObject marked = document(1);
    marked[QStringLiteral("remark")] = u("<b>粗</b>&lt;");
    server.always(path("get_page"), page_body({marked}));
    click(tab.get(), "btn_search");
    EXPECT_TRUE(html().contains(u("<td><b>粗</b>&lt;</td>")));
    EXPECT_TRUE(on_paper().contains(u("粗<")));
}

TEST(preview_of_any_list, is_small_when_restored) {
    QPrintPreviewDialog preview;
    set_up_preview(preview);
    EXPECT_EQ(preview.size(), QSize(170, 221));
}
