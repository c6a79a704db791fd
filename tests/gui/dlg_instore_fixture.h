#pragma once
#include <QComboBox>
#include <QTextEdit>

#include "documents/dlg_instore_add.h"
#include "documents/dlg_instore_detail_add.h"
#include "gui/list_fixture.h"
#include "support/kinds.h"
#include "support/pick.h"

/**
 * Editors of inbound documents against a scripted service. There are the warehouses 主仓 (id 1, the default)
 * and 副仓 (id 2), the employee 张三 (id 65), the partner 甲单位 (id 31), the department 一车间 (id 4) and
 * the product 扳手 (id 9).
 */
class instore_records : public list_test {
protected:
    instore_records() {
        server.always("wms_warehouse/get_option", R"([{"id":"1","name":"主仓","isdefault":"1"},)"
                                                  R"({"id":"2","name":"副仓","isdefault":"0"}])");
        server.always("wms_emp/get_page", page_of(R"({"id":"65","name":"张三"})"));
        server.always("wms_company/get_page", page_of(R"({"id":"31","name":"甲单位"})"));
        server.always("wms_dept/get_dept", R"([{"id":"4","name":"一车间","child":[]}])");
        server.always(
            "wms_product/get_page",
            page_of(
                R"({"id":"9","name":"扳手","code":"A1","category":"5","category_name":"工具","spec":"9件","price":"12.5"})"));
        g_http.current_user.id = QStringLiteral("3");
        g_http.current_user.realname = QStringLiteral("王五");
    }

    static QByteArray page_of(const QByteArray& record) {
        return R"({"list":[)" + record + R"(],"total":"1","page_count":"1","page_num":"1"})";
    }

    /** A line of the product: 2 of 3.456 each, whose stored total is something else. */
    static struct_instore_detail line_of(const char* product) {
        struct_instore_detail line;
        line.product = QString::fromUtf8(product);
        line.product_name = QStringLiteral("扳手");
        line.code = QStringLiteral("A1");
        line.category = QStringLiteral("5");
        line.category_name = QStringLiteral("工具");
        line.spec = QStringLiteral("9件");
        line.price = 3.456;
        line.amount = 2;
        line.total = 99;
        line.warehouse = QStringLiteral("1");
        line.warehouse_name = QStringLiteral("主仓");
        line.place = QStringLiteral("A-1");
        line.remark = QStringLiteral("轻放");
        line.changed = 1;
        return line;
    }
};

/** The editor of documents. */
class instore_editor : public instore_records {
protected:
    void open(int mode, int type = 1) {
        editor = std::make_unique<dlg_instore_add>(nullptr, mode, type);
        editor->show();
        table = child<QTableWidget>(editor.get(), "tablewidget");
    }
    /** A new document with operator and partner, and these lines. */
    void open_filled(int type, std::initializer_list<const char*> products) {
        open(0, type);
        choose_operater();
        choose_partner();
        for (const char* product : products)
            editor->slot_instore_detail_do_add(line_of(product));
        server.forget();
    }
    void choose_operater() {
        struct_emp operater;
        operater.id = QStringLiteral("65");
        operater.name = QStringLiteral("张三");
        editor->slot_emp_selected(operater);
    }
    /** Both kinds of partner: the editor asks for its own. */
    void choose_partner() {
        struct_company company;
        company.id = QStringLiteral("31");
        company.name = QStringLiteral("甲单位");
        editor->slot_company_selected(company);
        struct_dept dept;
        dept.id = QStringLiteral("4");
        dept.name = QStringLiteral("一车间");
        editor->slot_dept_selected(dept);
    }
    QLineEdit* field(const std::string& name) { return child<QLineEdit>(editor.get(), name.c_str()); }
    QAction* action(const char* text) { return menu_action(table, text); }
    bool is_hidden(const std::string& name) { return child<QWidget>(editor.get(), name.c_str())->isHidden(); }

    std::unique_ptr<dlg_instore_add> editor;
    QTableWidget* table = nullptr;
};
