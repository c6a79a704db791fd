#include <atomic>

#include "api/rights_samples.h"
#include "domain/menu_edit.h"

namespace tavrok::test {

namespace {

/** Another name at each call. */
std::string new_name() {
    static std::atomic<int> count{0};
    return "sample " + std::to_string(++count);
}

sample operators(const std::string& label, const std::string& body, std::function<std::string()> fresh = {}) {
    return {label, body, administrators_alone, std::move(fresh), true};
}

std::string new_row(harness& world) {
    const auto who = world.principal_of(world.operators_session());
    std::int64_t id = 0;
    store::write_now(*world.database, [&](store::connection& db) {
        id = domain::add_menu_row(db, who, {new_name(), 0, new_name()}, world.now);
    });
    return std::to_string(id);
}

} // namespace

std::vector<sample> menu_samples(harness& world, const std::string&, const std::string& path) {
    const std::string place = "&parent=0&action=own&sort=1&show=1&real_level=0";
    if (path == "wms_menu/get_menu")
        return {{"the menu", "action=list", everybody}, operators("the whole menu", "action=edit")};
    if (path == "wms_menu/do_add") return {operators("a group", "name=own" + place)};
    if (path == "wms_menu/do_edit") return {operators("a group", "name=renamed" + place + "&id=400")};
    if (path == "wms_menu/do_delete") {
        const auto body = [&world] { return "id=" + new_row(world); };
        return {operators("a page", body(), body)};
    }
    return {};
}

std::vector<sample> permission_samples(harness& world, const std::string& owner, const std::string& path) {
    if (!path.starts_with("wms_permission/")) return {};
    if (path == "wms_permission/get_permission_tree") return {{"the tree", "", administrators_alone}};
    const auto user = world.make_user(world.principal_of(owner).company, new_name(), 2);
    const auto body = "user=" + std::to_string(user.user);
    const bool changes = path != "wms_permission/get_permission";
    return {{"a user", changes ? body + "&menu=403" : body, administrators_alone}};
}

} // namespace tavrok::test
