#pragma once
#include <QString>

/** MD5 of the text's Latin-1 bytes as 32 lower-case hexadecimal digits; any other character counts as "?". */
QString md5_hex(QString text);
