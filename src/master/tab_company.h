#pragma once
#include <QString>
#include <QWidget>
#include <memory>

#include "model/struct_company.h"
#include "widgets/context_menu.h"

class paging;
namespace Ui {
class tab_company;
}

/** The list of the trading partners of one kind. */
class tab_company : public QWidget {
    Q_OBJECT

public:
    /** `type`: 1 suppliers, 2 clients, 3 other units. */
    tab_company(QWidget* parent, int type);
    ~tab_company() override;

signals:
    void signal_company_to_edit(struct_company company);
    void signal_send_args(QString args);
    void signal_enable_search(bool boolean);
    void signal_enable_add(bool boolean);
    void signal_enable_edit(bool boolean);
    void signal_enable_delete(bool boolean);

public slots:
    void slot_company_to_add();
    void slot_company_to_delete();
    void slot_company_to_edit();
    void slot_company_do_add(struct_company company);
    void slot_company_do_edit(struct_company company);
    void on_btn_search_clicked();

protected:
    /** Return and Enter search; every other key ends here. */
    void keyPressEvent(QKeyEvent* event) override;

private:
    void enable_by_rights();

    std::unique_ptr<Ui::tab_company> ui;
    int type;
    struct_company search;
    paging* page_bar;
    context_menu menu;
};
