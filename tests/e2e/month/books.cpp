#include "e2e/month/books.h"

#include <QTableWidget>
#include <cmath>
#include <cstdlib>
#include <functional>

#include "model/list_table.h"
#include "model/model_interface.h"
#include "model/model_stock_detail.h"
#include "model/model_stock_summary.h"

namespace {

constexpr int page_size = 200;

/** Calls `take` for each row of a list, page by page. */
void walk(QTableWidget& table, model_interface& list, const std::function<void(int row)>& take) {
    for (int page = 1, pages = 1; page <= pages; ++page) {
        const auto info = list.get_page(QString(), page, page_size);
        pages = info.value(QStringLiteral("page_count")).toString().toInt();
        for (int row = 0; row < table.rowCount(); ++row)
            take(row);
    }
}

QString joined(std::initializer_list<QString> parts) {
    return QStringList(parts).join(QLatin1Char(' '));
}

QStringList sorted(QStringList lines) {
    lines.sort();
    return lines;
}

/** Half goes away from zero. */
qint64 divided(qint64 sum, qint64 count) {
    return (2 * sum + count) / (2 * count);
}

/** Of the list of stock. */
enum stock_column { id = 0, warehouse = 2, place = 3, product = 5, price = 10, amount = 11, total = 12 };
/** Of the summary. */
enum sum_column { sum_product = 1, average = 6, sum_amount = 7, sum_total = 8 };

} // namespace

QString shown_cents(qint64 cents) {
    const QString sign = cents < 0 ? QStringLiteral("-") : QString();
    const auto size = std::lldiv(std::llabs(cents), 100);
    return QStringLiteral("%1%2.%3").arg(sign).arg(size.quot).arg(size.rem, 2, 10, QLatin1Char('0'));
}

void books::open() {
    QTableWidget table;
    model_stock_detail list(&table, 0);
    walk(table, list, [&](int at) {
        row one;
        one.place = cell_text(&table, at, place);
        one.product = cell_text(&table, at, product);
        one.warehouse = cell_text(&table, at, warehouse);
        one.cents = std::llround(cell_text(&table, at, price).toDouble() * 100);
        one.amount = cell_text(&table, at, amount).toLongLong();
        all.insert(cell_text(&table, at, id), one);
    });
}

books::row& books::row_of(const row_move& move) {
    const auto known = all.find(move.stock);
    if (known != all.end()) return *known;
    row& made = all[move.place];
    made.place = move.place;
    // The document that made the row says the rest of it; it may be entered after one that takes from it.
    if (!move.product.isEmpty()) {
        made.product = move.product;
        made.warehouse = move.warehouse;
        made.cents = move.cents;
    }
    return made;
}

void books::enter(const deed& done) {
    for (const row_move& move : done.moves)
        row_of(move).amount += move.amount;
}

QStringList books::rows() const {
    QStringList lines;
    for (const row& one : all)
        if (one.amount != 0)
            lines.append(joined({one.place, one.product, one.warehouse, shown_cents(one.cents),
                                 QString::number(one.amount), shown_cents(one.amount * one.cents)}));
    return sorted(lines);
}

QStringList books::sums() const {
    struct sum {
        qint64 amount = 0;
        qint64 cents = 0;
    };
    QMap<QString, sum> of;
    for (const row& one : all) {
        if (one.amount == 0) continue;
        of[one.product].amount += one.amount;
        of[one.product].cents += one.amount * one.cents;
    }
    QStringList lines;
    for (auto one = of.cbegin(); one != of.cend(); ++one)
        lines.append(joined({one.key(), shown_cents(divided(one->cents, one->amount)),
                             QString::number(one->amount), shown_cents(one->cents)}));
    return sorted(lines);
}

QStringList books::ledger() const {
    QStringList lines;
    for (const row& one : all)
        if (one.amount != 0)
            lines.append(
                joined({one.place, QString::number(one.amount), QString::number(one.amount * one.cents)}));
    return sorted(lines);
}

QStringList books::rows_shown() {
    QTableWidget table;
    model_stock_detail list(&table, 0);
    QStringList lines;
    walk(table, list, [&](int at) {
        QStringList cells;
        for (const int column : {place, product, warehouse, price, amount, total})
            cells.append(cell_text(&table, at, column));
        lines.append(cells.join(QLatin1Char(' ')));
    });
    return sorted(lines);
}

QStringList books::sums_shown() {
    QTableWidget table;
    model_stock_summary list(&table);
    QStringList lines;
    walk(table, list, [&](int at) {
        QStringList cells;
        for (const int column : {sum_product, average, sum_amount, sum_total})
            cells.append(cell_text(&table, at, column));
        lines.append(cells.join(QLatin1Char(' ')));
    });
    return sorted(lines);
}
