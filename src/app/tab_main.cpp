#include "app/tab_main.h"

#include "ui_tab_main.h"

tab_main::tab_main(QWidget* parent) : QWidget(parent), ui(std::make_unique<Ui::tab_main>()) {
    ui->setupUi(this);
}

tab_main::~tab_main() = default;

void tab_main::update_timer() {}
