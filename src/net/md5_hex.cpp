#include "net/md5_hex.h"

#include <QCryptographicHash>

QString md5_hex(QString text) {
    return QString::fromLatin1(QCryptographicHash::hash(text.toLatin1(), QCryptographicHash::Md5).toHex());
}
