#pragma once
#include <QByteArray>
#include <ctime>

/** Gives the process a local time zone for as long as it lives. */
class scoped_time_zone {
public:
    explicit scoped_time_zone(const char* zone)
        : former(qgetenv("TZ")), was_set(qEnvironmentVariableIsSet("TZ")) {
        qputenv("TZ", zone);
        tzset();
    }
    ~scoped_time_zone() {
        if (was_set)
            qputenv("TZ", former);
        else
            qunsetenv("TZ");
        tzset();
    }
    scoped_time_zone(const scoped_time_zone&) = delete;
    scoped_time_zone& operator=(const scoped_time_zone&) = delete;

private:
    QByteArray former;
    bool was_set;
};
