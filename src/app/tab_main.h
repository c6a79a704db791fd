#pragma once
#include <QWidget>
#include <memory>

namespace Ui {
class tab_main;
}

/** The home page: a welcome and a few hints. */
class tab_main : public QWidget {
    Q_OBJECT

public:
    explicit tab_main(QWidget* parent = nullptr);
    ~tab_main() override;

public slots:
    /** Does nothing on purpose: the page shows no time. */
    void update_timer();

private:
    std::unique_ptr<Ui::tab_main> ui;
};
