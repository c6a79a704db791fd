#include "init_resources.h"

#include <QtCore/qglobal.h>

void init_resources() {
    Q_INIT_RESOURCE(wms);
}
