#pragma once
#include <QComboBox>
#include <QDateEdit>
#include <QKeyEvent>
#include <QTest>

#include "gui/list_fixture.h"

/**
 * Screens of stock against a scripted service. Stock row n has the id n, lies in the warehouse 一号仓 (id 3)
 * and has the texts 架n, 货n, code n, spec n, remark n; its product has the id 100 + n. There is a second
 * warehouse, 二号仓 (id 8).
 */
class stock_test : public list_test {
protected:
    stock_test() {
        server.always(
            "wms_warehouse/get_option",
            R"([{"id":"3","name":"一号仓","isdefault":"0"},{"id":"8","name":"二号仓","isdefault":"1"}])");
    }

    static QJsonObject stock(int n) {
        const QString number = QString::number(n);
        return {{QStringLiteral("id"), number},
                {QStringLiteral("warehouse_name"), QStringLiteral("一号仓")},
                {QStringLiteral("warehouse"), QStringLiteral("3")},
                {QStringLiteral("place"), QStringLiteral("架") + number},
                {QStringLiteral("product_name"), QStringLiteral("货") + number},
                {QStringLiteral("product"), QString::number(100 + n)},
                {QStringLiteral("category_name"), QStringLiteral("类")},
                {QStringLiteral("category"), QStringLiteral("5")},
                {QStringLiteral("code"), QStringLiteral("code") + number},
                {QStringLiteral("spec"), QStringLiteral("spec") + number},
                {QStringLiteral("price"), number + QStringLiteral(".5")},
                {QStringLiteral("amount"), QString::number(10 * n)},
                {QStringLiteral("total"), QString::number(10 * n * (n + 0.5))},
                {QStringLiteral("remark"), QStringLiteral("remark") + number},
                {QStringLiteral("datetime"), 1586696160 + n * 60}};
    }

    /** A page with the rows `first` to `last`. */
    static QByteArray stock_page(int first, int last, int page_count = 1, int page_num = 1) {
        QJsonArray list;
        for (int n = first; n <= last; ++n)
            list.append(stock(n));
        return page_body(list, page_count, page_num);
    }

    /** The arguments for the dates that a screen opens with. */
    static QByteArray dates_of_this_year() {
        const QDate today = QDate::currentDate();
        return range(QDate(today.year(), 1, 1), today);
    }

    /** The arguments for a range of days, in the zone of UTC. */
    static QByteArray range(QDate first, QDate last) {
        const QDateTime start(first, QTime(0, 0), Qt::UTC);
        const QDateTime end(last, QTime(23, 59, 59), Qt::UTC);
        return "&date_start=" + QByteArray::number(start.toSecsSinceEpoch()) +
               "&date_end=" + QByteArray::number(end.toSecsSinceEpoch());
    }

    struct search_field {
        const char* label;
        const char* field;
        const char* text;
    };

    /** Checks the search fields of a form, which stand from left to right, and what they open with. */
    static void expect_search_fields(const QWidget* screen, const std::vector<search_field>& fields) {
        int left = -1;
        for (const auto& f : fields) {
            const auto* label = child<QLabel>(screen, f.label);
            const auto* field = child<QWidget>(screen, f.field);
            EXPECT_EQ(label->text(), QString::fromUtf8(f.text));
            EXPECT_EQ(label->buddy(), field);
            EXPECT_GT(label->x(), left) << f.label;
            EXPECT_GT(field->x(), label->x()) << f.field;
            left = field->x();
        }
        for (const char* name : {"txt_product_name", "txt_code", "txt_spec", "txt_place", "txt_remark"})
            EXPECT_TRUE(child<QLineEdit>(screen, name)->isClearButtonEnabled()) << name;
        const QDate today = QDate::currentDate();
        EXPECT_EQ(child<QDateEdit>(screen, "date_start")->date(), QDate(today.year(), 1, 1));
        EXPECT_EQ(child<QDateEdit>(screen, "date_end")->date(), today);
        for (const char* name : {"date_start", "date_end"})
            EXPECT_TRUE(child<QDateEdit>(screen, name)->calendarPopup()) << name;
        EXPECT_TRUE(child<QTableWidget>(screen, "tablewidget")->hasMouseTracking());
    }

    static void expect_warehouses(const QComboBox* combo) {
        ASSERT_EQ(combo->count(), 3);
        const QStringList names{QStringLiteral("【全部】"), QStringLiteral("一号仓"),
                                QStringLiteral("二号仓")};
        const QStringList ids{QString(), QStringLiteral("3"), QStringLiteral("8")};
        for (int i = 0; i < 3; ++i) {
            EXPECT_EQ(combo->itemText(i), names[i]);
            EXPECT_EQ(combo->itemData(i).toString(), ids[i]);
        }
        EXPECT_EQ(combo->currentIndex(), 0) << "the default warehouse is not chosen";
    }

    /** Fills the five words of a search with text and blanks around it. */
    static void fill_words(const QWidget* screen) {
        for (const char* name : {"txt_product_name", "txt_code", "txt_spec", "txt_place", "txt_remark"})
            child<QLineEdit>(screen, name)
                ->setText(QStringLiteral(" \t") + QLatin1String(name + 4) + QStringLiteral("&x "));
    }
    static constexpr const char* filled_words =
        "&product_name=product_name&x&spec=spec&x&code=code&x&place=place&x&remark=remark&x";

    static void set_dates(const QWidget* screen, QDate first, QDate last) {
        child<QDateEdit>(screen, "date_start")->setDate(first);
        child<QDateEdit>(screen, "date_end")->setDate(last);
    }

    /** Moves the mouse over a cell; gives the tool tip that the cell has then. */
    static QString tip_of_cell(QTableWidget* table, int row, int column) {
        QTest::mouseMove(table->viewport(), table->visualItemRect(table->item(row, column)).center());
        emit table->itemEntered(table->item(row, column));
        return table->item(row, column)->toolTip();
    }

    void turn_page(const QWidget* screen, const char* control) {
        QTest::mousePress(child<QLabel>(screen, control), Qt::LeftButton);
    }
};
