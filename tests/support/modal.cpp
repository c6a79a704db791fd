#include "support/modal.h"

#include <gtest/gtest.h>

#include <QAbstractButton>
#include <QApplication>
#include <QDialog>
#include <QElapsedTimer>
#include <QPointer>
#include <QTimer>

namespace {

/** Waits for a modal window beyond the one that is already there, drives it, and closes it when it overstays.
 */
class modal_watch : public QObject {
public:
    modal_watch(std::function<void(QWidget*)> drive_window, int deadline)
        : drive(std::move(drive_window)), deadline_ms(deadline), before(QApplication::activeModalWidget()) {
        clock.start();
        connect(&timer, &QTimer::timeout, this, [this] { look(); });
        timer.start(1);
    }

    void finish() {
        timer.stop();
        if (failure) std::rethrow_exception(failure);
        if (!driven) ADD_FAILURE() << "no modal window was opened";
        if (overstayed) ADD_FAILURE() << "the modal window stayed open and was closed by force";
    }

private:
    void look() {
        QWidget* shown = QApplication::activeModalWidget();
        if (driving || shown == nullptr || shown == before) return;
        if (!driven) {
            driven = true;
            driving = true;
            try {
                drive(shown);
            } catch (...) {
                failure = std::current_exception();
                force_close(QApplication::activeModalWidget());
            }
            driving = false;
        } else if (clock.elapsed() > deadline_ms) {
            overstayed = true;
            force_close(shown);
        }
    }

    static void force_close(QWidget* shown) {
        if (auto* dialog = qobject_cast<QDialog*>(shown))
            dialog->done(QDialog::Rejected);
        else if (shown != nullptr)
            shown->close();
    }

    std::function<void(QWidget*)> drive;
    int deadline_ms;
    QPointer<QWidget> before;
    QElapsedTimer clock;
    QTimer timer;
    bool driven = false;
    bool driving = false;
    bool overstayed = false;
    std::exception_ptr failure;
};

} // namespace

void with_modal(const std::function<void()>& act, const std::function<void(QWidget*)>& drive,
                int deadline_ms) {
    modal_watch watch(drive, deadline_ms);
    act();
    watch.finish();
}

void with_question(const std::function<void()>& act, const QString& title, const QString& text,
                   QMessageBox::StandardButton answer) {
    with_modal_of<QMessageBox>(act, [&](QMessageBox* box) {
        EXPECT_EQ(box->windowTitle(), title);
        EXPECT_EQ(box->text(), text);
        QAbstractButton* button = box->button(answer);
        if (button == nullptr) throw std::runtime_error("the message box has no such button");
        button->click();
    });
}
