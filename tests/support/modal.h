#pragma once
#include <QMessageBox>
#include <QWidget>
#include <functional>
#include <stdexcept>
#include <typeinfo>

/**
 * Runs `act`, which is expected to open a modal window, and gives that window to `drive`. Fails the test when
 * no window comes, when it is still open after the deadline (it is then closed by force) and when `drive`
 * throws. Calls may be nested: `drive` may open a further modal window the same way.
 */
void with_modal(const std::function<void()>& act, const std::function<void(QWidget*)>& drive,
                int deadline_ms = 5000);

/** As with_modal, for a window of a certain class. */
template <class window>
void with_modal_of(const std::function<void()>& act, const std::function<void(window*)>& drive,
                   int deadline_ms = 5000) {
    with_modal(
        act,
        [&drive](QWidget* shown) {
            auto* expected = qobject_cast<window*>(shown);
            if (expected == nullptr) {
                shown->close();
                throw std::runtime_error(std::string("another window came: ") +
                                         shown->metaObject()->className());
            }
            drive(expected);
        },
        deadline_ms);
}

/** Runs `act`, which is expected to ask in a message box, checks what the user reads and presses `answer`. */
void with_question(const std::function<void()>& act, const QString& title, const QString& text,
                   QMessageBox::StandardButton answer);
