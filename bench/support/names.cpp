#include "support/names.h"

#include <array>

namespace bench {
namespace {

using word = const char*;

constexpr std::array<word, 16> places{"云泽", "临岚", "青浦湾", "北澜", "江渡", "南屿", "松陵口", "石桥",
                                      "白鹭", "海陵", "长汀",   "望川", "平湖", "东篱", "西陵",   "定安"};
constexpr std::array<word, 32> first{"华", "恒", "瑞", "鼎", "盛", "宏", "嘉", "泰", "永", "安", "锦",
                                     "博", "汇", "新", "广", "顺", "金", "益", "振", "腾", "凯", "德",
                                     "立", "远", "同", "万", "合", "亚", "晨", "启", "天", "百"};
constexpr std::array<word, 24> second{"丰", "达", "源", "通", "信", "和", "祥", "兴", "昌", "隆", "成", "美",
                                      "康", "利", "发", "光", "辉", "诚", "欣", "润", "沃", "佳", "维", "越"};
constexpr std::array<word, 8> trades{"五金", "电子", "包装", "食品", "建材", "机电", "纺织", "化工"};
constexpr std::array<word, 4> forms{"有限公司", "贸易有限公司", "实业公司", "商行"};

constexpr std::array<word, 8> qualities{"镀锌", "不锈钢", "加厚", "防滑", "耐磨", "标准型", "重型", "轻便"};
constexpr std::array<word, 16> goods{"螺栓",   "轴承",   "扳手",   "胶带",   "纸箱", "手套",
                                     "开关",   "电缆",   "密封圈", "周转箱", "滤芯", "阀门",
                                     "传送带", "标签纸", "缠绕膜", "工具箱"};
constexpr std::array<word, 16> surnames{"周", "林", "沈", "陆", "顾", "温", "简", "骆",
                                        "卓", "向", "邵", "辛", "舒", "裴", "祝", "池"};
constexpr std::array<word, 16> given{"明",   "晓燕", "云舟", "静禾", "牧野", "采薇", "远山", "若水",
                                     "星河", "承泽", "念慈", "海棠", "一川", "知遥", "望舒", "思源"};

/** A fixed scatter of the numbers, so that neighbours do not share words. */
std::uint32_t scatter(std::uint32_t number) {
    number ^= number >> 16;
    number *= 0x7feb352dU;
    number ^= number >> 15;
    number *= 0x846ca68bU;
    return number ^ (number >> 16);
}

} // namespace

std::string partner_name(std::uint32_t number) {
    std::uint32_t left = scatter(number);
    std::string name = places[left % places.size()];
    left /= places.size();
    name += first[left % first.size()];
    left /= first.size();
    name += second[left % second.size()];
    left /= second.size();
    name += trades[left % trades.size()];
    left /= trades.size();
    return name + forms[left % forms.size()];
}

std::string product_name(std::uint32_t number) {
    std::uint32_t left = scatter(number);
    std::string name = first[left % first.size()];
    left /= first.size();
    name += second[left % second.size()];
    left /= second.size();
    name += qualities[left % qualities.size()];
    left /= qualities.size();
    return name + goods[left % goods.size()];
}

std::string person_name(std::uint32_t number) {
    const std::uint32_t left = scatter(number);
    return std::string(surnames[left % surnames.size()]) + given[left / surnames.size() % given.size()];
}

const std::vector<std::string>& search_terms() {
    static const std::vector<std::string> terms = [] {
        std::vector<std::string> all(trades.begin(), trades.end());
        for (std::size_t at = 0; at < first.size(); ++at)
            all.push_back(std::string(first[at]) + second[at % second.size()]);
        for (std::size_t at = 0; at < second.size(); ++at)
            all.push_back(std::string(first[at]) + second[23 - at]);
        return all;
    }();
    return terms;
}

const std::vector<std::string>& product_terms() {
    static const std::vector<std::string> terms = [] {
        std::vector<std::string> all{"螺栓", "轴承", "扳手", "胶带", "镀锌", "加厚", "防滑", "耐磨"};
        for (std::size_t at = 0; at < first.size(); ++at)
            all.push_back(std::string(first[at]) + second[at % second.size()]);
        return all;
    }();
    return terms;
}

} // namespace bench
