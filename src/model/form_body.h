#pragma once
#include <QString>

/**
 * Form bodies are written key by key as they go out, leading "&" and "=" included. Values are never escaped:
 * that is the protocol.
 */
void append(QString& args, const char* key, const QString& value);
void append(QString& args, const char* key, int value);

/** Leaves the pair out when the value is empty. */
void append_if(QString& args, const char* key, const QString& value);
