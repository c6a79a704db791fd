#pragma once
#include <QPoint>
#include <QString>
#include <QWidget>
#include <memory>

#include "access/user_search.h"
#include "model/struct_user.h"
#include "widgets/context_menu.h"

class QTableWidgetItem;
class paging;
namespace Ui {
class tab_user;
}

/** The list of the company's accounts. */
class tab_user : public QWidget {
    Q_OBJECT

public:
    explicit tab_user(QWidget* parent = nullptr);
    ~tab_user() override;

signals:
    void signal_user_to_edit(struct_user user);
    void signal_send_args(QString args);
    void signal_enable_search(bool boolean);
    void signal_enable_add(bool boolean);
    void signal_enable_edit(bool boolean);
    void signal_enable_delete(bool boolean);
    void signal_enable_grant(bool boolean);

public slots:
    void on_btn_search_clicked();
    void on_btn_add_clicked();
    void on_btn_edit_clicked();
    void on_btn_delete_clicked();
    void on_btn_grant_clicked();
    void on_tablewidget_itemClicked(QTableWidgetItem* item);
    /** Opens the menu at the cursor, on a row only. */
    void on_tablewidget_customContextMenuRequested(QPoint pos);
    void slot_user_to_add();
    void slot_user_do_add(struct_user user);
    void slot_user_to_edit();
    void slot_user_do_edit(struct_user user);
    void slot_user_to_delete();
    void slot_user_to_grant();

protected:
    /** Return and Enter search; every other key ends here. */
    void keyPressEvent(QKeyEvent* event) override;

private:
    void connect_rights();
    void enable_by_rights();
    void enable(bool to_search, bool to_change);
    void enable_by_row();
    bool may_delete(int id, int type);
    struct_user user_in_row() const;

    std::unique_ptr<Ui::tab_user> ui;
    user_search search;
    paging* page_bar;
    context_menu menu;
};
