#include "net/constants.h"
#include "net/http.h"

// One file, so that the order of construction is the order written here: the session first.
http g_http;

const QString g_app_title = QStringLiteral("Tavrok仓储管理系统(Tavrok_WMS)");
const QString g_version_time = QStringLiteral("1586696219");
const QString g_version = QStringLiteral("1.0.3");
const QString g_style_list = QStringLiteral(
    "<style>table{border-color:#004EA1;color:#004EA1;border-style:solid;font-family:Microsoft YaHei;"
    "font-size:9pt;}#td_title{font-size:15pt;padding:10;}#tr_header{font-size:11pt;"
    "background-color:#E0EEFF;align:center}#tr_header td{align:center}</style>");
const QString g_style_detail = QStringLiteral(
    "<style>table{border:1pt;border-color:#6F9CCF;color:#004EA1;border-style:solid;"
    "font-family:Microsoft YaHei;font-size:10pt}td{padding:5px}#title{font-size:16pt;color:#004EA1;"
    "text-align:center}.tr_header{background-color:#E0EEFF;font-size:11pt;}.tr_header td{align:center}"
    "td{border:1px;border-color:#6F9CCF;border-style:solid;}#table_data{margin:10pt}#td_data{padding:15px}"
    "</style>");
