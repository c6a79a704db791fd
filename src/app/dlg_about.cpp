#include "app/dlg_about.h"

#include <QDesktopServices>
#include <QUrl>

#include "net/constants.h"
#include "ui_dlg_about.h"
#include "widgets/banner.h"

dlg_about::dlg_about(QWidget* parent) : QDialog(parent), ui(std::make_unique<Ui::dlg_about>()) {
    ui->setupUi(this);
    setWindowTitle(g_app_title);
    show_banner(ui->lbl_img);
    ui->txt_version->setText(g_version);
}

dlg_about::~dlg_about() = default;

void dlg_about::on_btn_close_clicked() {
    close();
}

void dlg_about::on_lbl_img_linkActivated(QString link) {
    QDesktopServices::openUrl(QUrl(link));
}

void dlg_about::on_label_link_linkActivated(QString link) {
    QDesktopServices::openUrl(QUrl(link));
}
