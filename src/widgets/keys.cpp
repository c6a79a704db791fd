#include "widgets/keys.h"

#include <QKeyEvent>

bool is_return_key(const QKeyEvent* event) {
    return event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
}
