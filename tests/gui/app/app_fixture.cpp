#include "gui/app/app_fixture.h"

#include <QApplication>

#include "init_resources.h"
#include "net/http.h"
#include "support/screen.h"

const char* const menu_table = R"([
 {"id":"100","name":"基础信息","action":"base","real_level":"0","sort":"1","show":"1","child":[
  {"id":"110","name":"供应商单位","action":"company_supplier","real_level":"1","sort":"1","show":"1","child":[
   {"id":"111","name":"查询","action":"search","real_level":"2","sort":"1","show":"1","child":[]},
   {"id":"112","name":"添加","action":"add","real_level":"2","sort":"2","show":"1","child":[]},
   {"id":"113","name":"编辑","action":"edit","real_level":"2","sort":"3","show":"1","child":[]},
   {"id":"114","name":"删除","action":"delete","real_level":"2","sort":"4","show":"1","child":[]}]},
  {"id":"120","name":"客户单位","action":"company_client","real_level":"1","sort":"2","show":"1","child":[
   {"id":"121","name":"查询","action":"search","real_level":"2","sort":"1","show":"1","child":[]}]},
  {"id":"130","name":"其他单位","action":"company_other","real_level":"1","sort":"3","show":"1","child":[
   {"id":"131","name":"查询","action":"search","real_level":"2","sort":"1","show":"1","child":[]},
   {"id":"132","name":"添加","action":"add","real_level":"2","sort":"2","show":"1","child":[]}]}]},
 {"id":"200","name":"库存管理","action":"stock","real_level":"0","sort":"2","show":"1","child":[
  {"id":"210","name":"未知页面","action":"page_of_tomorrow","real_level":"1","sort":"1","show":"1","child":[]}]}
])";

const char* const partner_page =
    R"({"list":[{"id":"31","name":"青禾商行","phone":"0571-1","linkman":"","mobile":"",
"fax":"","address":"云溪路1号","bank":"","account":"","remark":"","type":"1","datetime":0}],
"total":1,"page_count":1,"page_num":1})";

app_test::app_test() {
    init_resources();
}

app_test::~app_test() {
    clear_tip();
    qApp->setStyleSheet(QString());
}

void app_test::log_in_administrator(const QString& name) {
    g_http.current_user = struct_user();
    g_http.current_user.username = name;
    g_http.current_user.type = 1;
    g_http.permissions.clear();
}

void app_test::log_in_clerk(const QStringList& granted_rows) {
    log_in_administrator(QStringLiteral("clerk"));
    g_http.current_user.type = 2;
    for (const QString& id : granted_rows)
        g_http.permissions[id] = QStringLiteral("x");
}

void app_test::serve_menu_and_partners() {
    server.always("wms_menu/get_menu", menu_table);
    server.always("wms_company/get_page", partner_page);
}

QByteArray app_test::login_answer(const char* name, int type, const char* permissions) {
    return QByteArray(R"({"user":{"username":")") + name + R"(","password":"secret-of-)" + name +
           R"(","user_id":"9","realname":"某人","type":)" + QByteArray::number(type) +
           R"(},"wms_permission":)" + permissions + "}";
}
