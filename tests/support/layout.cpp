#include "support/layout.h"

#include <gtest/gtest.h>

#include <QCursor>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QTableWidget>

#include "support/pages.h"
#include "support/screen.h"

QStringList menu_texts(const QTableWidget* table) {
    return menu_texts(table->findChild<QMenu*>());
}

void expect_menu_at_pointer(QTableWidget* table) {
    QCursor::setPos(QPoint(123, 77));
    emit table->customContextMenuRequested(QPoint(1, 1));
    QMenu* menu = table->findChild<QMenu*>();
    EXPECT_TRUE(menu->isVisible());
    EXPECT_EQ(menu->pos(), QCursor::pos());
    menu->close();
}

void expect_tab_order(const QWidget* screen, const std::vector<const char*>& in_order) {
    QWidget* w = child<QWidget>(screen, in_order.front());
    for (const char* name : in_order) {
        EXPECT_EQ(w->objectName(), QLatin1String(name));
        do
            w = w->nextInFocusChain();
        while (w->focusPolicy() == Qt::NoFocus || w->objectName().startsWith(QLatin1String("qt_")));
    }
}

void expect_form_rows(const QWidget* dialog, const std::vector<form_row>& rows) {
    int above = -1;
    for (const auto& r : rows) {
        const QByteArray name = r.name;
        auto* label = child<QLabel>(dialog, ("label_" + name).constData());
        auto* edit = child<QLineEdit>(dialog, ("txt_" + name).constData());
        EXPECT_EQ(label->text(), QString::fromUtf8(r.text));
        EXPECT_GT(edit->y(), above);
        above = edit->y();
        EXPECT_LT(label->x(), edit->x());
        auto* marker = dialog->findChild<QLabel*>(QLatin1String("label_" + name + "_required"));
        ASSERT_EQ(marker != nullptr, r.required) << r.name;
        if (marker == nullptr) continue;
        EXPECT_EQ(marker->text(), QStringLiteral("*"));
        EXPECT_EQ(marker->styleSheet(), QStringLiteral("color:red"));
        EXPECT_TRUE(marker->x() > label->x() && marker->x() < edit->x());
    }
}

void expect_window(const QWidget* dialog, QSize size, Qt::WindowFlags buttons) {
    EXPECT_EQ(dialog->size(), size);
    EXPECT_EQ(dialog->windowFlags(), Qt::Dialog | Qt::WindowTitleHint | Qt::WindowSystemMenuHint | buttons);
}

void expect_label_of(const QWidget* screen, const char* field, const char* text) {
    auto* edit = child<QLineEdit>(screen, field);
    for (const QLabel* label : screen->findChildren<QLabel*>())
        if (label->buddy() == edit) {
            EXPECT_EQ(label->text(), QString::fromUtf8(text));
            EXPECT_LT(label->x(), edit->x());
            return;
        }
    ADD_FAILURE() << field << " has no label";
}

void expect_left_to_right(const QWidget* screen, const std::vector<const char*>& in_order) {
    int left = -1;
    for (const char* name : in_order) {
        const int x = child<QWidget>(screen, name)->x();
        EXPECT_GT(x, left) << name;
        left = x;
    }
}

void expect_label_at_its_field(const QWidget* screen, const char* label, const char* field) {
    const auto* before = child<QLabel>(screen, label);
    EXPECT_EQ(before->width(), before->sizeHint().width()) << label;
    EXPECT_LE(child<QWidget>(screen, field)->x() - before->geometry().right(), 10) << label;
}

void expect_first_label_at_the_table(const QWidget* screen, const char* label) {
    const auto* first = child<QLabel>(screen, label);
    EXPECT_EQ(first->x(), child<QTableWidget>(screen, "tablewidget")->x()) << label;
    EXPECT_EQ(first->indent(), 0) << label;
}
