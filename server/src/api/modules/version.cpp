#include <limits>

#include "api/json_writer.h"
#include "api/modules/modules.h"

namespace tavrok::api {

void add_version(registry& to, const services& with) {
    const auto check = [&with](context& request) {
        const bool old = request.form.integer("version_time") < with.options.oldest_client;
        json_writer(request.answer)
            .open_object()
            .text("need_update", old ? "1" : "0")
            .text("file_name", with.options.client_download)
            .close_object();
    };
    to.add({.module = "version",
            .action = "wms_check",
            .keys = {integer_key("version_time", 0, std::numeric_limits<std::int64_t>::max())},
            .answer = form::object,
            .allowed = {.needs = access::who::open},
            .work = plain_work{check}});
}

} // namespace tavrok::api
