#include "documents/document_print.h"

#include <gtest/gtest.h>

#include "model/print_text.h"
#include "model/struct_instore.h"
#include "model/struct_outstore.h"
#include "support/screen.h"

// The print of a document byte for byte.

namespace {

const char* const style =
    "<style>table{border:1pt;border-color:#6F9CCF;color:#004EA1;border-style:solid;font-family:Microsoft "
    "YaHei;font-size:10pt}td{padding:5px}#title{font-size:16pt;color:#004EA1;text-align:center}.tr_header{"
    "background-color:#E0EEFF;font-size:11pt;}.tr_header td{align:center}td{border:1px;border-color:#6F9CCF;"
    "border-style:solid;}#table_data{margin:10pt}#td_data{padding:15px}</style>";

const char* const lines_head =
    "</td></tr><tr><td id=td_data colspan=2><table id=table_data width=100% border=1 cellpadding=0 "
    "cellspacing=0><tr class=tr_header><td>货品名称</td><td>编码</td><td>类别</td><td>规格</td><td>单价</td>"
    "<td>数量</td><td>总价</td><td>仓库</td><td>存储位置</td><td>备注</td></tr>";

/** A document of two lines, whose partner is a company or, when it has no name, a department. */
template <class document, class line>
document two_lines(const QString& company) {
    document d;
    d.sn = QStringLiteral("SN-1");
    d.operater_name = QStringLiteral("欧阳");
    d.writer_name = QStringLiteral("诸葛");
    d.company_name = company;
    d.dept_name = QStringLiteral("装配部");
    d.remark = QStringLiteral("三批<b>二</b>&amp;");
    d.total = 99;
    line first;
    first.product_name = QStringLiteral("扳手");
    first.code = QStringLiteral("BS");
    first.category_name = QStringLiteral("工具");
    first.spec = QStringLiteral("9件");
    first.price = 12.345;
    first.amount = 3;
    first.total = 1;
    first.warehouse_name = QStringLiteral("主仓");
    first.place = QStringLiteral("A1");
    first.remark = QStringLiteral("<&");
    d.details = {first, line()};
    return d;
}

QByteArray expected(const char* title, const char* company) {
    return QByteArray(style) +
           "<table width=100% border=1 cellpadding=0 cellspacing=0><tr><td id=title colspan=2>" + title +
           "</td></tr><tr><td>单号：SN-1</td><td>经办人：欧阳</td></tr><tr><td>制单人：诸葛</td>"
           "<td>供应商：" +
           company + "</td></tr><tr><td colspan=2>备注：三批<b>二</b>&amp;" + lines_head +
           "<tr><td>扳手</td><td>BS</td><td>工具</td><td>9件</td><td>" + QByteArray::number(12.345, 'f', 2) +
           "</td><td>3</td><td>" + QByteArray::number(3 * 12.345, 'f', 2) +
           "</td><td>主仓</td><td>A1</td><td><&</td></tr>"
           "<tr><td></td><td></td><td></td><td></td><td>0.00</td><td>0</td><td>0.00</td><td></td><td></td>"
           "<td></td></tr></table></td></tr>";
}

QList<QPair<QString, QString>> fields(int count) {
    QList<QPair<QString, QString>> result;
    for (int n = 0; n < count; ++n)
        result.append({QString(QLatin1Char(char('a' + n))), QString::number(n)});
    return result;
}

QByteArray head_of(int count) {
    QByteArray text = print_document_head(QStringLiteral("t"), fields(count), {QStringLiteral("h")}).toUtf8();
    text.remove(0, text.indexOf("t</td></tr>") + 11);
    return text.left(text.indexOf("<tr><td id=td_data"));
}

} // namespace

TEST(document_print, of_an_inbound_document) {
    const auto d = two_lines<struct_instore, struct_instore_detail>(QStringLiteral("五金厂"));
    EXPECT_EQ(print_document(QStringLiteral("入库明细"), d).toUtf8(), expected("入库明细", "五金厂"));
}

TEST(document_print, of_an_outbound_document) {
    const auto d = two_lines<struct_outstore, struct_outstore_detail>(QStringLiteral("五金厂"));
    EXPECT_EQ(print_document(QStringLiteral("出库明细"), d).toUtf8(), expected("出库明细", "五金厂"));
}

TEST(document_print, of_a_departments_document_leaves_the_partner_empty) {
    const auto d = two_lines<struct_instore, struct_instore_detail>(QString());
    const QByteArray text = print_document(QStringLiteral("入库明细"), d).toUtf8();
    EXPECT_EQ(text, expected("入库明细", ""));
    EXPECT_EQ(text.count("装配部"), 0);
}

TEST(document_print, without_lines_has_the_headers_alone) {
    struct_instore d;
    const QByteArray text = print_document(QStringLiteral("入库明细"), d).toUtf8();
    EXPECT_TRUE(text.endsWith(QByteArray(lines_head) + "</table></td></tr>"));
}

TEST(document_print, leaves_the_outer_table_open) {
    const QByteArray text = print_document(QStringLiteral("x"), struct_instore()).toUtf8();
    EXPECT_EQ(text.count("<table "), 2);
    EXPECT_EQ(text.count("</table>"), 1);
}

TEST(document_print, a_total_is_amount_times_price_and_not_the_lines_own) {
    auto d = two_lines<struct_outstore, struct_outstore_detail>(QString());
    d.details[0].total = 12345;
    EXPECT_EQ(print_document(QStringLiteral("x"), d).toUtf8().count("12345"), 0);
}

TEST(document_print, fields_stand_two_in_a_row_and_an_odd_last_one_spans_both_columns) {
    EXPECT_EQ(head_of(4), "<tr><td>a0</td><td>b1</td></tr><tr><td>c2</td><td>d3</td></tr>");
    EXPECT_EQ(head_of(3), "<tr><td>a0</td><td>b1</td></tr><tr><td colspan=2>c2</td></tr>");
}

TEST(document_print, of_a_list_is_head_rows_and_end) {
    const QString head =
        print_list_head(QStringLiteral("标题"), 2, {QStringLiteral("甲"), QStringLiteral("乙")});
    EXPECT_TRUE(head.endsWith(QStringLiteral(
        "<table width=100% border=1 cellpadding=5 cellspacing=-1><tr><td colspan=2 align=center id=td_title>"
        "标题</td></tr><tr id=tr_header><td>甲</td><td>乙</td></tr>")));
    EXPECT_EQ(print_row({QStringLiteral("1"), QString(), QStringLiteral("<")}),
              QStringLiteral("<tr><td>1</td><td></td><td><</td></tr>"));
    EXPECT_EQ(print_list_end(), QStringLiteral("</table>"));
}
