#include "support/paper.h"

#include <QColor>
#include <QDir>
#include <QPrinter>
#include <QProcess>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <stdexcept>

#include "support/modal.h"

namespace {

QString run(const QString& tool, const QStringList& arguments) {
    QProcess process;
    process.start(tool, arguments);
    if (!process.waitForStarted())
        throw std::runtime_error(tool.toStdString() +
                                 " is missing: printing on paper is tested with the package poppler-utils");
    if (!process.waitForFinished() || process.exitCode() != 0)
        throw std::runtime_error(tool.toStdString() +
                                 " failed: " + process.readAllStandardError().toStdString());
    return QString::fromUtf8(process.readAllStandardOutput());
}

} // namespace

QStringList paper_texts(const QString& pdf) {
    const QString text = run(
        QStringLiteral("pdftotext"),
        {QStringLiteral("-raw"), QStringLiteral("-enc"), QStringLiteral("UTF-8"), pdf, QStringLiteral("-")});
    QStringList pages = text.split(QLatin1Char('\f'));
    // Each page ends with a form feed.
    pages.removeLast();
    for (QString& page : pages)
        page.remove(QRegularExpression(QStringLiteral("\\s")));
    return pages;
}

/** The table of pdffonts: name, type (of several words), encoding, emb, sub, uni, object and generation. */
QList<paper_font> paper_fonts(const QString& pdf) {
    QList<paper_font> fonts;
    const QStringList lines =
        run(QStringLiteral("pdffonts"), {pdf}).split(QLatin1Char('\n'), Qt::SkipEmptyParts);
    for (const QString& line : lines.mid(2)) {
        const QStringList words = line.split(QLatin1Char(' '), Qt::SkipEmptyParts);
        const auto from_the_end = [&words](int n) { return words.value(words.size() - n); };
        fonts.append({words.first(), from_the_end(5) == QLatin1String("yes"),
                      from_the_end(3) == QLatin1String("yes")});
    }
    return fonts;
}

QList<QImage> paper_pages(const QString& pdf, int dots_per_inch) {
    const QTemporaryDir folder;
    run(QStringLiteral("pdftoppm"),
        {QStringLiteral("-png"), QStringLiteral("-r"), QString::number(dots_per_inch), pdf,
         folder.filePath(QStringLiteral("page"))});
    QList<QImage> pages;
    const QDir pictures(folder.path());
    for (const QString& name : pictures.entryList(QDir::Files, QDir::Name))
        pages.append(QImage(pictures.filePath(name)));
    return pages;
}

int dots_of(const QImage& picture, const QColor& colour) {
    int count = 0;
    for (int y = 0; y < picture.height(); ++y)
        for (int x = 0; x < picture.width(); ++x)
            if (picture.pixel(x, y) == colour.rgb()) ++count;
    return count;
}

void with_preview(const std::function<void()>& act, const std::function<void(QPrintPreviewDialog*)>& look,
                  const QString& file) {
    with_modal_of<QPrintPreviewDialog>(act, [&](QPrintPreviewDialog* preview) {
        look(preview);
        preview->printer()->setOutputFormat(QPrinter::PdfFormat);
        preview->printer()->setOutputFileName(file);
        preview->reject();
    });
}
