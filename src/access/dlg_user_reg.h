#pragma once
#include <QDialog>
#include <memory>

#include "model/model_user.h"

namespace Ui {
class dlg_user_reg;
}

/** Signs a new company and its first user up. Does not log anybody in. */
class dlg_user_reg : public QDialog {
    Q_OBJECT

public:
    /** `login`: the dialog that opened this one; it is shown again on cancel. */
    explicit dlg_user_reg(QDialog* login);
    ~dlg_user_reg() override;

public slots:
    void on_btn_cancel_clicked();
    void on_btn_submit_clicked();

protected:
    /** A press on the captcha fetches a new one. */
    bool eventFilter(QObject* object, QEvent* event) override;

private:
    void load_captcha();
    bool check_fields();
    bool check_free(const QString& args);
    QString form_body() const;
    void tell(int state);
    void warn(const QString& text);

    std::unique_ptr<Ui::dlg_user_reg> ui;
    QDialog* parent_dialog;
    model_user accounts;
};
