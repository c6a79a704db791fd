#include "api/json_writer.h"
#include "api/menu_rows.h"
#include "api/modules/modules.h"
#include "domain/grants.h"

namespace tavrok::api {

namespace {

void get_permission(context& request) {
    const auto rows = domain::granted_rows(*request.db, *request.who, request.form.integer("user"));
    json_writer json(request.answer);
    json.open_array();
    for (const auto& row : rows)
        json.open_object().number_text("menu", row.id).close_object();
    json.close_array();
}

void get_permission_tree(context& request) {
    write_menu_rows(request.answer, domain::whole_menu(*request.db));
}

void set_checked(context& request) {
    const auto& form = request.form;
    domain::grant_row(*request.db, *request.who, form.integer("user"), form.integer("menu"), request.now);
    request.answer = "1";
}

void set_unchecked(context& request) {
    const auto& form = request.form;
    domain::revoke_row(*request.db, *request.who, form.integer("user"), form.integer("menu"), request.now);
    request.answer = "1";
}

} // namespace

void add_permission(registry& to, const services&) {
    const access administrators{.needs = access::who::administrator};
    to.add({.module = "wms_permission",
            .action = "get_permission",
            .keys = {id_key("user")},
            .answer = form::array,
            .allowed = administrators,
            .work = read_work{get_permission}});
    to.add({.module = "wms_permission",
            .action = "get_permission_tree",
            .method = "GET",
            .keys = {},
            .answer = form::array,
            .allowed = administrators,
            .work = read_work{get_permission_tree}});
    to.add({.module = "wms_permission",
            .action = "set_checked",
            .keys = {id_key("user"), id_key("menu")},
            .answer = form::count,
            .allowed = administrators,
            .work = write_work{set_checked}});
    to.add({.module = "wms_permission",
            .action = "set_unchecked",
            .keys = {id_key("user"), id_key("menu")},
            .answer = form::count,
            .allowed = administrators,
            .work = write_work{set_unchecked}});
}

} // namespace tavrok::api
