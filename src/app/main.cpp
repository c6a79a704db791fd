#include <QApplication>

#include "app/startup.h"

int main(int argc, char** argv) {
    QApplication application(argc, argv);
    return startup(application);
}
