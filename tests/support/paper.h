#pragma once
#include <QColor>
#include <QImage>
#include <QList>
#include <QPrintPreviewDialog>
#include <QString>
#include <QStringList>
#include <functional>

// What is on paper, read back from a PDF file with the tools of poppler. Where a tool is missing these throw
// and say which package has it.

/** The text of each page in the order in which it was drawn, without any white space. */
QStringList paper_texts(const QString& pdf);

/** A font of the file. */
struct paper_font {
    QString name;
    bool embedded;
    /** Its characters can be read back. */
    bool readable;
};
QList<paper_font> paper_fonts(const QString& pdf);

/** The pages as pictures. */
QList<QImage> paper_pages(const QString& pdf, int dots_per_inch);

/** How many dots of a picture have that colour. */
int dots_of(const QImage& picture, const QColor& colour);

/**
 * Runs `act`, which is expected to show a print preview, lets `look` see it and leaves it; what the screen
 * prints from then on goes to a file.
 */
void with_preview(const std::function<void()>& act, const std::function<void(QPrintPreviewDialog*)>& look,
                  const QString& file);
