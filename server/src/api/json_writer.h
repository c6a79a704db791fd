#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace tavrok::api {

/** Appends `text` as a JSON string, quotes included. `text` must be valid UTF-8. */
void append_json_text(std::string& out, std::string_view text);

/** Writes JSON straight into a string, commas included; the caller keeps brackets in balance. */
class json_writer {
public:
    explicit json_writer(std::string& out) : m_out(out) {}

    json_writer& open_object() { return open('{'); }
    json_writer& close_object() { return close('}'); }
    json_writer& open_array() { return open('['); }
    json_writer& close_array() { return close(']'); }
    /** Starts a member; its value follows. `name` is written as it is. */
    json_writer& name(std::string_view name);
    json_writer& text(std::string_view value);
    json_writer& integer(std::int64_t value);

    json_writer& text(std::string_view key, std::string_view value) { return name(key).text(value); }
    json_writer& integer(std::string_view key, std::int64_t value) { return name(key).integer(value); }
    /** A number as a JSON string: ids and codes, which the client reads as text. */
    json_writer& number_text(std::string_view key, std::int64_t value);

private:
    json_writer& open(char bracket);
    json_writer& close(char bracket);
    void separate();

    std::string& m_out;
    bool m_comma{false};
};

} // namespace tavrok::api
