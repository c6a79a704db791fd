#include "domain/menu.h"
#include "api/json_writer.h"
#include "api/modules/modules.h"
#include "domain/refused.h"

namespace tavrok::api {

namespace {

void write_rows(json_writer& json, const std::vector<domain::menu_node>& rows) {
    json.open_array();
    for (const auto& row : rows) {
        json.open_object().number_text("id", row.id).text("name", row.name).text("action", row.action);
        json.text("real_level", row.real_level).number_text("sort", row.sort).number_text("show", row.show);
        json.name("child");
        write_rows(json, row.child);
        json.close_object();
    }
    json.close_array();
}

void get_menu(context& request) {
    if (request.form.text("action") != "list") throw domain::refused("unknown action of the menu");
    const auto rows = domain::visible_menu(*request.db, *request.who);
    request.answer.reserve(16 * 1024);
    json_writer json(request.answer);
    write_rows(json, rows);
}

} // namespace

void add_menu(registry& to, const services&) {
    to.add({.module = "wms_menu",
            .action = "get_menu",
            .keys = {text_key("action", presence::always)},
            .answer = form::array,
            .allowed = {.needs = access::who::session},
            .work = read_work{get_menu}});
}

} // namespace tavrok::api
