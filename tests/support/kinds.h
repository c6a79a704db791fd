#pragma once
#include <QByteArray>
#include <QString>
#include <ostream>
#include <string>

/** A kind of documents as users and the service know it, written down a second time. */
struct known_kind {
    bool inbound;
    int type;
    const char* page;
    /** "company", "dept" or "" for none. */
    const char* partner;
    const char* label;
    const char* header;
    int company_type;
    const char* picker_title;
    const char* missing;
    const char* name;

    bool has(const char* kind_of_partner) const { return QByteArray(partner) == kind_of_partner; }
    QByteArray module() const { return inbound ? "wms_instore" : "wms_outstore"; }
    /** Name of a test's parameter. */
    std::string word() const { return (inbound ? "in" : "out") + std::to_string(type); }
};

inline void PrintTo(const known_kind& kind, std::ostream* out) {
    *out << kind.word();
}

inline const known_kind inbound_rows[] = {
    {true, 1, "instore_purchase", "company", "供应商", "供应商", 1, "查询选择供应商", "请选择供应商",
     "采购进货入库"},
    {true, 2, "instore_production", "dept", "生产部门", "生产部门", 0, "选择生产部门", "请选择生产部门",
     "生产完成入库"},
    {true, 3, "instore_sale_return", "company", "客户", "客户", 2, "查询选择客户", "请选择客户",
     "销售退货入库"},
    {true, 4, "instore_receive_return", "dept", "领用部门", "领用部门", 0, "选择生产部门", "请选择领用部门",
     "领用退回入库"},
    {true, 5, "instore_borrow_return", "company", "对方单位", "借入单位", 4, "查询选择借入单位",
     "请选择借入单位", "货品借入入库"},
    {true, 6, "instore_lend_return", "company", "对方单位", "借出单位", 4, "查询选择借出单位",
     "请选择借出单位", "借出返还入库"},
    {true, 7, "instore_other", "", "", "", 0, "", "", "其他入库"}};

inline const known_kind outbound_rows[] = {{false, 1, "outstore_purchase_return", "company", "供应商",
                                            "供应商", 1, "查询选择供应商", "请选择供应商", "采购退货出库"},
                                           {false, 2, "outstore_sale_take", "company", "客户", "客户", 2,
                                            "查询选择客户", "请选择客户", "销售取货出库"},
                                           {false, 3, "outstore_receive", "dept", "领用部门", "领用部门", 0,
                                            "查询选择领用部门", "请选择领用部门", "领用出库"},
                                           {false, 4, "outstore_lend", "company", "对方单位", "来往单位", 4,
                                            "查询选择借出单位", "请选择对方单位", "借出出库"},
                                           {false, 5, "outstore_borrow_return", "company", "对方单位",
                                            "来往单位", 4, "查询选择借入单位", "请选择对方单位", "还货出库"},
                                           {false, 6, "outstore_other", "", "", "", 0, "", "", "其他出库"}};
