#include "api/json_writer.h"

#include <gtest/gtest.h>
#include <rapidcheck.h>

#include <boost/json.hpp>

namespace tavrok::api {
namespace {

std::string written(std::string_view text) {
    std::string out;
    append_json_text(out, text);
    return out;
}

TEST(json_writer, text_is_escaped_as_json_wants_it) {
    EXPECT_EQ(written("a\"b\\c\n\r\t\b\f\x01\x1f\x7f/价"),
              "\"a\\\"b\\\\c\\n\\r\\t\\b\\f\\u0001\\u001f\\u007f/价\"");
    EXPECT_EQ(written(""), "\"\"");
}

TEST(json_writer, another_reader_gets_the_same_text) {
    EXPECT_TRUE(rc::check([] {
        const auto points = *rc::gen::container<std::u32string>(
            rc::gen::oneOf(rc::gen::inRange<char32_t>(0, 0x80), rc::gen::inRange<char32_t>(0x4E00, 0x9FFF),
                           rc::gen::inRange<char32_t>(0x1F600, 0x1F64F)));
        std::string text;
        for (const auto point : points) {
            if (point < 0x80) {
                text += static_cast<char>(point);
            } else if (point < 0x10000) {
                text += static_cast<char>(0xE0 | (point >> 12));
                text += static_cast<char>(0x80 | ((point >> 6) & 0x3F));
                text += static_cast<char>(0x80 | (point & 0x3F));
            } else {
                text += static_cast<char>(0xF0 | (point >> 18));
                text += static_cast<char>(0x80 | ((point >> 12) & 0x3F));
                text += static_cast<char>(0x80 | ((point >> 6) & 0x3F));
                text += static_cast<char>(0x80 | (point & 0x3F));
            }
        }
        RC_ASSERT(boost::json::parse(written(text)).as_string() == text);
    }));
}

TEST(json_writer, commas_and_brackets_fall_into_place) {
    std::string out;
    json_writer json(out);
    json.open_object().name("list").open_array();
    for (const std::int64_t id : {1, 2})
        json.open_object().number_text("id", id).text("name", "x").close_object();
    json.close_array().integer("total", -2).name("none").open_array().close_array();
    json.name("inner").open_object().close_object().text("last", "y").close_object();
    EXPECT_EQ(out, R"({"list":[{"id":"1","name":"x"},{"id":"2","name":"x"}],"total":-2,"none":[],)"
                   R"("inner":{},"last":"y"})");
}

TEST(json_writer, numbers_reach_their_ends) {
    std::string out;
    json_writer json(out);
    json.open_array().integer(INT64_MIN).integer(INT64_MAX).integer(0).close_array();
    EXPECT_EQ(out, "[-9223372036854775808,9223372036854775807,0]");
}

} // namespace
} // namespace tavrok::api
