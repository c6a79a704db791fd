#include "widgets/banner.h"

#include <QLabel>

#include "net/http.h"

void show_banner(QLabel* label) {
    label->setText(QStringLiteral("<a href='") + g_http.base_url +
                   QStringLiteral("'><img src=':/img/logo.jpg'></a>"));
}
