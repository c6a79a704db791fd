#pragma once
#include <QDialog>
#include <QString>
#include <memory>

namespace Ui {
class dlg_about;
}

/** What program this is, its version, and where its maker is found. */
class dlg_about : public QDialog {
    Q_OBJECT

public:
    explicit dlg_about(QWidget* parent = nullptr);
    ~dlg_about() override;

private slots:
    void on_btn_close_clicked();
    void on_lbl_img_linkActivated(QString link);
    void on_label_link_linkActivated(QString link);

private:
    std::unique_ptr<Ui::dlg_about> ui;
};
