#include "domain/document_numbers.h"

#include <ctime>

namespace tavrok::domain {

std::int64_t day_of(std::int64_t now) {
    const auto seconds = static_cast<std::time_t>(now);
    std::tm local{};
    localtime_r(&seconds, &local);
    return (local.tm_year + 1900) * 10'000 + (local.tm_mon + 1) * 100 + local.tm_mday;
}

std::string document_number(std::string_view prefix, std::int64_t day, std::int64_t sequence) {
    constexpr std::size_t digits = 4;
    auto number = std::to_string(sequence);
    if (number.size() < digits) number.insert(0, digits - number.size(), '0');
    return std::string(prefix) + std::to_string(day) + '-' + number;
}

} // namespace tavrok::domain
