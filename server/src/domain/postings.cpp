#include "domain/postings.h"

#include <utility>

#include "domain/refused.h"
#include "store/records/documents.h"
#include "store/records/stock.h"

namespace tavrok::domain {

namespace {

using store::document_module;

/** The row that a line names: product and warehouse must be the row's. */
store::stock_record row_of(store::connection& with, const principal& who,
                           const store::draft_line_record& line) {
    auto row = store::read_stock(with, who.company, line.stock);
    if (!row) throw refused("unknown stock row " + std::to_string(line.stock));
    if (row->product != line.product || row->warehouse != line.warehouse) {
        throw refused("the line names other goods than stock row " + std::to_string(line.stock));
    }
    return *std::move(row);
}

/** The row that a transfer's line makes: at the line's place, at the price of the row that it takes from. */
std::int64_t row_at_destination(store::connection& with, const principal& who,
                                const store::draft_record& header, const store::stock_record& from,
                                store::draft_line_record line, std::int64_t now) {
    line.warehouse = header.warehouse_in.value_or(0);
    line.price = from.price;
    return make_stock(with, who, line, now);
}

} // namespace

std::vector<posting> enter_line(store::connection& with, const principal& who,
                                const store::draft_record& header, std::int64_t document,
                                store::draft_line_record line, std::int64_t now) {
    if (header.module == document_module::inbound) {
        line.stock = make_stock(with, who, line, now);
    } else {
        auto row = row_of(with, who, line);
        if (header.module == document_module::transfer) {
            line.stock_in = row_at_destination(with, who, header, row, line, now);
        } else {
            line.place = std::move(row.place); // where the goods lie is the row's affair
        }
    }
    const auto id = store::insert_document_line(with, who.company, document, line);
    switch (header.module) {
        case document_module::inbound:
            return {{document, id, line.stock, line.amount}};
        case document_module::outbound:
            return {{document, id, line.stock, -line.amount, line.token, claim_use::outbound}};
        case document_module::stocktaking:
            return {{document, id, line.stock, line.amount, line.token, claim_use::stocktaking}};
        case document_module::transfer:
            return {{document, id, line.stock, -line.amount, line.token, claim_use::transfer},
                    {document, id, *line.stock_in, line.amount}};
    }
    return {};
}

std::vector<posting> contrary_postings(store::connection& with, const principal& who, document_module module,
                                       std::int64_t document) {
    std::vector<posting> postings;
    const auto change = [&](std::int64_t line, std::int64_t stock, std::int64_t amount) {
        postings.push_back({document, line, stock, amount});
    };
    const auto take_back = [&](std::int64_t line, std::int64_t stock, std::int64_t amount) {
        change(line, stock, -amount);
        postings.back().undisturbed = true;
    };
    for (const auto& line : store::document_lines(with, who.company, document)) {
        switch (module) {
            case document_module::inbound:
                take_back(line.id, line.stock, line.amount);
                break;
            case document_module::outbound:
                change(line.id, line.stock, line.amount);
                break;
            case document_module::stocktaking:
                change(line.id, line.stock, -line.amount);
                break;
            case document_module::transfer:
                take_back(line.id, line.stock_in, line.amount);
                change(line.id, line.stock, line.amount);
                break;
        }
    }
    return postings;
}

} // namespace tavrok::domain
