#include "domain/money.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>

#include "domain/refused.h"

namespace tavrok::domain {

namespace {

constexpr std::size_t g_longest_whole = 16; // so that the hundredths fit into 64 bits
constexpr std::size_t g_decimals = 2;

bool only_digits(std::string_view text) {
    return !text.empty() &&
           std::all_of(text.begin(), text.end(), [](char c) { return c >= '0' && c <= '9'; });
}

std::int64_t with_digits(std::int64_t number, std::string_view digits) {
    for (const char digit : digits)
        number = number * 10 + (digit - '0');
    return number;
}

} // namespace

std::int64_t parse_money(std::string_view what, std::string_view text, std::int64_t most) {
    const auto point = text.find('.');
    const auto whole = text.substr(0, point);
    const auto decimals = point == std::string_view::npos ? std::string_view("00") : text.substr(point + 1);
    if (!only_digits(whole) || whole.size() > g_longest_whole || !only_digits(decimals) ||
        decimals.size() > g_decimals) {
        throw refused(std::string(what) + " is no amount of money");
    }
    auto hundredths = with_digits(with_digits(0, whole), decimals);
    if (decimals.size() < g_decimals) hundredths *= 10;
    if (hundredths > most) throw refused(std::string(what) + " is out of range");
    return hundredths;
}

std::int64_t parse_signed_money(std::string_view what, std::string_view text, std::int64_t most) {
    const bool lost = !text.empty() && text.front() == '-';
    const auto size = parse_money(what, text.substr(lost ? 1 : 0), most);
    return lost ? -size : size;
}

std::string format_money(std::int64_t hundredths) {
    return format_money_sum(hundredths);
}

std::string format_money_sum(money_sum hundredths) {
    const bool negative = hundredths < 0;
    std::string digits; // the last one first
    for (auto left = hundredths; left != 0; left /= 10)
        digits += static_cast<char>('0' + (negative ? -(left % 10) : left % 10));
    if (digits.size() <= g_decimals) digits.append(g_decimals + 1 - digits.size(), '0');
    digits.insert(g_decimals, 1, '.');
    if (negative) digits += '-';
    return {digits.rbegin(), digits.rend()};
}

std::int64_t average_money(money_sum hundredths, std::int64_t count) {
    return static_cast<std::int64_t>((2 * hundredths + count) / (2 * money_sum{count}));
}

std::int64_t add_money(std::int64_t left, std::int64_t right) {
    std::int64_t sum = 0;
    if (__builtin_add_overflow(left, right, &sum)) throw refused("a sum is out of range");
    return sum;
}

bool agrees(std::int64_t sum, std::int64_t told, std::int64_t parts) {
    return std::abs(sum - told) < parts + binary_slack(std::abs(sum), parts);
}

std::int64_t binary_slack(std::int64_t size, std::int64_t parts) {
    constexpr unsigned exact_bits = 50; // of a binary fraction's 53, the last ones are left to the adding up
    return (size >> exact_bits) * parts;
}

bool truncates_to(std::int64_t amount, std::int64_t price, std::int64_t told) {
    constexpr std::int64_t hundredths = 100;
    const auto exact = amount * price / hundredths * hundredths;
    const auto binary = std::trunc(static_cast<double>(amount) * (static_cast<double>(price) / hundredths));
    return told == exact || told == static_cast<std::int64_t>(binary) * hundredths;
}

} // namespace tavrok::domain
