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

} // namespace bench
