#pragma once
#include <QScopedValueRollback>

/**
 * The calls of an editor, one flow of them at a time: while one waits for its answers the user may go on
 * pressing buttons, and a second flow in the middle of the first would take its answers away.
 */
class call_flow {
public:
    /** Runs the calls unless others are under way; gives whether it did. */
    template <class calls>
    bool run(const calls& make_them) {
        if (running) return false;
        const QScopedValueRollback<bool> until_answered(running, true);
        make_them();
        return true;
    }

    bool under_way() const { return running; }

private:
    bool running = false;
};
