#include <gtest/gtest.h>

#include <QMetaMethod>

#include "documents/dlg_instore_add.h"
#include "documents/dlg_instore_detail_add.h"
#include "documents/dlg_outstore_add.h"
#include "documents/dlg_outstore_detail_add.h"
#include "documents/dlg_search_stock.h"
#include "documents/tab_instore.h"
#include "documents/tab_outstore.h"
#include "model/model_instore.h"
#include "model/model_instore_detail.h"
#include "model/model_outstore.h"
#include "model/model_outstore_detail.h"
#include "model/model_stock_allot.h"
#include "model/model_stock_allot_detail.h"
#include "model/model_stock_detail.h"
#include "model/model_stock_summary.h"
#include "model/model_stock_taking.h"
#include "model/model_stock_taking_detail.h"
#include "stock/dlg_stock_allot_add.h"
#include "stock/dlg_stock_allot_detail_add.h"
#include "stock/dlg_stock_taking_add.h"
#include "stock/dlg_stock_taking_detail_add.h"
#include "stock/tab_stock_allot.h"
#include "stock/tab_stock_detail.h"
#include "stock/tab_stock_summary.h"
#include "stock/tab_stock_taking.h"
#include "support/screen.h"

// What the classes of documents and stock offer to each other: signals and slots in their order, whether
// anything uses them or not.

struct offered_interface {
    const QMetaObject* of;
    std::vector<const char*> methods;
};

inline void PrintTo(const offered_interface& row, std::ostream* out) {
    *out << row.of->className();
}

class interfaces : public testing::TestWithParam<offered_interface> {};

TEST_P(interfaces, signals_and_slots_in_order) {
    const QMetaObject* of = GetParam().of;
    QStringList found;
    for (int i = of->methodOffset(); i < of->methodCount(); ++i)
        found.append(QString::fromLatin1(of->method(i).methodSignature()));
    QStringList expected;
    for (const char* method : GetParam().methods)
        expected.append(QLatin1String(method));
    EXPECT_EQ(found.join(QLatin1Char('\n')), expected.join(QLatin1Char('\n')));
}

const offered_interface g_interfaces[] = {
    {&tab_instore::staticMetaObject,
     {"signal_instore_to_edit(struct_instore)",
      "signal_send_args(QString)",
      "signal_enable_search(bool)",
      "signal_enable_add(bool)",
      "signal_enable_view(bool)",
      "signal_enable_delete(bool)",
      "signal_enable_print(bool)",
      "signal_set_window_title(QString)",
      "slot_right_menu()",
      "slot_instore_to_add()",
      "slot_instore_to_edit()",
      "slot_instore_to_delete()",
      "slot_instore_to_view()",
      "on_btn_search_clicked()",
      "on_btn_delete_clicked()",
      "on_tablewidget_cellDoubleClicked(int,int)",
      "on_tablewidget_itemEntered(QTableWidgetItem*)",
      "slot_text_filter(bool)",
      "on_btn_print_clicked()",
      "slot_print()",
      "slot_company_selected(struct_company)",
      "slot_operater_selected(struct_emp)",
      "slot_writer_selected(struct_user)",
      "slot_instore_get_list()",
      "slot_dept_selected(struct_dept)"}},
    {&dlg_instore_add::staticMetaObject,
     {"signal_instore_get_list()",
      "signal_instore_detail_to_edit(struct_instore_detail)",
      "signal_enable_add(bool)",
      "signal_enable_delete(bool)",
      "signal_enable_print(bool)",
      "slot_instore_to_edit(struct_instore)",
      "slot_company_selected(struct_company)",
      "slot_emp_selected(struct_emp)",
      "slot_dept_selected(struct_dept)",
      "on_btn_add_clicked()",
      "on_btn_cancel_clicked()",
      "on_btn_submit_clicked()",
      "slot_instore_detail_to_add()",
      "slot_instore_detail_to_delete()",
      "slot_instore_detail_do_add(struct_instore_detail)",
      "slot_instore_detail_to_edit()",
      "slot_instore_detail_do_edit(struct_instore_detail)",
      "on_btn_delete_clicked()",
      "slot_set_window_title(QString)",
      "on_tablewidget_itemEntered(QTableWidgetItem*)",
      "on_btn_print_clicked()",
      "slot_print()",
      "on_tablewidget_customContextMenuRequested(QPoint)"}},
    {&dlg_instore_detail_add::staticMetaObject,
     {"signal_instore_detail_do_add(struct_instore_detail)",
      "signal_instore_detail_do_edit(struct_instore_detail)", "slot_product_selected(struct_product)",
      "slot_instore_detail_to_edit(struct_instore_detail)", "on_btn_cancel_clicked()",
      "on_btn_save_clicked()", "on_txt_amount_textChanged(QString)", "on_txt_price_textChanged(QString)"}},
    {&tab_outstore::staticMetaObject,
     {"signal_outstore_to_edit(struct_outstore)",
      "signal_send_args(QString)",
      "signal_enable_search(bool)",
      "signal_enable_add(bool)",
      "signal_enable_view(bool)",
      "signal_enable_delete(bool)",
      "signal_enable_print(bool)",
      "signal_set_window_title(QString)",
      "slot_outstore_get_list()",
      "slot_dept_selected(struct_dept)",
      "slot_emp_selected(struct_emp)",
      "slot_writer_selected(struct_user)",
      "slot_company_selected(struct_company)",
      "slot_right_menu()",
      "slot_outstore_to_add()",
      "slot_outstore_to_edit()",
      "slot_outstore_to_delete()",
      "slot_outstore_to_view()",
      "on_tablewidget_doubleClicked(QModelIndex)",
      "on_tablewidget_itemEntered(QTableWidgetItem*)",
      "slot_text_filter(bool)",
      "on_btn_print_clicked()",
      "slot_print()"}},
    {&dlg_outstore_add::staticMetaObject,
     {"signal_outstore_get_list()",
      "signal_outstore_detail_to_edit(struct_outstore_detail)",
      "signal_enable_add(bool)",
      "signal_enable_delete(bool)",
      "signal_enable_print(bool)",
      "slot_outstore_to_edit(struct_outstore)",
      "slot_company_selected(struct_company)",
      "slot_emp_selected(struct_emp)",
      "slot_dept_selected(struct_dept)",
      "on_btn_add_clicked()",
      "on_btn_cancel_clicked()",
      "on_btn_submit_clicked()",
      "slot_outstore_detail_to_add()",
      "slot_outstore_detail_to_delete()",
      "slot_outstore_detail_do_add(struct_outstore_detail)",
      "slot_outstore_detail_to_edit()",
      "slot_outstore_detail_do_edit(struct_outstore_detail)",
      "on_btn_delete_clicked()",
      "slot_set_window_title(QString)",
      "on_tablewidget_itemEntered(QTableWidgetItem*)",
      "on_btn_print_clicked()",
      "slot_print()",
      "on_tablewidget_customContextMenuRequested(QPoint)"}},
    {&dlg_outstore_detail_add::staticMetaObject,
     {"signal_outstore_detail_do_add(struct_outstore_detail)",
      "signal_outstore_detail_do_edit(struct_outstore_detail)", "on_btn_cancel_clicked()",
      "on_btn_save_clicked()", "on_txt_amount_textChanged(QString)", "on_txt_price_textChanged(QString)",
      "slot_stock_selected(struct_stock)", "slot_outstore_detail_to_edit(struct_outstore_detail)"}},
    {&dlg_search_stock::staticMetaObject,
     {"signal_stock_selected(struct_stock)", "signal_send_args(QString)", "on_btn_close_clicked()",
      "on_tablewidget_doubleClicked(QModelIndex)", "on_tablewidget_itemEntered(QTableWidgetItem*)",
      "on_btn_search_clicked()", "on_tablewidget_customContextMenuRequested(QPoint)"}},
    {&tab_stock_detail::staticMetaObject,
     {"signal_send_args(QString)", "signal_enable_search(bool)", "slot_right_menu()",
      "on_tablewidget_itemEntered(QTableWidgetItem*)", "on_btn_search_clicked()", "on_btn_print_clicked()",
      "slot_print()"}},
    {&tab_stock_summary::staticMetaObject,
     {"signal_send_args(QString)", "signal_enable_search(bool)", "signal_enable_print(bool)",
      "slot_right_menu()", "on_tablewidget_itemEntered(QTableWidgetItem*)", "on_btn_search_clicked()",
      "slot_print()", "on_btn_print_clicked()"}},
    {&tab_stock_allot::staticMetaObject,
     {"signal_set_current_user()",
      "signal_stock_allot_to_edit(struct_stock_allot)",
      "signal_send_args(QString)",
      "signal_enable_search(bool)",
      "signal_enable_add(bool)",
      "signal_enable_view(bool)",
      "signal_enable_delete(bool)",
      "signal_enable_print(bool)",
      "slot_emp_selected(struct_emp)",
      "slot_writer_selected(struct_user)",
      "slot_stock_allot_get_list()",
      "slot_right_menu()",
      "slot_stock_allot_to_add()",
      "slot_stock_allot_to_view()",
      "slot_stock_allot_to_edit()",
      "slot_stock_allot_to_delete()",
      "on_tablewidget_doubleClicked(QModelIndex)",
      "on_tablewidget_itemEntered(QTableWidgetItem*)",
      "on_btn_search_clicked()",
      "slot_text_filter(bool)",
      "on_btn_print_clicked()",
      "slot_print()"}},
    {&dlg_stock_allot_add::staticMetaObject,
     {"signal_stock_allot_add_row(struct_stock_allot)",
      "signal_stock_allot_detail_to_edit(struct_stock_allot_detail)",
      "signal_stock_allot_get_list()",
      "signal_set_warehouse_out(QString)",
      "signal_enable_add(bool)",
      "signal_enable_delete(bool)",
      "signal_enable_print(bool)",
      "slot_set_current_user()",
      "slot_stock_allot_to_edit(struct_stock_allot)",
      "slot_stock_allot_detail_do_add(struct_stock_allot_detail)",
      "slot_stock_allot_detail_do_edit(struct_stock_allot_detail)",
      "slot_right_menu()",
      "slot_stock_allot_detail_to_add()",
      "slot_stock_allot_detail_to_edit()",
      "slot_stock_allot_detail_to_delete()",
      "on_btn_cancel_clicked()",
      "on_btn_submit_clicked()",
      "on_tablewidget_itemEntered(QTableWidgetItem*)",
      "slot_emp_selected(struct_emp)",
      "on_btn_print_clicked()",
      "slot_print()"}},
    {&dlg_stock_allot_detail_add::staticMetaObject,
     {"signal_stock_allot_detail_do_add(struct_stock_allot_detail)",
      "signal_stock_allot_detail_do_edit(struct_stock_allot_detail)",
      "slot_stock_allot_detail_to_edit(struct_stock_allot_detail)", "slot_stock_selected(struct_stock)",
      "slot_set_warehouse_out(QString)", "on_btn_cancel_clicked()", "on_btn_save_clicked()",
      "on_txt_amount_textChanged(QString)", "on_txt_price_textChanged(QString)"}},
    {&model_instore::staticMetaObject, {}},
    {&model_instore_detail::staticMetaObject, {"signal_instore_to_edit(struct_instore_detail)"}},
    {&model_outstore::staticMetaObject, {}},
    {&model_outstore_detail::staticMetaObject, {}},
    {&model_stock_detail::staticMetaObject,
     {"signal_stock_to_edit(struct_stock)", "signal_send_args(QString)"}},
    {&model_stock_summary::staticMetaObject, {}},
    {&model_stock_allot::staticMetaObject, {}},
    {&model_stock_allot_detail::staticMetaObject, {}},
    {&tab_stock_taking::staticMetaObject,
     {"signal_set_current_user()",
      "signal_stock_taking_to_edit(struct_stock_taking)",
      "signal_send_args(QString)",
      "signal_enable_search(bool)",
      "signal_enable_add(bool)",
      "signal_enable_view(bool)",
      "signal_enable_delete(bool)",
      "signal_enable_print(bool)",
      "slot_taking_to_add()",
      "slot_taking_to_edit()",
      "slot_taking_to_delete()",
      "slot_right_menu()",
      "slot_taking_to_view()",
      "slot_taking_to_audit()",
      "on_tablewidget_doubleClicked(QModelIndex)",
      "on_tablewidget_itemEntered(QTableWidgetItem*)",
      "on_btn_search_clicked()",
      "slot_text_filter(bool)",
      "on_btn_print_clicked()",
      "slot_print()",
      "slot_emp_selected(struct_emp)",
      "slot_writer_selected(struct_user)",
      "slot_stock_taking_get_list()"}},
    {&dlg_stock_taking_add::staticMetaObject,
     {"signal_stock_taking_get_list()",
      "signal_stock_taking_detail_to_edit(struct_stock_taking_detail)",
      "signal_enable_add(bool)",
      "signal_enable_delete(bool)",
      "signal_enable_print(bool)",
      "slot_set_current_user()",
      "slot_stock_taking_to_edit(struct_stock_taking)",
      "slot_emp_selected(struct_emp)",
      "slot_stock_taking_detail_do_edit(struct_stock_taking_detail)",
      "slot_stock_taking_detail_do_add(struct_stock_taking_detail)",
      "on_btn_cancel_clicked()",
      "slot_right_menu()",
      "slot_stock_taking_detail_to_add()",
      "slot_stock_taking_detail_to_edit()",
      "slot_stock_taking_detail_to_delete()",
      "on_btn_add_clicked()",
      "on_btn_delete_clicked()",
      "on_btn_submit_clicked()",
      "on_btn_audit_clicked()",
      "on_tablewidget_itemEntered(QTableWidgetItem*)",
      "on_btn_print_clicked()",
      "slot_print()"}},
    {&dlg_stock_taking_detail_add::staticMetaObject,
     {"signal_stock_taking_detail_do_add(struct_stock_taking_detail)",
      "signal_stock_taking_detail_do_edit(struct_stock_taking_detail)",
      "slot_stock_taking_detail_to_edit(struct_stock_taking_detail)", "slot_stock_selected(struct_stock)",
      "on_btn_cancel_clicked()", "on_txt_real_amount_textChanged(QString)",
      "on_txt_price_textChanged(QString)", "on_btn_submit_clicked()"}},
    {&model_stock_taking::staticMetaObject, {}},
    {&model_stock_taking_detail::staticMetaObject, {}},
};

INSTANTIATE_TEST_SUITE_P(documents_and_stock, interfaces, testing::ValuesIn(g_interfaces),
                         [](const auto& p) { return std::string(p.param.of->className()); });
