#pragma once
#include <QDialog>
#include <QModelIndex>
#include <QPoint>
#include <QString>
#include <memory>

#include "model/struct_emp.h"
#include "widgets/context_menu.h"

class paging;
namespace Ui {
class dlg_search_emp;
}

/** Picks an employee. The caller sets the title. */
class dlg_search_emp : public QDialog {
    Q_OBJECT

public:
    explicit dlg_search_emp(QWidget* parent);
    ~dlg_search_emp() override;

signals:
    /** Only `id` and `name` mean anything; both empty: no restriction. */
    void signal_emp_selected(struct_emp operater);
    void signal_send_args(QString args);

public slots:
    void on_btn_close_clicked();
    /** The current row is taken, whatever the index. */
    void on_tablewidget_doubleClicked(QModelIndex index);
    void on_btn_all_clicked();
    void on_btn_search_clicked();
    /** Hands over an id of one character, unlike the double click. */
    void on_btn_choose_clicked();
    void on_tablewidget_customContextMenuRequested(QPoint pos);

private:
    void hand_over(const QString& id, const QString& name);

    std::unique_ptr<Ui::dlg_search_emp> ui;
    struct_emp emp;
    paging* page_bar;
    context_menu menu;
};
