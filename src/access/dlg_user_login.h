#pragma once
#include <QDialog>
#include <QString>
#include <memory>

#include "model/model_user.h"

namespace Ui {
class dlg_user_login;
}

/** The login that stands before the main window, at the start and at every new login. */
class dlg_user_login : public QDialog {
    Q_OBJECT

public:
    explicit dlg_user_login(QWidget* parent = nullptr);
    ~dlg_user_login() override;

signals:
    /** The session state of g_http is filled; emitted while the dialog is still up. */
    void signal_init_info();
    /** Part of the interface, never emitted. */
    void signal_to_reg();

public slots:
    void slot_relogin();

protected:
    /** Return and Enter submit; every other key, Escape too, ends here. */
    void keyPressEvent(QKeyEvent* event) override;

private slots:
    void on_btn_submit_clicked();
    void on_btn_close_clicked();
    void on_btn_reg_clicked();
    void on_lbl_img_linkActivated(QString link);

private:
    void warn(const QString& text);

    std::unique_ptr<Ui::dlg_user_login> ui;
    model_user user;
};
