#include "api/menu_rows.h"

#include "api/json_writer.h"

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

} // namespace

void write_menu_rows(std::string& answer, const std::vector<domain::menu_node>& rows) {
    answer.reserve(16 * 1024);
    json_writer json(answer);
    write_rows(json, rows);
}

} // namespace tavrok::api
