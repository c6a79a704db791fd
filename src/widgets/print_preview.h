#pragma once
#include <QPrintPreviewDialog>

class QPrinter;
class QTextDocument;
class QString;

/** Sets the paper to A4 and gives the preview its place on the screen: maximised, and small when restored. */
void set_up_preview(QPrintPreviewDialog& preview, QPrinter& printer);

/** Shows what `slot_print` of the screen prints to its printer. */
template <class screen>
void show_print_preview(screen* owner, QPrinter& printer) {
    QPrintPreviewDialog preview(&printer, owner);
    set_up_preview(preview, printer);
    QObject::connect(&preview, &QPrintPreviewDialog::paintRequested, owner, &screen::slot_print);
    preview.exec();
}

/** Lays the text out and prints it. */
void print_html(QTextDocument& document, QPrinter& printer, const QString& html);
