#pragma once
#include <QDialog>
#include <QModelIndex>
#include <memory>

#include "access/user_search.h"
#include "model/struct_user.h"

class paging;
namespace Ui {
class dlg_search_user;
}

/** Picks an account. The caller sets the title. */
class dlg_search_user : public QDialog {
    Q_OBJECT

public:
    explicit dlg_search_user(QWidget* parent = nullptr);
    ~dlg_search_user() override;

signals:
    /** An empty record: no restriction. */
    void signal_user_selected(struct_user user);
    void signal_send_args(QString args);

public slots:
    void on_btn_close_clicked();
    /** The current row is taken, whatever the index. */
    void on_tablewidget_doubleClicked(QModelIndex index);
    void on_btn_all_clicked();
    void on_btn_choose_clicked();
    void on_btn_search_clicked();

protected:
    /** Return and Enter search; every other key ends here, Escape included. */
    void keyPressEvent(QKeyEvent* event) override;

private:
    void hand_over(const struct_user& user);

    std::unique_ptr<Ui::dlg_search_user> ui;
    user_search search;
    paging* page_bar;
};
