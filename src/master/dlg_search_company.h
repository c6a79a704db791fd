#pragma once
#include <QDialog>
#include <QModelIndex>
#include <memory>

#include "model/struct_company.h"

class paging;
namespace Ui {
class dlg_search_company;
}

/** Picks a trading partner of one kind. The caller sets the title. */
class dlg_search_company : public QDialog {
    Q_OBJECT

public:
    /** `mode` 4 offers no "all" and tells about the double click; callers pass 3. */
    dlg_search_company(QWidget* parent, int type, int mode);
    ~dlg_search_company() override;

signals:
    /** Only `id` and `name` mean anything; both empty: no restriction. */
    void signal_company_selected(struct_company company);
    void signal_send_args(QString args);

public slots:
    void on_btn_close_clicked();
    /** The current row is taken, whatever the index. */
    void on_tablewidget_doubleClicked(QModelIndex index);
    void on_btn_all_clicked();
    void on_btn_search_clicked();
    void on_btn_choose_clicked();

protected:
    /** Return and Enter search; every other key ends here, Escape included. */
    void keyPressEvent(QKeyEvent* event) override;

private:
    void hand_over(const QString& id, const QString& name);

    std::unique_ptr<Ui::dlg_search_company> ui;
    struct_company company;
    int mode;
    paging* page_bar;
};
