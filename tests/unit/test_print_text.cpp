#include "model/print_text.h"

#include <gtest/gtest.h>

#include <QTableWidget>

#include "model/list_table.h"
#include "support/screen.h"

namespace {

/** The style that stands before every printed list. */
const char* const list_style =
    "<style>table{border-color:#004EA1;color:#004EA1;border-style:solid;font-family:Microsoft YaHei;"
    "font-size:9pt;}#td_title{font-size:15pt;padding:10;}#tr_header{font-size:11pt;"
    "background-color:#E0EEFF;align:center}#tr_header td{align:center}</style>";

QString u(const char* text) {
    return QString::fromUtf8(text);
}

} // namespace

TEST(print_text, head_of_a_list) {
    EXPECT_EQ(print_list_head(u("库存汇总"), 11, {u("单号"), u("备注")}),
              u(list_style) +
                  u("<table width=100% border=1 cellpadding=5 cellspacing=-1><tr><td colspan=11 align=center "
                    "id=td_title>库存汇总</td></tr><tr id=tr_header><td>单号</td><td>备注</td></tr>"));
}

TEST(print_text, row_and_end_of_a_list) {
    EXPECT_EQ(print_row({u("a"), QString(), u("c")}), u("<tr><td>a</td><td></td><td>c</td></tr>"));
    EXPECT_EQ(print_list_end(), u("</table>"));
}

TEST(print_text, rows_of_a_table_take_the_columns_asked_for_in_their_order) {
    QTableWidget table(2, 3);
    for (int row = 0; row < 2; ++row)
        for (int column = 0; column < 3; ++column)
            set_cell(&table, row, column, QString::number(row * 10 + column));
    delete table.takeItem(1, 0);
    table.hideColumn(2);
    EXPECT_EQ(print_rows(&table, {2, 0}), u("<tr><td>2</td><td>0</td></tr><tr><td>12</td><td></td></tr>"));
    EXPECT_EQ(print_rows(&table, {}), u("<tr><td></td></tr><tr><td></td></tr>"));
    table.setRowCount(0);
    EXPECT_EQ(print_rows(&table, {2, 0}), QString());
}

TEST(print_text, nothing_is_escaped) {
    EXPECT_EQ(print_row({u("<b>&amp;\"'</b>")}), u("<tr><td><b>&amp;\"'</b></td></tr>"));
    EXPECT_TRUE(print_list_head(u("<i>"), 7, {}).contains(u("id=td_title><i></td>")));
}
