#include <QVector>
#include <cmath>

#include "client/probe_calls.h"
#include "model/answers.h"
#include "model/form_body.h"
#include "net/http.h"

// Stocktakings and transfers as their editors write them, body by body: claims while the lines are added,
// then the save.

namespace {

constexpr int rounds = 5;
constexpr int counted_rows = 500;
constexpr int moved_rows = 100;

QString money(double value) {
    return QString::number(value, 'f', 2);
}

/** A line of either document: a stock row and what the editor knows of it. */
struct line {
    QString stock, product, warehouse, place, claim;
    double price;
    int amount;
};

QVector<line> lines_from(const QString& criteria, int count) {
    QVector<line> lines;
    for (const QJsonValue& row : records(QStringLiteral("wms_stock_detail/get_page"), criteria, count))
        lines.append({text_of(row, "id"), text_of(row, "product"), text_of(row, "warehouse"),
                      text_of(row, "place"), QString(), text_of(row, "price").toDouble(),
                      text_of(row, "amount").toInt()});
    return lines;
}

/** Whoever handles the goods and whoever writes it down: the same in both headers. */
void append_people(QString& args) {
    append(args, "&operater=", first_id(QStringLiteral("wms_emp/get_page")));
    append(args, "&writer=", g_http.current_user.id);
}

/** Claims the row of each line; `body` gives what is posted for one. */
template <class maker>
void claim_all(QVector<line>& lines, const char* name, maker body) {
    const answer_counter answers;
    const double begin = now_ms();
    double last = begin;
    for (line& one : lines) {
        last = now_ms();
        one.claim =
            QString::fromUtf8(g_http.post_raw(QStringLiteral("wms_stock_detail/lock_stock"), body(one)));
        if (one.claim.size() < 20) give_up("a claim was refused");
    }
    tell(name, begin, last, answers);
}

QString header(const QString& path, const QString& args, const char* refusal) {
    const auto added = read_added(g_http.post_object(path, args));
    if (!added) give_up(refusal);
    return added->id;
}

void done(const QByteArray& answer, const char* refusal) {
    if (answer.toInt() < 1) give_up(refusal);
}

QString claim_of_whole(const line& one) {
    QString args;
    append(args, "lock_type=", 2);
    append(args, "&id=", one.stock);
    return args;
}

/** One more was counted of each row; the money of a line is cut off to whole units, as the editor does. */
void count_stock() {
    QVector<line> lines = lines_from(QString(), counted_rows);
    QString head;
    append_people(head);
    claim_all(lines, "taking_claims", claim_of_whole);
    const answer_counter answers;
    const double begin = now_ms();
    const QString id = header(QStringLiteral("wms_stock_taking/do_add"), head, "a stocktaking was refused");
    double gain = 0;
    for (const line& one : lines) {
        const double worth = std::trunc(one.price);
        gain += worth;
        QString args;
        append(args, "main_id=", id);
        append(args, "&product=", one.product);
        append(args, "&price=", money(one.price));
        append(args, "&sys_amount=", one.amount);
        append(args, "&real_amount=", one.amount + 1);
        append(args, "&profitloss_amount=", 1);
        append(args, "&profitloss_total=", money(worth));
        append(args, "&remark=", QString());
        append(args, "&warehouse=", one.warehouse);
        append(args, "&stock_id=", one.stock);
        append(args, "&place=", one.place);
        append(args, "&locked_id=", one.claim);
        done(g_http.post_raw(QStringLiteral("wms_stock_taking_detail/do_add"), args),
             "a line of a stocktaking was refused");
    }
    QString closing;
    append(closing, "id=", id);
    append(closing, "&profitloss_amount=", lines.size());
    append(closing, "&profitloss_total=", money(gain));
    const double last = now_ms();
    done(g_http.post_raw(QStringLiteral("wms_stock_taking/update_profitloss"), closing),
         "the end of a stocktaking was refused");
    tell("taking", begin, last, answers);
}

QString claim_of_one(const line& one) {
    QString args;
    append(args, "lock_type=", 1);
    append(args, "&id=", one.stock);
    append(args, "&amount=", 1);
    append(args, "&total=", QString::number(one.price));
    return args;
}

/** A warehouse that is not that one. */
QString other_warehouse(const QString& source) {
    for (const QJsonValue& one : g_http.get_array(QStringLiteral("wms_warehouse/get_option"))) {
        if (text_of(one, "id") != source) return text_of(one, "id");
    }
    give_up("there is one warehouse only");
}

/** One unit of each of a hundred rows that have plenty, to another warehouse. */
void move_stock() {
    const QString plenty = QStringLiteral("remark=大宗&");
    const QString source = lines_from(plenty, 1).first().warehouse;
    QVector<line> lines = lines_from(QStringLiteral("warehouse=%1&").arg(source) + plenty, moved_rows);
    QString head;
    append(head, "&warehouse_out=", source);
    append(head, "&warehouse_in=", other_warehouse(source));
    append_people(head);
    claim_all(lines, "transfer_claims", claim_of_one);
    const answer_counter answers;
    const double begin = now_ms();
    double last = begin;
    const QString id = header(QStringLiteral("wms_stock_allot/do_add"), head, "a transfer was refused");
    for (const line& one : lines) {
        QString args;
        append(args, "main_id=", id);
        append(args, "&product=", one.product);
        append(args, "&price=", money(one.price));
        append(args, "&amount=", 1);
        append(args, "&total=", money(one.price));
        append(args, "&remark=", QString());
        append(args, "&stock_id=", one.stock);
        append(args, "&place=", QStringLiteral("9-1"));
        append(args, "&warehouse=", QString());
        append(args, "&locked_id=", one.claim);
        last = now_ms();
        done(g_http.post_raw(QStringLiteral("wms_stock_allot_detail/do_add"), args),
             "a line of a transfer was refused");
    }
    tell("transfer", begin, last, answers);
}

} // namespace

void measure_stock() {
    for (int at = 0; at < rounds; ++at) {
        count_stock();
        move_stock();
    }
}
