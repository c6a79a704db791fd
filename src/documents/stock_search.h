#pragma once
#include <QComboBox>

#include "model/model_warehouse.h"
#include "model/struct_stock.h"
#include "widgets/date_range.h"
#include "widgets/fields.h"

/** Offers all warehouses to search in; the first entry lifts the restriction. */
inline void offer_warehouses(QComboBox* combo) {
    constexpr int with_all = 4;
    constexpr int without_default = 2;
    model_warehouse(with_all).get_option(combo, without_default);
}

/** Takes dates and words of a search for stock from its form; the warehouse is the screen's own matter. */
template <class form>
void take_stock_words(struct_stock& search, const form& ui) {
    search.date_start = first_second_of(ui.date_start);
    search.date_end = last_second_of(ui.date_end);
    search.product_name = field_text(ui.txt_product_name);
    search.spec = field_text(ui.txt_spec);
    search.code = field_text(ui.txt_code);
    search.remark = field_text(ui.txt_remark);
    search.place = field_text(ui.txt_place);
}
