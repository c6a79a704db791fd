#include "support/rights_log.h"

#include <QMetaMethod>

namespace {

const QByteArray prefix = QByteArrayLiteral("signal_enable_");

/** Lets anybody ask what an object tells its own class alone. */
struct open_object : QObject {
    using QObject::receivers;
};

} // namespace

void rights_log::follow(const QObject* screen) {
    const QMetaMethod slot = metaObject()->method(metaObject()->indexOfSlot("take(bool)"));
    for (int i = 0; i < screen->metaObject()->methodCount(); ++i) {
        const QMetaMethod method = screen->metaObject()->method(i);
        if (method.name().startsWith(prefix)) connect(screen, method, this, slot);
    }
}

void rights_log::take(bool on) {
    const QByteArray name = sender()->metaObject()->method(senderSignalIndex()).name();
    heard.append(QString::fromLatin1(name.mid(prefix.size())) +
                 (on ? QStringLiteral(" on") : QStringLiteral(" off")));
}

int connections_of(const QObject* object, const char* signal) {
    return (object->*(&open_object::receivers))(signal);
}
