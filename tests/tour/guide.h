#pragma once
#include <QString>
#include <QTimer>
#include <functional>

#include "tour/camera.h"

class QPrintPreviewDialog;
class QWidget;

/**
 * Keeps the order of the tour: names each step before it begins, and ends the program with status 1 and the
 * name of the step when something is not as it should be or takes too long.
 */
class guide {
public:
    explicit guide(const QString& folder);

    /** Runs one step. Steps that open a modal window nest the next ones. */
    void step(const char* name, const std::function<void()>& action);
    /** What has to be so at this point. */
    void expect(bool holds, const QString& what);
    /** Waits until a window that has just come up has the input: what happens before would take its tips
     * away. */
    void settle(QWidget* shown);
    /** A tool tip with that text has to be on the screen; takes the picture with it. */
    void expect_tip(const QString& text);
    /** Takes the picture of the step. */
    void picture();
    /** Prints what a preview shows to a PDF file of that name beside the pictures. */
    void print(QPrintPreviewDialog& preview, const QString& name);
    /** Runs `act`, which is expected to open a modal window, and `look` while that window is up; closes it.
     */
    void with_modal(const std::function<void()>& act, const std::function<void(QWidget*)>& look);
    /** Runs `action` in an event handler: what it throws ends the tour. */
    void guarded(const std::function<void()>& action);
    int steps() const { return count; }

private:
    [[noreturn]] void fail(const QString& why);

    camera pictures;
    QString current;
    int count = 0;
    QTimer deadline;
};
