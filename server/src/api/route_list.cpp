#include "api/route_list.h"

namespace tavrok::api {

namespace {

std::string_view word_of(form answer) {
    switch (answer) {
        case form::count:
            return "count";
        case form::result:
            return "result";
        case form::page:
            return "page";
        case form::array:
            return "array";
        case form::object:
            return "object";
        case form::image:
            return "image";
        case form::id:
            return "id";
        case form::none:
            break;
    }
    return "none";
}

void join(std::string& text, std::string_view more) {
    text.append(text.empty() ? "" : "; ").append(more);
}

std::string rules_in_words(const access& rule) {
    std::string text;
    for (const auto& [page, right] : rule.any_of)
        join(text, std::string(page) + " " + std::string(right));
    if (rule.by_value) {
        for (const auto& [value, pages] : rule.by_value->pages) {
            std::string entry = std::string(rule.by_value->key) + " " + std::to_string(value) + ":";
            for (const auto page : pages)
                entry.append(" ").append(page);
            join(text, entry.append(" ").append(rule.by_value->right));
        }
    }
    if (!rule.picker_pages.empty()) {
        std::string entry = "any right on one of:";
        for (const auto page : rule.picker_pages)
            entry.append(" ").append(page);
        join(text, entry);
    }
    return text;
}

std::string access_in_words(const access& rule) {
    switch (rule.needs) {
        case access::who::open:
            return "anybody";
        case access::who::session:
            return "any session";
        case access::who::administrator:
            return "administrator";
        case access::who::operator_administrator:
            return "administrator of the operator";
        default:
            return rules_in_words(rule);
    }
}

} // namespace

std::vector<route_info> list_routes(const registry& of) {
    std::vector<route_info> list;
    for (const auto& what : of.all()) {
        route_info route{what->path(),
                         std::string(what->method),
                         {},
                         std::string(word_of(what->answer)),
                         access_in_words(what->allowed),
                         writes(*what)};
        for (const auto& k : what->keys)
            route.keys.emplace_back(k.name);
        list.push_back(std::move(route));
    }
    return list;
}

} // namespace tavrok::api
