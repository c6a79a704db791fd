#include "domain/demo_partners.h"

#include <string>

#include "domain/demo_words.h"

namespace tavrok::domain {

namespace {

const words g_towns{"澜杉市", "霁柘县", "鹭屿浦镇", "云枬市", "苍榆港", "沐栎城", "青柠坞镇", "岚桉县"};
const words g_brands{"翊岚", "枬和", "栎川",   "霁远", "澄柘", "瀚榆",   "拓禾",
                     "锦桉", "砚北", "鹿鸣坞", "棠序", "云阶", "ORBEKA "};
const words g_streets{"栖枬路", "望榆大街", "杉影巷", "澜港三路", "柘园南路", "鹭汀街", "栎桥东路"};
const words g_surnames{"沈", "陆", "贺", "闻", "柏", "祁", "戚", "褚", "应", "容", "鲍"};
const words g_given{"砚舟", "棠宁", "知遥", "一川", "望舒", "以宁", "屿青",
                    "临溪", "书桐", "景和", "若岚", "怀瑾", "霁云"};
const words g_banks{"澜杉商贸银行", "霁柘农商储蓄社", "云枬城市信用社", "苍榆港实业银行"};
const words g_branches{"城东支行", "港口支行", "栖枬路支行", "营业部"};
const words g_remarks{"月结30天",         "送货前一天电话预约", "", "A&B 两类货品分开存放", "",   "货到付款",
                      "合同编号 TK-2026", "节假日不收货",       "", "开票信息以邮件为准",   "VIP"};

const char* trade(int type, std::size_t number) {
    switch (type) {
        case 1:
            return pick({"五金制品厂", "包装材料有限公司", "电子元件有限公司", "塑胶制品厂", "纸业有限公司",
                         "化工原料有限公司", "仪器设备有限公司", "纺织品有限公司"},
                        number);
        case 2:
            return pick({"百货商行", "商贸有限公司", "连锁便利店", "工程有限公司", "食品超市", "家居用品店",
                         "文具批发部"},
                        number);
        default:
            return pick({"物流有限公司", "设备维修服务部", "质量检测中心", "工具租赁站", "仓储服务有限公司"},
                        number);
    }
}

} // namespace

partner demo_partner(int type, std::size_t number) {
    const auto kind = static_cast<std::size_t>(type);
    const auto spread = number * 5 + kind;
    const std::string town = pick(g_towns, spread);
    partner made;
    made.type = type;
    made.name = town + pick(g_brands, number) + trade(type, number / 3);
    made.phone = digits("0193-555", number * 11 % 10000, 4);
    made.linkman = std::string(pick(g_surnames, spread)) + pick(g_given, number / 2);
    if (number % 5 != 4) made.mobile = digits("1540000", 2000 + number, 4);
    if (number % 3 == 0) made.fax = digits("0193-556", number * 11 % 10000, 4);
    made.address = town + pick(g_streets, number / 3) + std::to_string(1 + number * 37 % 389) + "号";
    if (number % 7 != 3) {
        made.bank = std::string(pick(g_banks, spread)) + pick(g_branches, number / 2);
        made.account = digits("0000", 193000000000 + number * 7919, 15);
    }
    made.remark = pick(g_remarks, number);
    return made;
}

} // namespace tavrok::domain
