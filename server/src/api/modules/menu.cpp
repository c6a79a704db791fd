#include "api/menu_rows.h"
#include "api/modules/modules.h"
#include "domain/menu_edit.h"
#include "domain/refused.h"

namespace tavrok::api {

namespace {

constexpr std::int64_t g_farthest = 1'000'000'000;

void get_menu(context& request) {
    const auto action = request.form.text("action");
    if (action == "list") {
        write_menu_rows(request.answer, domain::visible_menu(*request.db, *request.who));
    } else if (action == "edit") {
        write_menu_rows(request.answer, domain::menu_to_edit(*request.db, *request.who));
    } else {
        throw domain::refused("unknown action of the menu");
    }
}

domain::menu_wish wish_of(const fields& form) {
    domain::menu_wish wish;
    wish.name = form.text("name");
    wish.parent = form.integer("parent");
    wish.action = form.text("action");
    wish.sort = form.integer("sort");
    wish.shown = static_cast<int>(form.integer("show"));
    if (form.has("real_level")) wish.real_level = form.integer("real_level");
    return wish;
}

void do_add(context& request) {
    request.answer =
        std::to_string(domain::add_menu_row(*request.db, *request.who, wish_of(request.form), request.now));
}

void do_edit(context& request) {
    domain::edit_menu_row(*request.db, *request.who, request.form.integer("id"), wish_of(request.form),
                          request.now);
    request.answer = "1";
}

void do_delete(context& request) {
    domain::remove_menu_row(*request.db, *request.who, request.form.integer("id"), request.now);
    request.answer = "1";
}

std::vector<key> row_keys() {
    return {text_key("name", presence::always),
            id_key("parent", presence::always, 0),
            text_key("action", presence::always),
            typed_integer_key("sort", -g_farthest, g_farthest),
            integer_key("show", 0, 1),
            typed_integer_key("real_level", 0, 2)};
}

} // namespace

void add_menu(registry& to, const services&) {
    const access operators{.needs = access::who::operator_administrator};
    to.add({.module = "wms_menu",
            .action = "get_menu",
            .keys = {text_key("action", presence::always)},
            .answer = form::array,
            .allowed = {.needs = access::who::session},
            .work = read_work{get_menu}});
    to.add({.module = "wms_menu",
            .action = "do_add",
            .keys = row_keys(),
            .answer = form::id,
            .allowed = operators,
            .work = write_work{do_add}});
    auto with_id = row_keys();
    with_id.push_back(id_key("id"));
    to.add({.module = "wms_menu",
            .action = "do_edit",
            .keys = std::move(with_id),
            .answer = form::count,
            .allowed = operators,
            .work = write_work{do_edit}});
    to.add({.module = "wms_menu",
            .action = "do_delete",
            .keys = {id_key("id")},
            .answer = form::count,
            .allowed = operators,
            .work = write_work{do_delete}});
}

} // namespace tavrok::api
