#include "e2e/month/clerk.h"

#include <QComboBox>
#include <cmath>
#include <stdexcept>

#include "model/answers.h"
#include "model/document_kinds.h"
#include "model/list_table.h"
#include "model/model_company.h"
#include "model/model_emp.h"
#include "model/model_instore.h"
#include "model/model_instore_detail.h"
#include "model/model_outstore.h"
#include "model/model_outstore_detail.h"
#include "model/model_product.h"
#include "model/model_stock_allot.h"
#include "model/model_stock_allot_detail.h"
#include "model/model_stock_detail.h"
#include "model/model_stock_taking.h"
#include "model/model_stock_taking_detail.h"
#include "model/model_user.h"
#include "model/model_warehouse.h"
#include "net/http.h"
#include "net/md5_hex.h"

namespace {

constexpr int page_size = 20;
/** The top of the departments' tree: the company itself. */
const QString whole_company = QStringLiteral("0");

qint64 cents_of(double price) {
    return std::llround(price * 100);
}

template <class model>
QList<QString> first_ids(QTableWidget& table, model&& from, const QString& args) {
    from.get_page(args, 1, page_size);
    QList<QString> ids;
    for (int row = 0; row < table.rowCount(); ++row)
        ids.append(cell_text(&table, row, 0));
    if (ids.isEmpty()) throw std::runtime_error("a list that documents need is empty");
    return ids;
}

/** The numbers of rows and pages that an answer tells. */
int number_of(const QHash<QString, QVariant>& info, const char* key) {
    return info.value(QLatin1String(key)).toString().toInt();
}

template <class header>
void address(header& document, const document_kind& kind, const QString& partner) {
    document.type = kind.type;
    if (kind.partner == counterparty::company) document.company = partner;
    if (kind.partner == counterparty::dept) document.dept = whole_company;
}

/** What lines name as their document; nothing when the service refused it. */
QString line_id(const std::optional<added_record>& added) {
    return added ? added->id : QString();
}

row_move move_of(const struct_stock& row, int amount) {
    row_move move;
    move.place = row.place;
    move.stock = row.id;
    move.amount = amount;
    return move;
}

} // namespace

clerk::clerk(const QString& name, const QString& password, int his_number,
             std::function<void(const deed&)> listener)
    : random(unsigned(his_number)), number(his_number), tell(std::move(listener)) {
    if (model_user().check_login(name, md5_hex(password)) != model_user::logged_in)
        throw std::runtime_error("the clerk was not let in");
    products = first_ids(table, model_product(&table), QString());
    employees = first_ids(table, model_emp(&table), QString());
    for (int type = 1; type <= 3; ++type)
        partners[type] = first_ids(table, model_company(&table), QStringLiteral("type=%1").arg(type));
    QComboBox box;
    model_warehouse(3).get_option(&box, 2);
    for (int i = 1; i < box.count(); ++i)
        warehouses.append(box.itemData(i).toString());
}

void clerk::work(int days) {
    for (int day = 0; day < days; ++day) {
        for (int i = 0; i < 3; ++i)
            deliver();
        for (int i = 0; i < 4; ++i)
            take_out();
        transfer();
        if (day % 4 == number % 4) count_stock();
        if (day % 2 == 1) delete_one();
    }
}

QString clerk::next_remark() {
    return QStringLiteral("第%1位的第%2单。").arg(number).arg(++documents);
}

QString clerk::next_place() {
    return QStringLiteral("%1区%2号").arg(number).arg(++places);
}

QString clerk::partner_of(int type) {
    const auto& fitting = partners[type == 4 ? 1 + any(3) : type];
    return fitting[any(fitting.size())];
}

void clerk::note(const QString& remark, const deed& done) {
    tell(done);
    own.append({remark, done});
}

void clerk::deliver() {
    const auto& kind = inbound_kind(1 + any(7));
    struct_instore header;
    address(header, kind, kind.partner == counterparty::company ? partner_of(kind.company_type) : QString());
    header.operater = employees[any(employees.size())];
    header.writer = g_http.current_user.id;
    header.remark = next_remark();
    const auto added = read_added(model_instore(kind.type).do_add(header));
    deed done{QStringLiteral("in%1").arg(kind.type), {}};
    double total = 0;
    for (int lines = 1 + any(4); lines > 0; --lines) {
        struct_instore_detail line;
        line.main_id = line_id(added);
        line.product = products[any(products.size())];
        line.price = (1 + any(50000)) / 100.0;
        line.amount = 1 + any(400);
        line.total = line.amount * line.price;
        line.warehouse = warehouses[any(warehouses.size())];
        line.place = next_place();
        total += line.total;
        model_instore_detail().do_add(line);
        struct_stock stock;
        stock.product = line.product;
        stock.price = line.price;
        stock.amount = line.amount;
        stock.total = line.total;
        stock.warehouse = line.warehouse;
        stock.place = line.place;
        model_stock_detail().do_add(stock);
        done.moves.append(
            {line.place, QString(), line.product, line.warehouse, cents_of(line.price), line.amount});
    }
    if (model_instore(kind.type).update_total(line_id(added), total)) note(header.remark, done);
}

QList<struct_stock> clerk::some_rows(int most, const QString& warehouse) {
    struct_stock search;
    search.warehouse = warehouse;
    const QString args = model_stock_detail::search_args(search);
    model_stock_detail model(&table, 0);
    const int pages = number_of(model.get_page(args, 1, page_size), "page_count");
    if (pages > 1) model.get_page(args, 1 + any(pages), page_size);
    QList<struct_stock> rows;
    for (int row = 0; row < table.rowCount() && rows.size() < most; ++row) {
        const auto one = read_record(&table, row, model_stock_detail::columns());
        if (one.amount > 0 && any(3) == 0) rows.append(one);
    }
    return rows;
}

QList<clerk::claimed> clerk::claim_rows(int most, int lock_type, const QString& warehouse) {
    QList<claimed> rows;
    for (const struct_stock& row : some_rows(most, warehouse)) {
        claimed one;
        one.row = row;
        one.amount = 1 + any(qMin(row.amount, 25));
        struct_stock wish;
        wish.id = row.id;
        if (lock_type != lock_for_taking) {
            wish.amount = one.amount;
            wish.total = one.amount * row.price;
        }
        one.claim = model_stock_detail().lock_stock(wish, lock_type);
        rows.append(one);
    }
    return rows;
}

void clerk::give_back(const QList<claimed>& rows, int lock_type) {
    for (const claimed& one : rows)
        model_stock_detail().unlock_stock(one.claim, lock_type);
}

void clerk::take_out() {
    const auto rows = claim_rows(3, lock_for_outstore);
    if (rows.isEmpty()) return;
    const auto& kind = outbound_kind(1 + any(6));
    struct_outstore header;
    address(header, kind, kind.partner == counterparty::company ? partner_of(kind.company_type) : QString());
    header.operater = employees[any(employees.size())];
    header.writer = g_http.current_user.id;
    header.remark = next_remark();
    const auto added = read_added(model_outstore().do_add(header));
    deed done{QStringLiteral("out%1").arg(kind.type), {}};
    double total = 0;
    for (const claimed& one : rows) {
        struct_outstore_detail line;
        line.main_id = line_id(added);
        line.product = one.row.product;
        line.price = one.row.price + any(3);
        line.amount = one.amount;
        line.total = line.amount * line.price;
        line.warehouse = one.row.warehouse;
        line.stock_id = one.row.id;
        line.place = one.row.place;
        line.locked_id = one.claim;
        total += line.total;
        model_outstore_detail().do_add(line);
        done.moves.append(move_of(one.row, -one.amount));
    }
    if (model_outstore().update_total(line_id(added), total))
        note(header.remark, done);
    else
        give_back(rows, lock_for_outstore);
}

void clerk::count_stock() {
    const auto rows = claim_rows(4, lock_for_taking);
    if (rows.isEmpty()) return;
    struct_stock_taking header;
    header.operater = employees[any(employees.size())];
    header.writer = g_http.current_user.id;
    header.remark = next_remark();
    const auto added = read_added(model_stock_taking().do_add(header));
    deed done{QStringLiteral("taking"), {}};
    struct_stock_taking sums;
    sums.id = line_id(added);
    for (const claimed& one : rows) {
        struct_stock_taking_detail line;
        line.main_id = sums.id;
        line.stock_id = one.row.id;
        line.product = one.row.product;
        line.price = one.row.price;
        line.sys_amount = one.row.amount;
        line.real_amount = qMax(0, one.row.amount + (any(2) == 0 ? 1 + any(5) : -1 - any(5)));
        line.profitloss_amount = line.real_amount - line.sys_amount;
        line.profitloss_total = std::trunc(line.profitloss_amount * line.price);
        line.warehouse = one.row.warehouse;
        line.place = one.row.place;
        line.locked_id = one.claim;
        sums.profitloss_amount += line.profitloss_amount;
        sums.profitloss_total += line.profitloss_total;
        model_stock_taking_detail().do_add(line);
        done.moves.append(move_of(one.row, line.profitloss_amount));
    }
    if (model_stock_taking().update_profitloss(sums))
        note(header.remark, done);
    else
        give_back(rows, lock_for_taking);
}

/** A transfer says of none of its lines whether it was done: the saved document tells. */
void clerk::transfer() {
    struct_stock_allot header;
    const int from = any(warehouses.size());
    header.warehouse_out = warehouses[from];
    header.warehouse_in = warehouses[(from + 1 + any(warehouses.size() - 1)) % warehouses.size()];
    header.operater = employees[any(employees.size())];
    header.writer = g_http.current_user.id;
    header.remark = next_remark();
    const auto rows = claim_rows(2, lock_for_allot, header.warehouse_out);
    if (rows.isEmpty()) return;
    const auto added = read_added(model_stock_allot().do_add(header));
    QHash<QString, row_move> from_row;
    QHash<QString, row_move> to_row;
    for (const claimed& one : rows) {
        struct_stock_allot_detail line;
        line.main_id = line_id(added);
        line.product = one.row.product;
        line.price = one.row.price;
        line.amount = one.amount;
        line.total = one.amount * one.row.price;
        line.stock_id = one.row.id;
        line.place = next_place();
        line.locked_id = one.claim;
        from_row.insert(line.place, move_of(one.row, -one.amount));
        to_row.insert(line.place, {line.place, QString(), line.product, header.warehouse_in,
                                   cents_of(one.row.price), one.amount});
        model_stock_allot_detail().do_add(line);
    }
    const QString kind = QStringLiteral("allot");
    const QString id = find(kind, header.remark);
    if (id.isEmpty()) return;
    deed done{kind, {}};
    for (const auto& line : model_stock_allot().get_detail(id))
        done.moves << from_row.value(line.place) << to_row.value(line.place);
    note(header.remark, done);
}

QString clerk::find(const QString& kind, const QString& remark) {
    if (kind == QLatin1String("taking")) {
        model_stock_taking(&table).get_page(QStringLiteral("&remark=") + remark, 1, page_size);
    } else if (kind == QLatin1String("allot")) {
        model_stock_allot(&table).get_page(QStringLiteral("remark=") + remark, 1, page_size);
    } else if (kind.startsWith(QLatin1String("in"))) {
        struct_instore search;
        search.type = kind.midRef(2).toInt();
        search.remark = remark;
        model_instore(&table).get_page(model_instore::search_args(search), 1, page_size);
    } else {
        struct_outstore search;
        search.type = kind.midRef(3).toInt();
        search.remark = remark;
        model_outstore(&table).get_page(model_outstore::search_args(search), 1, page_size);
    }
    return table.rowCount() == 1 ? cell_text(&table, 0, 0) : QString();
}

bool clerk::delete_document(const QString& kind, const QString& id) {
    if (kind == QLatin1String("taking")) return model_stock_taking().do_delete(id);
    if (kind == QLatin1String("allot")) return model_stock_allot().do_delete(id);
    if (kind.startsWith(QLatin1String("in"))) return model_instore().do_delete(id);
    return model_outstore().do_delete(id);
}

void clerk::delete_one() {
    if (own.isEmpty()) return;
    const written chosen = own.takeAt(any(own.size()));
    const QString id = find(chosen.done.kind, chosen.remark);
    if (id.isEmpty()) throw std::runtime_error("a document that was written is in no list");
    if (!delete_document(chosen.done.kind, id)) return own.append(chosen);
    deed undone{QStringLiteral("undo ") + chosen.done.kind, chosen.done.moves};
    for (row_move& move : undone.moves)
        move.amount = -move.amount;
    tell(undone);
}
