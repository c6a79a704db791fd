#include "api/answers.h"

#include <limits>

namespace tavrok::api {

std::optional<std::string> given(const fields& form, std::string_view key) {
    return form.has(key) ? std::optional(std::string(form.text(key))) : std::nullopt;
}

std::optional<std::int64_t> given_number(const fields& form, std::string_view key) {
    return form.has(key) ? std::optional(form.integer(key)) : std::nullopt;
}

key date_key(std::string_view name) {
    using limits = std::numeric_limits<std::int64_t>;
    return integer_key(name, limits::min(), limits::max(), presence::optional);
}

key page_num_key() {
    constexpr auto any = std::numeric_limits<std::int64_t>::max();
    return integer_key("page_num", -any, any);
}

key page_size_key() {
    return integer_key("page_size", 1, 200);
}

domain::page_wish page_wish_of(const fields& form) {
    return {form.integer("page_num"), form.integer("page_size")};
}

void write_added(std::string& answer, const domain::added& what) {
    json_writer(answer)
        .open_object()
        .integer("http_state", 1)
        .number_text("insert_id", what.id)
        .integer("datetime", what.datetime)
        .close_object();
}

} // namespace tavrok::api
