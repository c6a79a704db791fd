#pragma once
#include <QString>

/** Window titles and the title of the update question. */
extern const QString g_app_title;
/** The build stamp that the service is told at every start: seconds since the epoch, decimal. */
extern const QString g_version_time;
/** The version that people see. */
extern const QString g_version;
/** Head of the HTML that stock lists print from. */
extern const QString g_style_list;
/** Head of the HTML that document details print from. */
extern const QString g_style_detail;
