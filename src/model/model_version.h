#pragma once
#include <QJsonObject>

/** Tells the service this build's stamp. Answer: `need_update` ("1": must be replaced), `file_name`. */
QJsonObject version_check();
