#include "api/endpoint.h"

namespace tavrok::api {

std::string_view failure_of(const endpoint& what) {
    if (!what.failure.empty()) return what.failure;
    switch (what.answer) {
        case form::count:
            return "0";
        case form::result:
            return R"({"http_state":0})";
        case form::page:
            return R"({"list":[],"total":0,"page_count":0,"page_num":1})";
        case form::array:
            return "[]";
        case form::object:
            return "{}";
        case form::image:
        case form::id:
            return "";
        case form::none:
            break;
    }
    return "0";
}

std::string_view content_type_of(form answer) {
    switch (answer) {
        case form::count:
        case form::id:
        case form::none:
            return "text/plain; charset=utf-8";
        case form::image:
            return "image/png";
        default:
            return "application/json";
    }
}

bool writes(const endpoint& what) {
    return std::holds_alternative<write_work>(what.work) || std::holds_alternative<hashed_work>(what.work);
}

bool reads_as_session_code(std::string_view body) {
    constexpr std::string_view blank = " \t\n\v\f\r";
    const auto from = body.find_first_not_of(blank);
    if (from == std::string_view::npos) return false;
    body = body.substr(from, body.find_last_not_of(blank) - from + 1);
    if (body.front() == '+') body.remove_prefix(1);
    const auto digit = body.find_first_not_of('0');
    return digit != std::string_view::npos && body.substr(digit) == "7";
}

} // namespace tavrok::api
