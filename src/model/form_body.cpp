#include "model/form_body.h"

void append(QString& args, const char* key, const QString& value) {
    args.append(QLatin1String(key));
    args.append(value);
}

void append(QString& args, const char* key, int value) {
    append(args, key, QString::number(value, 10));
}

void append_if(QString& args, const char* key, const QString& value) {
    if (!value.isEmpty()) append(args, key, value);
}
