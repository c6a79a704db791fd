#include "api/registry.h"

#include <algorithm>
#include <set>
#include <stdexcept>

namespace tavrok::api {

namespace {

[[noreturn]] void reject(const endpoint& what, const char* why) {
    throw std::logic_error("endpoint " + what.path() + ": " + why);
}

void check_access(const endpoint& what) {
    const auto& rule = what.allowed;
    const bool ruled = !rule.any_of.empty() || rule.by_value || !rule.picker_pages.empty();
    if (rule.needs == access::who::undeclared) reject(what, "has no access declaration");
    if ((rule.needs == access::who::rights) != ruled) reject(what, "has rules that do not fit its access");
    const bool own_session =
        std::holds_alternative<plain_work>(what.work) || std::holds_alternative<staged_work>(what.work);
    if (own_session && rule.needs != access::who::open) reject(what, "looks at no session and yet needs one");
    if (!own_session && rule.needs == access::who::open)
        reject(what, "works on the database without a session");
}

void check_keys(const endpoint& what) {
    std::set<std::string_view> names;
    for (const auto& k : what.keys)
        if (k.name.empty() || k.name.find_first_of("&=") != std::string_view::npos ||
            !names.insert(k.name).second)
            reject(what, "has a key that cannot be told from others");
    auto left = names;
    for (const auto& k : what.other_keys)
        if (left.erase(k.name) == 0) reject(what, "has another key in its second order");
    if (!what.other_keys.empty() && !left.empty()) reject(what, "lacks a key in its second order");
    if (what.method != "GET" && what.method != "POST") reject(what, "has an unknown method");
    if (what.method == "GET" && !what.keys.empty()) reject(what, "reads keys from a request without a body");
    const auto& by = what.allowed.by_value;
    if (by && !names.contains(by->key)) reject(what, "picks its page by an unknown key");
}

bool value_permits(const pages_by_value& by, const context& what) {
    const auto value = what.form.integer(by.key, -1);
    const auto entry = std::find_if(by.pages.begin(), by.pages.end(),
                                    [&](const auto& candidate) { return candidate.first == value; });
    return entry != by.pages.end() &&
           std::all_of(entry->second.begin(), entry->second.end(),
                       [&](std::string_view page) { return what.who->has(page, by.right); });
}

bool rules_permit(const access& rule, const context& what) {
    const auto& who = *what.who;
    for (const auto& [page, right] : rule.any_of)
        if (who.has(page, right)) return true;
    for (const auto page : rule.picker_pages)
        if (who.has_any(page)) return true;
    return rule.by_value && value_permits(*rule.by_value, what);
}

} // namespace

void registry::add(endpoint what) {
    check_access(what);
    check_keys(what);
    auto kept = std::make_unique<const endpoint>(std::move(what));
    if (!m_by_path.emplace(kept->path(), kept.get()).second) reject(*kept, "is declared twice");
    m_endpoints.push_back(std::move(kept));
}

const endpoint* registry::find(std::string_view path) const {
    const auto at = m_by_path.find(path);
    return at == m_by_path.end() ? nullptr : at->second;
}

bool permitted(const access& rule, const context& what) {
    if (rule.needs == access::who::open) return true;
    if (what.who == nullptr) return false;
    switch (rule.needs) {
        case access::who::session:
            return true;
        case access::who::administrator:
            return what.who->administrator;
        case access::who::operator_administrator:
            return what.who->operator_company && what.who->administrator;
        case access::who::rights:
            return rules_permit(rule, what);
        default:
            return false;
    }
}

} // namespace tavrok::api
