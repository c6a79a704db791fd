#include <QApplication>
#include <cstdio>
#include <exception>

#include "e2e/month/clerk.h"
#include "net/http.h"

/** wms_month_clerk URL USER PASSWORD NUMBER DAYS: works for so many days and writes what was done, a deed a
 * line. */
int main(int argc, char** argv) {
    if (argc != 6) return 2;
    const QApplication application(argc, argv);
    g_http.base_url = QString::fromLocal8Bit(argv[1]);
    try {
        clerk one(QString::fromLocal8Bit(argv[2]), QString::fromLocal8Bit(argv[3]),
                  QByteArray(argv[4]).toInt(), [](const deed& done) {
                      std::puts(line_of(done).constData());
                      std::fflush(stdout);
                  });
        one.work(QByteArray(argv[5]).toInt());
    } catch (const std::exception& failure) {
        std::fprintf(stderr, "clerk %s: %s\n", argv[2], failure.what());
        return 1;
    }
    return 0;
}
