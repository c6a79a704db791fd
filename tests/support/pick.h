#pragma once
#include <gtest/gtest.h>

#include <QApplication>
#include <QLineEdit>
#include <QPointer>
#include <QTableWidget>
#include <QTest>
#include <QTimer>

#include "support/modal.h"
#include "support/screen.h"

/** Picks the first record of a picker's list by a double click on it, as users do. */
inline void double_click_first(QWidget* picker) {
    auto* list = child<QTableWidget>(picker, "tablewidget");
    click_row(list, 0);
    QTest::mouseDClick(list->viewport(), Qt::LeftButton, Qt::NoModifier,
                       list->visualItemRect(list->item(0, 1)).center());
}

/** Presses a field with the left button and gives the picker that opens to `drive`. */
template <class picker>
void pick(const QWidget* screen, const char* field, const QString& title,
          const std::function<void(picker*)>& drive) {
    with_modal_of<picker>([=] { QTest::mousePress(child<QLineEdit>(screen, field), Qt::LeftButton); },
                          [&](picker* opened) {
                              EXPECT_EQ(opened->windowTitle(), title);
                              EXPECT_EQ(opened->parentWidget(), screen);
                              drive(opened);
                          });
}

/** Runs `act` and gives whether a modal window came meanwhile, beyond one that was there; it is closed. */
inline bool opens_modal(const std::function<void()>& act) {
    const QPointer<QWidget> before = QApplication::activeModalWidget();
    bool opened = false;
    QTimer timer;
    QObject::connect(&timer, &QTimer::timeout, &timer, [&] {
        QWidget* shown = QApplication::activeModalWidget();
        if (shown == nullptr || shown == before) return;
        opened = true;
        shown->close();
    });
    timer.start(1);
    act();
    return opened;
}

/** Whether a press of the left button on any of these fields opens something. */
inline bool presses_open_a_picker(const QWidget* screen, std::initializer_list<const char*> fields) {
    return opens_modal([&] {
        for (const char* field : fields)
            QTest::mousePress(child<QLineEdit>(screen, field), Qt::LeftButton);
    });
}
