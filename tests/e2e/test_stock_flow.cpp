#include <QComboBox>
#include <QLineEdit>
#include <QTableWidget>
#include <QTest>

#include "documents/dlg_search_stock.h"
#include "e2e/document_flow.h"
#include "e2e/rival.h"
#include "stock/dlg_stock_allot_detail_add.h"
#include "stock/dlg_stock_taking_detail_add.h"
#include "support/modal.h"
#include "support/screen.h"

namespace {

/** Stocktakings and transfers through the screens, and the summary that tells the same of the stock. */
class stock_flow : public document_flow {
protected:
    /** Two batches of one product at two places of one warehouse. */
    void lay_out() {
        open_as(QStringLiteral("demo_admin"));
        bring_in({{0, 10, QStringLiteral("2.50"), first, QString()},
                  {0, 30, QStringLiteral("1.99"), second, QString()}});
        product = value(QStringLiteral("SELECT product FROM stock WHERE place = '%1'").arg(first));
        source = value(QStringLiteral("SELECT warehouse FROM stock WHERE place = '%1'").arg(first));
    }

    static void pick_operater(QWidget* editor) { pick_people(editor, outbound_rows[5]); }

    /** Picks the stock row at that place in a line dialog. */
    static void pick_stock(QWidget* line, const QString& place) {
        with_modal_of<dlg_search_stock>([line] { press(line, "txt_product_name"); },
                                        [&place](dlg_search_stock* picker) {
                                            EXPECT_EQ(picker->windowTitle(), QStringLiteral("选择货品库存"));
                                            child<QLineEdit>(picker, "txt_place")->setText(place);
                                            click(picker, "btn_search");
                                            ASSERT_EQ(table(picker)->rowCount(), 1);
                                            take_row(picker, 0);
                                        });
    }

    static void count_line(QWidget* editor, const QString& place, int counted) {
        with_modal_of<dlg_stock_taking_detail_add>([editor] { click(editor, "btn_add"); },
                                                   [&](dlg_stock_taking_detail_add* line) {
                                                       pick_stock(line, place);
                                                       type_into(line, "txt_real_amount",
                                                                 QString::number(counted));
                                                       click(line, "btn_submit");
                                                   });
    }

    static void move_line(QWidget* editor, const QString& place, int amount, const QString& to) {
        with_modal_of<dlg_stock_allot_detail_add>([editor] { click(editor, "btn_add"); },
                                                  [&](dlg_stock_allot_detail_add* line) {
                                                      pick_stock(line, place);
                                                      type_into(line, "txt_amount", QString::number(amount));
                                                      child<QLineEdit>(line, "txt_place")->setText(to);
                                                      click(line, "btn_save");
                                                  });
    }

    /** Chooses the warehouse of the batches as the source and another one as the destination. */
    void choose_warehouses(QWidget* editor) {
        auto* out = child<QComboBox>(editor, "comb_warehouse_out");
        auto* in = child<QComboBox>(editor, "comb_warehouse_in");
        out->setCurrentIndex(out->findData(source));
        in->setCurrentIndex(in->findData(source) == 1 ? 2 : 1);
        target = in->currentData().toString();
    }

    /** Writes a stocktaking of both batches: two less of the first, one more of the second. */
    void count_both() {
        go("stock_taking");
        with_new([this](QWidget* editor) {
            pick_operater(editor);
            count_line(editor, first, 8);
            count_line(editor, second, 31);
            click(editor, "btn_submit");
            EXPECT_FALSE(editor->isVisible());
        });
    }

    QString active_claims() const {
        return value(QStringLiteral("SELECT count(*) FROM claim WHERE state = 1"));
    }

    /** What the summary's one row of the product says: average, quantity, value. */
    QStringList summary() {
        go("stock_summary");
        click(tab, "btn_search");
        const QStringList products = column(tab, 1);
        const int row = products.indexOf(product);
        return row < 0 ? QStringList()
                       : QStringList{column(tab, 6)[row], column(tab, 7)[row], column(tab, 8)[row]};
    }

    QString on_hand(const QString& of) const {
        return value(QStringLiteral("SELECT coalesce(sum(on_hand), 0) FROM stock WHERE %1").arg(of));
    }

    const QString first = QStringLiteral("盘-1");
    const QString second = QStringLiteral("盘-2");
    const QString third = QStringLiteral("调-1");
    QString product;
    QString source;
    QString target;
};

QStringList words(std::initializer_list<const char*> texts) {
    QStringList list;
    for (const char* text : texts)
        list.append(QLatin1String(text));
    return list;
}

/** How an editor is left without saving. */
struct way_out {
    const char* name;
    void (*leave)(QWidget* editor);
};

const way_out ways_out[] = {
    {"button", [](QWidget* editor) { click(editor, "btn_cancel"); }},
    {"close_box", [](QWidget* editor) { editor->close(); }},
    {"escape", [](QWidget* editor) { QTest::keyClick(editor, Qt::Key_Escape); }},
};

class stock_flow_left : public stock_flow, public testing::WithParamInterface<way_out> {};

} // namespace

TEST_F(stock_flow, a_stocktaking_is_written_listed_viewed_and_undone) {
    lay_out();
    count_both();
    EXPECT_EQ(ledger_says(first), QStringList{first + QStringLiteral(" 8")});
    EXPECT_EQ(ledger_says(second), QStringList{second + QStringLiteral(" 31")});
    EXPECT_EQ(active_claims(), QStringLiteral("0"));
    EXPECT_EQ(column(tab, 6).first(), QStringLiteral("-1"));
    // 2 less at 2.50 are -5.00, 1 more at 1.99 is 1.00: whole money, cut off.
    EXPECT_EQ(column(tab, 7).first(), QStringLiteral("-4.00"));
    click_row(table(tab), 0);
    with_modal([this] { click(tab, "btn_view"); },
               [this](QWidget* editor) {
                   EXPECT_EQ(editor->windowTitle(), QStringLiteral("查看盘点"));
                   EXPECT_EQ(column(editor, 3), (QStringList{first, second}));
                   EXPECT_EQ(column(editor, 9), words({"10", "30"}));
                   EXPECT_EQ(column(editor, 10), words({"8", "31"}));
                   EXPECT_EQ(column(editor, 11), words({"-2", "1"}));
                   EXPECT_EQ(column(editor, 12), words({"-5.00", "1.00"}));
                   editor->close();
               });
    delete_first();
    EXPECT_EQ(ledger_says(first), QStringList{first + QStringLiteral(" 10")});
    EXPECT_EQ(ledger_says(second), QStringList{second + QStringLiteral(" 30")});
    expect_sound();
}

TEST_F(stock_flow, nobody_takes_of_a_row_that_is_being_counted) {
    lay_out();
    rival other(service->base_url(), QStringLiteral("demo_keeper"));
    const QString row = value(QStringLiteral("SELECT id FROM stock WHERE place = '%1'").arg(first));
    go("stock_taking");
    with_new([&](QWidget* editor) {
        pick_operater(editor);
        count_line(editor, first, 9);
        EXPECT_EQ(other.claim(row, 1), QStringLiteral("0"));
        click(editor, "btn_submit");
        EXPECT_FALSE(editor->isVisible());
    });
    EXPECT_NE(other.claim(row, 9), QStringLiteral("0"));
    expect_sound();
}

TEST_F(stock_flow, a_transfer_is_written_listed_viewed_and_undone) {
    lay_out();
    go("stock_allot");
    with_new([this](QWidget* editor) {
        choose_warehouses(editor);
        pick_operater(editor);
        move_line(editor, first, 4, third);
        EXPECT_EQ(picker_shows(first), QStringList{first + QStringLiteral(" 6")});
        click(editor, "btn_submit");
        EXPECT_FALSE(editor->isVisible());
    });
    EXPECT_EQ(ledger_says(first), QStringList{first + QStringLiteral(" 6")});
    EXPECT_EQ(ledger_says(third), QStringList{third + QStringLiteral(" 4")});
    EXPECT_EQ(on_hand(QStringLiteral("warehouse = %1 AND place = '%2' AND price = 250").arg(target, third)),
              QStringLiteral("4"));
    EXPECT_EQ(column(tab, 3).first(), source);
    EXPECT_EQ(column(tab, 5).first(), target);
    click_row(table(tab), 0);
    with_modal([this] { click(tab, "btn_view"); },
               [this](QWidget* editor) {
                   EXPECT_EQ(editor->windowTitle(), QStringLiteral("查看"));
                   EXPECT_EQ(column(editor, 8), QStringList{third});
                   EXPECT_EQ(column(editor, 6), words({"4"}));
                   EXPECT_EQ(column(editor, 7), words({"10.00"}));
                   EXPECT_EQ(child<QComboBox>(editor, "comb_warehouse_out")->currentData().toString(),
                             source);
                   EXPECT_EQ(child<QComboBox>(editor, "comb_warehouse_in")->currentData().toString(), target);
                   editor->close();
               });
    delete_first();
    EXPECT_EQ(ledger_says(first), QStringList{first + QStringLiteral(" 10")});
    EXPECT_EQ(ledger_says(third), QStringList());
    expect_sound();
}

TEST_F(stock_flow, a_transfer_whose_goods_have_gone_on_stays) {
    lay_out();
    go("stock_allot");
    with_new([this](QWidget* editor) {
        choose_warehouses(editor);
        pick_operater(editor);
        move_line(editor, first, 4, third);
        click(editor, "btn_submit");
    });
    const known_kind& other_out = outbound_rows[5];
    go(other_out.page);
    write_out(other_out, {{0, 1, QString(), third, QString()}}, QStringLiteral("出"));
    go("stock_allot");
    delete_first();
    EXPECT_EQ(ledger_says(third), QStringList{third + QStringLiteral(" 3")});
    EXPECT_EQ(ledger_says(first), QStringList{first + QStringLiteral(" 6")});
    EXPECT_EQ(column(tab, 3).first(), source) << "the transfer is still there";
    expect_sound();
}

TEST_F(stock_flow, the_summary_tells_what_the_rows_add_up_to) {
    lay_out();
    const QString sums = QStringLiteral(
        "SELECT sum(on_hand) || ' ' || sum(on_hand * price) FROM stock WHERE listed = 1 AND product = ");
    count_both();
    const QStringList parts = value(sums + product).split(QLatin1Char(' '));
    const qint64 amount = parts[0].toLongLong();
    const qint64 cents = parts[1].toLongLong();
    const QStringList seen = summary();
    ASSERT_EQ(seen.size(), 3);
    EXPECT_EQ(seen[1], QString::number(amount));
    EXPECT_EQ(seen[2], QString::number(double(cents) / 100, 'f', 2));
    EXPECT_EQ(seen[0], QString::number(double((2 * cents + amount) / (2 * amount)) / 100, 'f', 2));
}

TEST_P(stock_flow_left, gives_the_claims_of_a_stocktaking_back) {
    lay_out();
    go("stock_taking");
    with_new([this](QWidget* editor) {
        pick_operater(editor);
        count_line(editor, first, 9);
        count_line(editor, second, 9);
        EXPECT_EQ(active_claims(), QStringLiteral("2"));
        GetParam().leave(editor);
        EXPECT_FALSE(editor->isVisible());
    });
    EXPECT_EQ(active_claims(), QStringLiteral("0"));
    EXPECT_EQ(ledger_says(first), QStringList{first + QStringLiteral(" 10")});
}

TEST_P(stock_flow_left, gives_the_claims_of_a_transfer_back) {
    lay_out();
    go("stock_allot");
    with_new([this](QWidget* editor) {
        choose_warehouses(editor);
        move_line(editor, first, 3, third);
        EXPECT_EQ(active_claims(), QStringLiteral("1"));
        GetParam().leave(editor);
        EXPECT_FALSE(editor->isVisible());
    });
    EXPECT_EQ(active_claims(), QStringLiteral("0"));
    EXPECT_EQ(picker_shows(first), QStringList{first + QStringLiteral(" 10")});
}

INSTANTIATE_TEST_SUITE_P(ways, stock_flow_left, testing::ValuesIn(ways_out),
                         [](const auto& one) { return std::string(one.param.name); });
