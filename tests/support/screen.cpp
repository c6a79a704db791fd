#include "support/screen.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QLineEdit>
#include <QPushButton>
#include <QTableWidget>
#include <QTest>
#include <QToolTip>

void PrintTo(const QString& text, std::ostream* out) {
    *out << '"' << text.toStdString() << '"';
}

namespace screen_detail {

std::string names_below(const QObject* parent) {
    std::string names;
    const auto children = parent->findChildren<QObject*>();
    for (const QObject* c : children)
        if (!c->objectName().isEmpty() && !c->objectName().startsWith(QLatin1String("qt_")))
            names += std::string(" ") + c->metaObject()->className() + ":" + c->objectName().toStdString();
    return names;
}

} // namespace screen_detail

namespace {

QWidget* tip_window() {
    const auto windows = QApplication::topLevelWidgets();
    for (QWidget* w : windows)
        if (w->inherits("QTipLabel") && w->isVisible()) return w;
    return nullptr;
}

/** Notes where tool tips stand. */
class tip_watch : public QObject {
public:
    tip_watch() { qApp->installEventFilter(this); }

    QList<QPoint> places;

protected:
    bool eventFilter(QObject* object, QEvent* event) override {
        if (object->inherits("QTipLabel") &&
            (event->type() == QEvent::Show || event->type() == QEvent::Move)) {
            const QPoint at = static_cast<QWidget*>(object)->pos();
            if (places.isEmpty() || places.last() != at) places.append(at);
        }
        return false;
    }
};

} // namespace

void type_into(const QObject* parent, const char* line_edit, const QString& text) {
    auto* edit = child<QLineEdit>(parent, line_edit);
    edit->selectAll();
    if (text.isEmpty())
        QTest::keyClick(edit, Qt::Key_Delete);
    else
        QTest::keyClicks(edit, text);
}

void click(const QObject* parent, const char* button) {
    QTest::mouseClick(child<QPushButton>(parent, button), Qt::LeftButton);
}

QString shown_tip() {
    return QToolTip::isVisible() ? QToolTip::text() : QString();
}

void clear_tip() {
    if (QWidget* tip = tip_window()) tip->close();
    QToolTip::hideText();
}

void expect_tip(QWidget* widget, const QString& text, QPoint at) {
    EXPECT_EQ(shown_tip(), text);
    QWidget* tip = tip_window();
    if (tip == nullptr) {
        ADD_FAILURE() << "no tool tip on the screen";
        return;
    }
    const QPoint seen = tip->pos();
    // The toolkit places a tip at an offset that depends on cursor and screen: a tip of the same size, shown
    // where this one should be, has to come out at the same place.
    QToolTip::showText(widget->mapToGlobal(at), QString(text.size(), QChar(0x4e00)), widget);
    const QPoint expected = tip_window()->pos();
    EXPECT_EQ(seen, expected) << "tip at " << seen.x() << "," << seen.y() << " instead of " << expected.x()
                              << "," << expected.y();
    clear_tip();
}

QList<QPoint> tip_places(const std::function<void()>& act) {
    tip_watch watch;
    act();
    return watch.places;
}

QPoint tip_place_at(QWidget* widget, const QString& text) {
    clear_tip();
    QToolTip::showText(widget->mapToGlobal(QPoint(0, 0)), text, widget);
    const QPoint place = tip_window()->pos();
    clear_tip();
    return place;
}

void expect_nothing_cut(const QWidget* shown) {
    const auto parts = shown->findChildren<QWidget*>();
    for (const QWidget* part : parts) {
        if (part->objectName().isEmpty() || part->objectName().startsWith(QLatin1String("qt_"))) continue;
        if (!part->isVisible()) continue;
        const std::string name = part->objectName().toStdString();
        EXPECT_TRUE(part->parentWidget()->rect().contains(part->geometry())) << name << " sticks out";
        EXPECT_GE(part->width(), part->minimumSizeHint().width()) << name << " is too narrow";
        EXPECT_GE(part->height(), part->minimumSizeHint().height()) << name << " is too low";
    }
}

QStringList tab_order(const QWidget* first, int count) {
    QStringList names;
    for (const QWidget* w = first; names.size() < count; w = w->nextInFocusChain())
        if ((w->focusPolicy() & Qt::TabFocus) != 0 && !w->objectName().startsWith(QLatin1String("qt_")))
            names.append(w->objectName());
    return names;
}

void click_row(QTableWidget* table, int row, Qt::KeyboardModifiers with) {
    const QRect cell = table->visualItemRect(table->item(row, 1));
    QTest::mouseClick(table->viewport(), Qt::LeftButton, with, cell.center());
}

void expect_cells(const QTableWidget* table, int row, std::initializer_list<const char*> texts) {
    EXPECT_EQ(table->columnCount(), int(texts.size()));
    int column = 0;
    for (const char* text : texts) {
        const QTableWidgetItem* item = table->item(row, column);
        EXPECT_EQ(item != nullptr ? item->text() : QStringLiteral("(no cell)"), QString::fromUtf8(text))
            << "column " << column;
        ++column;
    }
}
