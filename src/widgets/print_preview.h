#pragma once
#include <QPrintPreviewDialog>

class QPrinter;
class QTextDocument;
class QString;

/** Sets the paper to A4, whatever it was. */
void set_up_paper(QPrinter& printer);

/** Gives the preview its place on the screen: maximised, and small when restored. */
void set_up_preview(QPrintPreviewDialog& preview);

/** Shows what `slot_print` of the screen prints to its printer. */
template <class screen>
void show_print_preview(screen* owner, QPrinter& printer) {
    // The preview shows the paper that it finds when it is made.
    set_up_paper(printer);
    QPrintPreviewDialog preview(&printer, owner);
    set_up_preview(preview);
    QObject::connect(&preview, &QPrintPreviewDialog::paintRequested, owner, &screen::slot_print);
    preview.exec();
}

/** Lays the text out and prints it. */
void print_html(QTextDocument& document, QPrinter& printer, const QString& html);
