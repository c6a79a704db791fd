#include "widgets/print_preview.h"

#include <QPageSize>
#include <QPrinter>
#include <QTextDocument>

void set_up_paper(QPrinter& printer) {
    printer.setPageSize(QPageSize(QPageSize::A4));
}

void set_up_preview(QPrintPreviewDialog& preview) {
    preview.resize(170, 221);
    preview.setWindowFlags(Qt::Dialog | Qt::WindowMinimizeButtonHint | Qt::WindowMaximizeButtonHint |
                           Qt::WindowCloseButtonHint);
    preview.setWindowState(Qt::WindowMaximized);
}

void print_html(QTextDocument& document, QPrinter& printer, const QString& html) {
    document.setHtml(html);
    document.print(&printer);
}
