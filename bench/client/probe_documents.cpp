#include "client/probe_calls.h"
#include "client/watch.h"
#include "model/answers.h"
#include "model/model_instore.h"
#include "model/model_instore_detail.h"
#include "model/model_outstore.h"
#include "model/model_outstore_detail.h"
#include "model/model_stock_detail.h"
#include "net/http.h"

namespace {

constexpr int rounds = 10;
constexpr int lines = 100;
constexpr int kind_purchase = 1;
constexpr int kind_sale = 2;

/** Header and lines of a document, ready to be saved. */
struct_instore delivery() {
    struct_instore document;
    document.type = kind_purchase;
    document.company = first_id(QStringLiteral("wms_company/get_page"), QStringLiteral("type=1&"));
    document.operater = first_id(QStringLiteral("wms_emp/get_page"), QString());
    document.writer = g_http.current_user.id;
    const QString warehouse = first_id(QStringLiteral("wms_warehouse/get_page"), QString());
    const QJsonArray products = records(QStringLiteral("wms_product/get_page"), QString(), lines);
    for (int at = 0; at < lines; ++at) {
        struct_instore_detail line;
        line.product = text_of(products[at], "id");
        line.price = 12.5 + at;
        line.amount = 10 + at;
        line.total = line.price * line.amount;
        line.warehouse = warehouse;
        line.place = QStringLiteral("3-%1").arg(at);
        document.details.append(line);
    }
    return document;
}

struct_stock stock_of(const struct_instore_detail& line) {
    struct_stock stock;
    stock.product = line.product;
    stock.price = line.price;
    stock.amount = line.amount;
    stock.total = line.total;
    stock.warehouse = line.warehouse;
    stock.remark = line.remark;
    stock.place = line.place;
    return stock;
}

/** One unit of each of a hundred rows that have plenty. */
struct_outstore sale() {
    struct_outstore document;
    document.type = kind_sale;
    document.company = first_id(QStringLiteral("wms_company/get_page"), QStringLiteral("type=2&"));
    document.operater = first_id(QStringLiteral("wms_emp/get_page"), QString());
    document.writer = g_http.current_user.id;
    const QJsonArray rows =
        records(QStringLiteral("wms_stock_detail/get_page"), QStringLiteral("remark=大宗&"), lines);
    for (int at = 0; at < lines; ++at) {
        struct_outstore_detail line;
        line.stock_id = text_of(rows[at], "id");
        line.product = text_of(rows[at], "product");
        line.warehouse = text_of(rows[at], "warehouse");
        line.place = text_of(rows[at], "place");
        line.price = text_of(rows[at], "price").toDouble();
        line.amount = 1;
        line.total = line.price;
        document.details.append(line);
    }
    return document;
}

/** The requests of the editor's save, in its order. */
void save_inbound(struct_instore document) {
    const answer_counter answers;
    const double begin = now_ms();
    model_instore model(document.type);
    const auto added = read_added(model.do_add(document));
    if (!added) give_up("the header of a delivery was refused");
    double total = 0;
    for (auto& line : document.details) {
        line.main_id = added->id;
        total += line.total;
        model_instore_detail().do_add(line);
        model_stock_detail().do_add(stock_of(line));
    }
    const double closing = now_ms();
    if (!model.update_total(added->id, total)) give_up("a delivery was refused");
    tell("inbound", begin, closing, answers);
}

void claim_lines(struct_outstore& document) {
    const answer_counter answers;
    const double begin = now_ms();
    double last = begin;
    for (auto& line : document.details) {
        struct_stock stock;
        stock.id = line.stock_id;
        stock.amount = line.amount;
        stock.total = line.total;
        last = now_ms();
        line.locked_id = model_stock_detail().lock_stock(stock, lock_for_outstore);
        if (line.locked_id.size() < 20) give_up("a claim was refused");
    }
    tell("claims", begin, last, answers);
}

void save_outbound(struct_outstore document) {
    const answer_counter answers;
    const double begin = now_ms();
    model_outstore model(nullptr, document.type);
    const auto added = read_added(model.do_add(document));
    if (!added) give_up("the header of a sale was refused");
    double total = 0;
    for (auto& line : document.details) {
        line.main_id = added->id;
        total += line.total;
        model_outstore_detail().do_add(line);
    }
    const double closing = now_ms();
    if (!model.update_total(added->id, total)) give_up("a sale was refused");
    tell("outbound", begin, closing, answers);
}

} // namespace

void measure_documents() {
    const struct_instore goods_in = delivery();
    struct_outstore goods_out = sale();
    for (int at = 0; at < rounds; ++at) {
        save_inbound(goods_in);
        claim_lines(goods_out);
        save_outbound(goods_out);
    }
}
