#pragma once
#include <QObject>
#include <QStringList>

/** Writes down the signals by which a screen enables what needs a right, in the order in which they go out.
 */
class rights_log : public QObject {
    Q_OBJECT

public:
    /** Hears every signal_enable_... of the screen from now on; the screen may still be in its constructor.
     */
    void follow(const QObject* screen);

    /** What went out, as "add on" for signal_enable_add(true). */
    const QStringList& lines() const { return heard; }

private slots:
    void take(bool on);

private:
    QStringList heard;
};

/** How many connections a signal of the object, as SIGNAL() gives it, has. */
int connections_of(const QObject* object, const char* signal);
