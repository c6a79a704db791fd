#include <QFont>
#include <QPrinter>
#include <QTableWidget>
#include <QTemporaryDir>
#include <QTextDocument>

#include "app/startup.h"
#include "documents/document_print.h"
#include "model/model_stock_detail.h"
#include "model/struct_instore.h"
#include "support/client_fixture.h"
#include "support/pages.h"
#include "support/paper.h"
#include "support/screen.h"
#include "support/time_zone.h"
#include "widgets/print_preview.h"

// What leaves the printer: text, fonts, colours and lines of a list and of a document of several pages.

namespace {

const QColor blue(0x00, 0x4e, 0xa1);
const QColor light_blue(0x6f, 0x9c, 0xcf);
const QColor header_blue(0xe0, 0xee, 0xff);

/** Texts as they are in a warehouse. Each ends with the number of its row and a word, so that none is part of
 * another. */
QString product_text(int n) {
    return QStringLiteral("不锈钢内六角圆柱头螺钉第%1种").arg(n);
}
QString place_text(int n) {
    return QStringLiteral("东区三排货架%1层").arg(n);
}
QString remark_text(int n) {
    return QStringLiteral("验收合格，有效期至二〇二八年十二月三十一日，龘靐齉麤，第%1批").arg(n);
}
QString code_text(int n) {
    return QStringLiteral("LD-%1-甲").arg(n);
}

QByteArray stock_page(int count) {
    QJsonArray list;
    for (int n = 1; n <= count; ++n)
        list.append(QJsonObject{{QStringLiteral("id"), QString::number(n)},
                                {QStringLiteral("warehouse_name"), QStringLiteral("一号仓库")},
                                {QStringLiteral("place"), place_text(n)},
                                {QStringLiteral("product_name"), product_text(n)},
                                {QStringLiteral("category_name"), QStringLiteral("紧固件")},
                                {QStringLiteral("code"), code_text(n)},
                                {QStringLiteral("spec"), QStringLiteral("M8×30")},
                                {QStringLiteral("price"), QStringLiteral("12.50")},
                                {QStringLiteral("amount"), QString::number(n)},
                                {QStringLiteral("total"), QString::number(12.5 * n, 'f', 2)},
                                {QStringLiteral("remark"), remark_text(n)},
                                {QStringLiteral("datetime"), 1586696160 + n * 60}});
    return page_body(list);
}

struct_instore inbound_document(int lines) {
    struct_instore document;
    document.sn = QStringLiteral("CGRK202607010001");
    document.operater_name = QStringLiteral("欧阳晓峰");
    document.writer_name = QStringLiteral("诸葛明");
    document.company_name = QStringLiteral("上海浦东新区张江高科技五金紧固件有限责任公司");
    document.remark = QStringLiteral("按合同分三批交货，此为第二批；外包装完好，内有质检单");
    for (int n = 1; n <= lines; ++n) {
        struct_instore_detail line;
        line.product_name = product_text(n);
        line.code = code_text(n);
        line.category_name = QStringLiteral("紧固件");
        line.spec = QStringLiteral("M8×30");
        line.price = 12.5;
        line.amount = n;
        line.warehouse_name = QStringLiteral("一号仓库");
        line.place = place_text(n);
        line.remark = remark_text(n);
        document.details.append(line);
    }
    return document;
}

/** Enough for two pages. */
constexpr int rows = 15;

/** Whether a text stands on a page as a whole, or goes on at the next one. */
bool stands_on(const QStringList& pages, const QString& text) {
    for (int i = 0; i < pages.size(); ++i) {
        if (pages[i].contains(text)) return true;
        for (int k = 1; i + 1 < pages.size() && k < text.size(); ++k)
            if (pages[i].contains(text.left(k)) && pages[i + 1].contains(text.mid(k))) return true;
    }
    return false;
}

/** How many lines go down a page: runs of columns that are inked over most of the height between `top` and
 * `bottom`, as parts of the page's height. */
int lines_down(const QImage& page, double top, double bottom) {
    const int first = int(page.height() * top);
    const int last = int(page.height() * bottom);
    int lines = 0;
    bool in_line = false;
    for (int x = 0; x < page.width(); ++x) {
        int inked = 0;
        for (int y = first; y < last; ++y)
            if (qGray(page.pixel(x, y)) < 230) ++inked;
        const bool is_line = inked > (last - first) * 9 / 10;
        if (is_line && !in_line) ++lines;
        in_line = is_line;
    }
    return lines;
}

} // namespace

class paper : public client_test {
protected:
    paper() { stand_in_for_missing_font(); }
    ~paper() override { QFont::removeSubstitutions(QStringLiteral("Microsoft YaHei")); }

    void print(const QString& html) {
        QPrinter printer;
        printer.setOutputFormat(QPrinter::PdfFormat);
        printer.setOutputFileName(file);
        set_up_paper(printer);
        QTextDocument document;
        print_html(document, printer, html);
        texts = paper_texts(file);
    }

    void print_stock(int count) {
        server.answer(stock_page(count));
        QTableWidget table;
        print(model_stock_detail(&table, 2)
                  .get_page(QString(), 1, 20)
                  .value(QStringLiteral("html"))
                  .toString());
    }

    void print_inbound(int lines) {
        print(print_document(QStringLiteral("入库明细"), inbound_document(lines)));
    }

    void expect_on_paper(const QStringList& expected) {
        for (const QString& text : expected)
            EXPECT_TRUE(stands_on(texts, text)) << text.toStdString();
    }

    /** Checks that the texts of each row are whole and that their rows come in order. */
    void expect_rows() {
        ASSERT_GT(texts.size(), 1) << "there are enough rows for two pages";
        int before = -1;
        for (int n = 1; n <= rows; ++n) {
            expect_on_paper({product_text(n), place_text(n), remark_text(n), code_text(n)});
            const int place = texts.join(QString()).indexOf(code_text(n));
            // A row that goes on at the next page may have its code on both.
            if (place < 0) continue;
            EXPECT_GT(place, before) << n;
            before = place;
        }
    }

    const QTemporaryDir folder;
    const QString file = folder.filePath(QStringLiteral("print.pdf"));
    /** The text of each page, without white space. */
    QStringList texts;
    const scoped_time_zone zone{"UTC"};
};

TEST_F(paper, of_a_stock_list_has_every_text_whole) {
    print_stock(rows);
    EXPECT_TRUE(texts.first().startsWith(
        QStringLiteral("库存明细仓库存储位置货品名称类别编码规格价格数量总价备注时间一号仓库")));
    expect_rows();
    expect_on_paper({QStringLiteral("M8×30"), QStringLiteral("187.50"), QStringLiteral("2020-04-1213:11")});
    EXPECT_EQ(texts.join(QString()).count(QStringLiteral("紧固件")), rows);
}

TEST_F(paper, of_an_inbound_document_has_every_text_whole) {
    print_inbound(rows);
    EXPECT_TRUE(texts.first().startsWith(QStringLiteral(
        "入库明细单号：CGRK202607010001经办人：欧阳晓峰制单人：诸葛明供应商：上海浦东新区张江高科技五金紧固件"
        "有限责任公司备注：按合同分三批交货，此为第二批；外包装完好，内有质检单货品名称编码类别规格单价数量总"
        "价"
        "仓库存储位置备注不锈钢")))
        << texts.first().toStdString();
    expect_rows();
    expect_on_paper({QStringLiteral("M8×30"), QStringLiteral("187.50"), QStringLiteral("12.50")});
}

TEST_F(paper, has_its_fonts_in_the_file) {
    print_stock(3);
    const QList<paper_font> fonts = paper_fonts(file);
    ASSERT_FALSE(fonts.isEmpty());
    bool named = false;
    for (const paper_font& font : fonts) {
        EXPECT_TRUE(font.embedded) << font.name.toStdString();
        EXPECT_TRUE(font.readable) << font.name.toStdString();
        if (font.name.contains(QLatin1String("WenQuanYiMicroHei")) ||
            font.name.contains(QLatin1String("YaHei")))
            named = true;
    }
    EXPECT_TRUE(named) << "neither the named font nor its stand-in";
}

TEST_F(paper, is_a4) {
    print_stock(3);
    for (const QImage& page : paper_pages(file, 72)) {
        EXPECT_NEAR(page.width(), 595, 1);
        EXPECT_NEAR(page.height(), 842, 1);
    }
}

TEST_F(paper, of_a_stock_list_has_the_colours_and_lines_of_its_style) {
    print_stock(rows);
    const QList<QImage> pictures = paper_pages(file, 110);
    const QImage& first = pictures.first();
    EXPECT_GT(dots_of(first, header_blue), 10000) << "the header's background";
    EXPECT_GT(dots_of(first, blue), 2000) << "text and lines";
    EXPECT_EQ(dots_of(first, light_blue), 0);
    EXPECT_EQ(lines_down(first, 0.3, 0.8), 12) << "eleven columns";
    EXPECT_EQ(dots_of(pictures[1], header_blue), 0) << "the headers are not repeated";
}

TEST_F(paper, of_an_inbound_document_has_the_colours_and_lines_of_its_style) {
    print_inbound(rows);
    const QList<QImage> pictures = paper_pages(file, 110);
    const QImage& first = pictures.first();
    EXPECT_GT(dots_of(first, header_blue), 10000) << "the header's background";
    EXPECT_GT(dots_of(first, blue), 1000) << "text";
    EXPECT_GT(dots_of(first, light_blue), 2000) << "frames";
    EXPECT_EQ(lines_down(pictures[1], 0.3, 0.7), 13) << "ten columns within a frame";
}

TEST_F(paper, shows_markup_in_a_value_as_markup) {
    struct_instore document = inbound_document(1);
    document.remark = QStringLiteral("甲<b>乙</b>&lt;丙");
    print(print_document(QStringLiteral("入库明细"), document));
    EXPECT_TRUE(texts.first().contains(QStringLiteral("备注：甲乙<丙")));
}
