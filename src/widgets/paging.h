#pragma once
#include <QHash>
#include <QString>
#include <QVariant>
#include <QWidget>
#include <memory>

class QTableWidget;
class model_interface;
namespace Ui {
class paging;
}

/** The bar under every paged list: keeps the search arguments, turns pages, shows the counts. */
class paging : public QWidget {
    Q_OBJECT

public:
    /** `module` names the model that fills `table`; an unknown one leaves the bar without a model. */
    paging(QWidget* parent, QTableWidget* table, QString module, int page_size);
    ~paging() override;

    void page_first();

    /** The latest page as printable HTML; empty for models that make none. */
    QString html;

public slots:
    /** Keeps the arguments for all page turns to come; loads nothing. */
    void slot_set_args(QString args);

protected:
    /** The page controls are labels: a press of any mouse button on one acts at once. */
    bool eventFilter(QObject* object, QEvent* event) override;

private slots:
    void on_btn_ok_clicked();
    void on_txt_page_num_textEdited(QString arg1);

private:
    void page_prev();
    void page_next();
    void page_last();
    void load(int asked);
    void show_counts();

    std::unique_ptr<Ui::paging> ui;
    int page_size;
    QString args;
    int total = 0;
    QTableWidget* table;
    QString module;
    int page_num = 0;
    int page_count = 0;
    /** Has no parent and is never deleted: it outlives the bar. */
    model_interface* model;
    QHash<QString, QVariant> page_info;
};
