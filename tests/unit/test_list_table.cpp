#include <gtest/gtest.h>

#include <QHeaderView>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTableWidget>

#include "model/record_columns.h"
#include "support/screen.h"
#include "support/time_zone.h"

namespace {

QJsonArray parse(const char* text) {
    return QJsonDocument::fromJson(text).array();
}

QString size_word(int code) {
    return code == 1 ? QStringLiteral("small") : code == 2 ? QStringLiteral("large") : QString();
}

struct thing {
    QString id;
    int kind = 0;
    int added = 0;
    QString added_text;
};

const record_columns<thing>& thing_columns() {
    static const record_columns<thing> table = {
        hidden(fitted(text_column(QStringLiteral("id"), QStringLiteral("id"), &thing::id))),
        code_column(QStringLiteral("kind"), QStringLiteral("kind"), &thing::kind),
        time_column(QStringLiteral("added"), QStringLiteral("added"), &thing::added, &thing::added_text)};
    return table;
}

} // namespace

TEST(list_cells, text_takes_json_strings_alone) {
    const QJsonArray values = parse("[\"7\",7,null,true,{}]");
    EXPECT_EQ(cell::text(values[0], QString()), QStringLiteral("7"));
    for (int i = 1; i < values.size(); ++i)
        EXPECT_TRUE(cell::text(values[i], QString()).isEmpty()) << i;
}

TEST(list_cells, numbers_come_in_either_form) {
    const QJsonArray values = parse("[\"12\",12,\"x\",null]");
    const char* const whole[] = {"12", "12", "0", "0"};
    const char* const money[] = {"12.00", "12.00", "0.00", "0.00"};
    for (int i = 0; i < 4; ++i) {
        EXPECT_EQ(cell::whole_number(values[i], QString()), QLatin1String(whole[i]));
        EXPECT_EQ(cell::money(values[i], QString()), QLatin1String(money[i]));
    }
}

TEST(list_cells, a_word_stands_for_a_code_in_either_form) {
    const QJsonArray values = parse("[1,\"2\",0,\"x\",null,\"1\"]");
    const char* const words[] = {"small", "large", "", "", "", "small"};
    for (int i = 0; i < values.size(); ++i)
        EXPECT_EQ(cell::word_for<size_word>(values[i], QStringLiteral("above")), QLatin1String(words[i]))
            << i;
}

TEST(list_cells, a_time_is_local_and_0_is_empty) {
    const QJsonArray values = parse("[1586696219,\"1586696219\",0,\"0\",null]");
    const char* const zones[] = {"Asia/Shanghai", "UTC", "America/New_York"};
    const char* const shown[] = {"2020-04-12 20:56", "2020-04-12 12:56", "2020-04-12 08:56"};
    for (int i = 0; i < 3; ++i) {
        const scoped_time_zone zone(zones[i]);
        EXPECT_EQ(cell::time(values[0], QString()), QLatin1String(shown[i]));
        EXPECT_EQ(cell::time(values[1], QString()), QLatin1String(shown[i]));
    }
    for (int i = 2; i < values.size(); ++i)
        EXPECT_TRUE(cell::time(values[i], QStringLiteral("above")).isEmpty());
}

TEST(list_cells, a_carried_time_repeats_the_row_above) {
    const scoped_time_zone zone("UTC");
    const QJsonArray values = parse("[1586696219,0]");
    EXPECT_EQ(cell::carried_time(values[0], QStringLiteral("above")), QStringLiteral("2020-04-12 12:56"));
    EXPECT_EQ(cell::carried_time(values[1], QStringLiteral("above")), QStringLiteral("above"));
    EXPECT_TRUE(cell::carried_time(values[1], QString()).isEmpty());
}

TEST(list_fill, carries_a_time_down_the_page) {
    const scoped_time_zone zone("UTC");
    QTableWidget table;
    fill_list(&table, {{QStringLiteral("t"), QStringLiteral("t"), cell::carried_time}},
              parse("[{\"t\":0},{\"t\":1586696219},{\"t\":0},{}]"));
    const char* const shown[] = {"", "2020-04-12 12:56", "2020-04-12 12:56", "2020-04-12 12:56"};
    for (int i = 0; i < 4; ++i)
        EXPECT_EQ(cell_text(&table, i, 0), QLatin1String(shown[i])) << i;
}

TEST(list_fill, replaces_rows_and_sets_the_look) {
    QTableWidget table(3, 1);
    fill_list(&table, faces(thing_columns()), parse("[{\"id\":\"4\",\"kind\":\"2\"},{}]"));
    EXPECT_EQ(table.rowCount(), 2);
    ASSERT_EQ(table.columnCount(), 3);
    EXPECT_EQ(cell_text(&table, 0, 0), QStringLiteral("4"));
    EXPECT_TRUE(table.isColumnHidden(0));
    EXPECT_FALSE(table.isColumnHidden(1));
    EXPECT_EQ(table.horizontalHeader()->sectionResizeMode(0), QHeaderView::ResizeToContents);
    EXPECT_EQ(table.horizontalHeader()->sectionResizeMode(1), QHeaderView::Stretch);
    EXPECT_EQ(table.contextMenuPolicy(), Qt::CustomContextMenu);
    EXPECT_EQ(table.editTriggers(), QAbstractItemView::NoEditTriggers);
    EXPECT_EQ(table.selectionBehavior(), QAbstractItemView::SelectRows);
    EXPECT_TRUE(table.verticalHeader()->isHidden());
}

TEST(list_rows, a_record_goes_in_and_comes_back) {
    const scoped_time_zone zone("UTC");
    QTableWidget table(0, 3);
    thing first;
    first.id = QStringLiteral("1");
    insert_record(&table, thing_columns(), first);
    thing second;
    second.id = QStringLiteral("2");
    second.kind = 5;
    second.added = 1586696219;
    insert_record(&table, thing_columns(), second);

    ASSERT_EQ(table.rowCount(), 2);
    const thing back = read_record(&table, 0, thing_columns());
    EXPECT_EQ(back.id, QStringLiteral("2"));
    EXPECT_EQ(back.kind, 5);
    EXPECT_EQ(back.added, 0) << "the row keeps the shown text alone";
    EXPECT_EQ(back.added_text, QStringLiteral("2020-04-12 12:56"));
    EXPECT_TRUE(read_record(&table, 1, thing_columns()).added_text.isEmpty());
}

TEST(list_rows, a_word_is_shown_and_not_read_back) {
    const record_columns<thing> columns = {
        word_column<size_word>(QStringLiteral("size"), QStringLiteral("kind"), &thing::kind),
        hidden(code_column(QStringLiteral("kind"), QStringLiteral("kind"), &thing::kind))};
    QTableWidget table;
    fill_list(&table, faces(columns), parse("[{\"kind\":\"2\"},{\"kind\":1}]"));
    EXPECT_EQ(cell_text(&table, 0, 0), QStringLiteral("large"));
    EXPECT_EQ(read_record(&table, 0, columns).kind, 2);
    EXPECT_EQ(cell_text(&table, 1, 0), QStringLiteral("small"));
    EXPECT_EQ(read_record(&table, 1, columns).kind, 0) << "the code itself is text alone";

    thing added;
    added.kind = 1;
    insert_record(&table, columns, added);
    EXPECT_EQ(cell_text(&table, 0, 0), QStringLiteral("small"));
    EXPECT_EQ(cell_text(&table, 0, 1), QStringLiteral("1"));
    thing edited;
    edited.kind = 3;
    patch_record(&table, 0, columns, edited, 0, 1);
    EXPECT_TRUE(cell_text(&table, 0, 0).isEmpty());
    EXPECT_EQ(read_record(&table, 0, columns).kind, 3);
}

TEST(list_rows, a_patch_rewrites_its_cells_alone) {
    QTableWidget table(0, 3);
    insert_record(&table, thing_columns(), thing());
    thing edited;
    edited.id = QStringLiteral("8");
    edited.kind = 3;
    edited.added_text = QStringLiteral("then");
    patch_record(&table, 0, thing_columns(), edited, 0, 1);
    EXPECT_EQ(cell_text(&table, 0, 0), QStringLiteral("8"));
    EXPECT_EQ(cell_text(&table, 0, 1), QStringLiteral("3"));
    EXPECT_TRUE(cell_text(&table, 0, 2).isEmpty());
    patch_record(&table, 0, thing_columns(), edited, 2, 2);
    EXPECT_EQ(cell_text(&table, 0, 2), QStringLiteral("then"));
}

TEST(list_rows, a_cell_outside_the_table_is_left_alone) {
    QTableWidget table(1, 1);
    set_cell(&table, -1, 0, QStringLiteral("x"));
    set_cell(&table, 1, 0, QStringLiteral("x"));
    set_cell(&table, 0, 1, QStringLiteral("x"));
    EXPECT_EQ(table.rowCount(), 1);
    EXPECT_TRUE(cell_text(&table, 0, 0).isEmpty());
    set_cell(&table, 0, 0, QStringLiteral("x"));
    EXPECT_EQ(cell_text(&table, 0, 0), QStringLiteral("x"));
}
