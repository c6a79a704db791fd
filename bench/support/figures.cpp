#include "support/figures.h"

#include <boost/json.hpp>
#include <cmath>
#include <cstdio>
#include <fstream>
#include <iterator>
#include <stdexcept>

namespace bench {
namespace json = boost::json;

bool figure::kept() const {
    if (!bound) return true;
    return bound->side == relation::at_least ? measured >= bound->value : measured <= bound->value;
}

void figures::add(figure measured) {
    std::fprintf(stderr, "  %s: %s%s\n", measured.what.c_str(),
                 readable(measured.measured, measured.unit).c_str(),
                 measured.kept() ? "" : "  (over its limit)");
    m_all.push_back(std::move(measured));
}

void figures::write(const std::string& path) const {
    std::ofstream file(path);
    file << to_json(m_all) << '\n';
    file.flush();
    if (!file) throw std::runtime_error("cannot write " + path);
}

std::string to_json(const std::vector<figure>& all) {
    std::string text = "[";
    for (const figure& one : all) {
        json::object entry{{"what", one.what},
                           {"measured", one.measured},
                           {"unit", one.unit},
                           {"samples", one.samples},
                           {"remark", one.remark}};
        if (one.bound) {
            entry["limit"] = one.bound->value;
            entry["relation"] = one.bound->side == relation::at_least ? "at least" : "at most";
            entry["kept"] = one.kept();
        }
        text += (text.size() > 1 ? ",\n " : "\n ") + json::serialize(entry);
    }
    return text + "\n]";
}

std::vector<figure> read_figures(const std::string& path) {
    std::ifstream file(path);
    if (!file) throw std::runtime_error("cannot read " + path);
    const std::string text{std::istreambuf_iterator<char>(file), {}};
    std::vector<figure> all;
    const json::value parsed = json::parse(text);
    for (const json::value& item : parsed.as_array()) {
        const json::object& entry = item.as_object();
        figure one{entry.at("what").as_string().c_str(),
                   entry.at("measured").to_number<double>(),
                   entry.at("unit").as_string().c_str(),
                   entry.at("samples").to_number<std::size_t>(),
                   std::nullopt,
                   entry.at("remark").as_string().c_str()};
        if (const json::value* value = entry.if_contains("limit")) {
            const bool least = entry.at("relation").as_string() == "at least";
            one.bound = limit{least ? relation::at_least : relation::at_most, value->to_number<double>()};
        }
        all.push_back(std::move(one));
    }
    return all;
}

std::string readable(double number, const std::string& unit) {
    const double size = std::fabs(number);
    const int places = size >= 100 || size == 0 ? 0 : size >= 10 ? 1 : 2;
    char digits[64];
    std::snprintf(digits, sizeof digits, "%.*f", places, number);
    std::string text = digits;
    const std::size_t whole_end = std::min(text.find('.'), text.size());
    for (std::size_t at = whole_end; at > 3 + (number < 0 ? 1U : 0U);) {
        at -= 3;
        text.insert(at, ",");
    }
    return unit.empty() ? text : text + " " + unit;
}

} // namespace bench
