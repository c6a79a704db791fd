#include <algorithm>

#include "api/rights_samples.h"

namespace tavrok::test {

namespace {

/** The pages whose screens pick a user: documents, counts and moves. */
bool picks_users(const grant& granted) {
    const auto& page = granted.first;
    return page.rfind("instore_", 0) == 0 || page.rfind("outstore_", 0) == 0 || page == "stock_taking" ||
           page == "stock_allot";
}

} // namespace

std::vector<sample> user_samples(harness& world, const std::string& owner, const std::string& path) {
    static std::atomic<int> number{0};
    const auto fresh_name = [] { return "sample" + std::to_string(++number); };
    const auto fresh_user = [&world, owner, fresh_name] {
        return std::to_string(world.make_user(world.principal_of(owner).company, fresh_name(), 2).user);
    };
    const auto name = fresh_name();
    if (path == "user/get_page")
        return {{"users", "page_num=1&page_size=20",
                 [](const grant& g) { return g == grant("user", "search") || picks_users(g); }}};
    if (path == "user/do_add")
        return {{"a user",
                 "username=" + name + "&realname=r&password=" + password_on_the_wire() +
                     "&mobile=&email=" + name + "@example.com&type=2&state=1",
                 administrators_alone}};
    if (path == "user/do_edit")
        return {{"a user",
                 "&realname=r&password=new&mobile=&email=" + name + "@example.com&state=1&id=" + fresh_user(),
                 administrators_alone}};
    if (path == "user/do_delete") return {{"a user", "id=" + fresh_user(), administrators_alone}};
    for (const std::string key : {"username", "mobile", "email"})
        if (path == "user/check_" + key)
            return {{"a " + key, key + "=nobody&id=" + fresh_user(), administrators_alone}};
    return {};
}

} // namespace tavrok::test
