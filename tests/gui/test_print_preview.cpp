#include <QPointer>
#include <QPrintPreviewDialog>
#include <QPrintPreviewWidget>
#include <QPrinter>
#include <QTemporaryDir>
#include <QTextDocument>

#include "gui/tab_stock_detail_fixture.h"
#include "support/paper.h"

/** The print of the stock list, as far as the preview. */
class print_preview : public stock_tab {
protected:
    /** Opens the preview with the button and closes it after `look`. */
    void preview(const std::function<void(QPrintPreviewDialog*)>& look) {
        with_modal_of<QPrintPreviewDialog>([this] { tab->on_btn_print_clicked(); },
                                           [&](QPrintPreviewDialog* shown) {
                                               look(shown);
                                               shown->close();
                                           });
    }

    static QPrintPreviewWidget* pages_of(const QPrintPreviewDialog* shown) {
        return shown->findChild<QPrintPreviewWidget*>();
    }

    /** Has the preview painted once more; gives the printer that it does it with. */
    static QPrinter* printer_of(QPrintPreviewDialog* shown) {
        QPrinter* used = nullptr;
        const auto listening = QObject::connect(shown, &QPrintPreviewDialog::paintRequested, shown,
                                                [&used](QPrinter* printer) { used = printer; });
        pages_of(shown)->updatePreview();
        QObject::disconnect(listening);
        return used;
    }

    /** Prints from the preview to a file and gives the text on paper. */
    QString print(QPrintPreviewDialog* shown) {
        QPrinter* printer = printer_of(shown);
        printer->setOutputFormat(QPrinter::PdfFormat);
        printer->setOutputFileName(file);
        pages_of(shown)->print();
        return paper_texts(file).join(QString());
    }

    /** What the list prints now. */
    QString printed() {
        QString text;
        preview([&](QPrintPreviewDialog* shown) { text = print(shown); });
        return text;
    }

    static QString product(int n) { return QStringLiteral("货") + QString::number(n) + QStringLiteral("类"); }

    const QTemporaryDir folder;
    const QString file = folder.filePath(QStringLiteral("print.pdf"));
};

TEST_F(print_preview, window) {
    open();
    preview([this](QPrintPreviewDialog* shown) {
        EXPECT_EQ(shown->parentWidget(), tab.get());
        EXPECT_TRUE(shown->isModal());
        EXPECT_TRUE(shown->isMaximized());
        EXPECT_EQ(shown->windowFlags() & ~(Qt::WindowTitleHint | Qt::WindowSystemMenuHint),
                  Qt::Dialog | Qt::WindowMinimizeButtonHint | Qt::WindowMaximizeButtonHint |
                      Qt::WindowCloseButtonHint);
        EXPECT_EQ(shown->windowTitle(), QStringLiteral("Print Preview")) << "it gets no title of its own";
        EXPECT_EQ(shown->normalGeometry().size(), QSize(170, 221));
    });
}

TEST_F(print_preview, is_of_a4_each_time) {
    open();
    for (int i = 0; i < 3; ++i)
        preview([](QPrintPreviewDialog* shown) {
            QPrinter* printer = printer_of(shown);
            EXPECT_EQ(printer->pageLayout().pageSize().id(), QPageSize::A4);
            EXPECT_EQ(printer->pageLayout().orientation(), QPageLayout::Portrait);
            EXPECT_EQ(printer->resolution(), QPrinter().resolution());
            printer->setPageSize(QPageSize(QPageSize::Letter));
        });
}

TEST_F(print_preview, is_gone_when_it_is_closed_and_has_changed_nothing) {
    open();
    QPointer<QPrintPreviewDialog> left;
    const QStringList before = row_texts(table, 0);
    preview([&left](QPrintPreviewDialog* shown) { left = shown; });
    EXPECT_TRUE(left.isNull());
    EXPECT_EQ(row_texts(table, 0), before);
    EXPECT_TRUE(tab->isVisible());
    EXPECT_TRUE(server.requests().isEmpty()) << "printing asks the service for nothing";
}

TEST_F(print_preview, shows_what_the_tab_prints_to_its_own_printer) {
    open();
    const QPrinter* first = nullptr;
    preview([&](QPrintPreviewDialog* shown) {
        EXPECT_EQ(pages_of(shown)->pageCount(), 1);
        first = printer_of(shown);
        const QString text = print(shown);
        for (int n = 1; n <= 3; ++n)
            EXPECT_TRUE(text.contains(product(n))) << text.toStdString();
        EXPECT_TRUE(text.startsWith(QStringLiteral("库存明细仓库存储位置货品名称")));
    });
    preview([&](QPrintPreviewDialog* shown) {
        EXPECT_EQ(printer_of(shown), first);
        EXPECT_EQ(first->outputFileName(), file) << "the user's choice is kept as long as the tab is open";
    });
}

TEST_F(print_preview, its_button_prints) {
    open();
    with_modal_of<QPrintPreviewDialog>([this] { click(tab.get(), "btn_print"); },
                                       [](QPrintPreviewDialog* shown) { shown->close(); });
}

TEST_F(print_preview, holds_the_page_on_the_screen_alone) {
    open();
    server.always("wms_stock_detail/get_page", stock_page(21, 23, 3));
    click(tab.get(), "btn_search");
    EXPECT_TRUE(printed().contains(product(21)));
    server.always("wms_stock_detail/get_page", stock_page(61, 62, 3, 3));
    turn_page(tab.get(), "lbl_last");
    EXPECT_EQ(child<QLineEdit>(tab.get(), "txt_page_num")->text(), QStringLiteral("3"));
    const QString text = printed();
    EXPECT_TRUE(text.contains(product(61)) && text.contains(product(62)));
    EXPECT_FALSE(text.contains(product(21)));
    EXPECT_EQ(text.count(QStringLiteral("一号仓")), 2);
}

TEST_F(print_preview, of_an_empty_list_has_title_and_headers) {
    open();
    server.always("wms_stock_detail/get_page", stock_page(1, 0));
    click(tab.get(), "btn_search");
    EXPECT_TRUE(
        printed().startsWith(QStringLiteral("库存明细仓库存储位置货品名称类别编码规格价格数量总价备注时间")));
    EXPECT_FALSE(printed().contains(QStringLiteral("一号仓")));
}

TEST_F(print_preview, before_any_search_is_of_an_empty_text) {
    open_with({"print"});
    const QString text = printed();
    EXPECT_EQ(text, QStringLiteral("1")) << "nothing but the number of the page";
    EXPECT_EQ(server.bodies("wms_stock_detail/get_page").size(), 0);
}

TEST_F(print_preview, nothing_is_escaped) {
    open();
    QJsonObject row = stock(1);
    row[QStringLiteral("remark")] = QStringLiteral("<i>斜</i>&lt;体&gt;<!--无-->");
    server.always("wms_stock_detail/get_page", page_body({row}));
    click(tab.get(), "btn_search");
    const QString text = printed();
    EXPECT_TRUE(text.contains(QStringLiteral("斜<体>"))) << text.toStdString();
    EXPECT_FALSE(text.contains(QStringLiteral("<i>")) || text.contains(QStringLiteral("无")));
}
