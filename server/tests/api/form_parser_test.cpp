#include "api/form_parser.h"

#include <gtest/gtest.h>
#include <rapidcheck.h>

#include <algorithm>

namespace tavrok::api {
namespace {

using values = std::vector<std::optional<std::string>>;

const std::vector<key> company_keys{text_key("type", presence::always),
                                    text_key("name", presence::always),
                                    text_key("phone", presence::always),
                                    text_key("linkman"),
                                    text_key("mobile"),
                                    text_key("address", presence::always),
                                    text_key("remark")};

/** Writes a body as the client does: keys in order, an optional one only when its value is not empty. */
std::string body_of(const std::vector<key>& keys, const values& typed, bool leading) {
    std::string body;
    for (std::size_t k = 0; k < keys.size(); ++k) {
        if (!typed[k]) continue;
        if (!body.empty() || leading) body += '&';
        body.append(keys[k].name).append("=").append(*typed[k]);
    }
    return body;
}

values values_of(const fields& form, const std::vector<key>& keys) {
    values read;
    for (const auto& k : keys)
        read.push_back(form.has(k.name) ? std::optional(std::string(form.text(k.name))) : std::nullopt);
    return read;
}

/** Every reading of `body`, found by trying all places of all keys. */
void all_readings(std::string_view body, const std::vector<key>& keys, std::size_t k, values& so_far,
                  std::vector<values>& found) {
    if (k == keys.size()) {
        if (body.empty()) found.push_back(so_far);
        return;
    }
    if (keys[k].given == presence::optional) {
        so_far[k].reset();
        all_readings(body, keys, k + 1, so_far, found);
    }
    const bool nothing_yet = std::none_of(so_far.begin(), so_far.begin() + static_cast<std::ptrdiff_t>(k),
                                          [](const auto& v) { return v.has_value(); });
    const auto bare = std::string(keys[k].name) + "=";
    const auto marker = "&" + bare;
    std::size_t start = 0;
    if (body.substr(0, marker.size()) == marker) {
        start = marker.size();
    } else if (nothing_yet && body.substr(0, bare.size()) == bare) {
        start = bare.size();
    } else {
        return;
    }
    for (auto end = start; end <= body.size(); ++end) {
        if (end < body.size() && body[end] != '&') continue;
        so_far[k] = std::string(body.substr(start, end - start));
        auto rest = so_far;
        all_readings(body.substr(end), keys, k + 1, rest, found);
    }
    so_far[k].reset();
}

std::vector<values> all_readings(std::string_view body, const std::vector<key>& keys) {
    std::vector<values> found;
    values so_far(keys.size());
    all_readings(body, keys, 0, so_far, found);
    return found;
}

/** The reading that the rules prefer: from the last key backwards, a pair rather than none, a later one
 * rather than an earlier one, which is the one with the shorter value. */
bool preferred(const values& left, const values& right) {
    for (auto k = left.size(); k-- > 0;) {
        if (left[k] == right[k]) continue;
        if (left[k].has_value() != right[k].has_value()) return left[k].has_value();
        return left[k]->size() < right[k]->size();
    }
    return false;
}

/** Text that a person might type, with plenty of what could be mistaken for a form. */
rc::Gen<std::string> any_text(const std::vector<key>& keys) {
    std::vector<std::string> pieces{"&", "=", "%", "+",    "%26",  "\n", "\r\n",     "\"",  "'",    "\\",
                                    " ", "a", "7", "价格", "仓库", "😀",  "&price=1", "&x=", "&amp;"};
    for (const auto& k : keys) {
        pieces.push_back("&" + std::string(k.name) + "=");
        pieces.push_back(std::string(k.name) + "=");
    }
    return rc::gen::map(rc::gen::container<std::vector<std::string>>(rc::gen::elementOf(pieces)),
                        [](const std::vector<std::string>& parts) {
                            std::string whole;
                            for (const auto& part : parts)
                                whole += part;
                            return whole;
                        });
}

values typed_form(const std::vector<key>& keys) {
    values typed;
    for (const auto& k : keys) {
        auto text = *rc::gen::resize(4, any_text(keys));
        if (k.given == presence::optional && text.empty()) {
            typed.emplace_back();
        } else {
            typed.emplace_back(std::move(text));
        }
    }
    return typed;
}

/** The promise of parse_form, word for word: no value holds the marker of its own key (the first key's
 * apart), nor that of an absent optional key after it. */
bool can_be_told(const std::vector<key>& keys, const values& typed) {
    bool first = true;
    for (std::size_t v = 0; v < keys.size(); ++v) {
        if (!typed[v]) continue;
        for (std::size_t k = v; k < keys.size(); ++k) {
            const bool own = k == v;
            if (own ? first : typed[k].has_value()) continue;
            if (typed[v]->find("&" + std::string(keys[k].name) + "=") != std::string::npos) return false;
        }
        first = false;
    }
    return true;
}

void expect_round_trips(const std::vector<key>& keys) {
    EXPECT_TRUE(rc::check("what was typed comes back whenever it can be told", [&] {
        const auto typed = typed_form(keys);
        const auto body = body_of(keys, typed, *rc::gen::arbitrary<bool>());
        const auto form = parse_form(body, keys);
        RC_ASSERT(form.ok());
        RC_CLASSIFY(can_be_told(keys, typed));
        if (can_be_told(keys, typed)) RC_ASSERT(values_of(form.values, keys) == typed);
    }));
}

TEST(form_parser, any_text_comes_back_as_typed) {
    expect_round_trips(company_keys);
}

TEST(form_parser, any_text_comes_back_where_every_key_is_always_written) {
    expect_round_trips({text_key("product", presence::always), text_key("price", presence::always),
                        text_key("remark", presence::always), text_key("place", presence::always)});
}

TEST(form_parser, any_text_comes_back_where_every_key_is_optional) {
    expect_round_trips({text_key("a"), text_key("ab"), text_key("b"), text_key("c")});
}

TEST(form_parser, reads_as_the_exhaustive_search_prefers) {
    const std::vector<key> keys{text_key("a", presence::always), text_key("b"),
                                text_key("c", presence::always), text_key("d")};
    EXPECT_TRUE(
        rc::check("equals the preferred one of all readings; refuses exactly where there is none", [&] {
            const auto pieces =
                std::vector<std::string>{"&a=", "&b=", "&c=", "&d=", "&b=", "&d=", "a=", "x", "&", "="};
            const auto parts =
                *rc::gen::resize(9, rc::gen::container<std::vector<std::string>>(rc::gen::elementOf(pieces)));
            std::string body = *rc::gen::element<std::string>("a=", "&a=", "");
            for (const auto& part : parts)
                body += part;
            if (*rc::gen::inRange(0, 3) > 0) body += "&c=";
            auto readings = all_readings(body, keys);
            const auto form = parse_form(body, keys);
            RC_ASSERT(form.ok() == !readings.empty());
            RC_CLASSIFY(readings.size() > 1, "ambiguous");
            if (readings.empty()) return;
            RC_ASSERT(values_of(form.values, keys) ==
                      *std::min_element(readings.begin(), readings.end(), preferred));
        }));
}

TEST(form_parser, a_price_typed_into_a_remark_stays_there) {
    const std::vector<key> keys{id_key("product"), text_key("price", presence::always),
                                text_key("remark", presence::always)};
    const auto form = parse_form("product=3&price=2.50&remark=ask&price=1", keys);
    ASSERT_TRUE(form.ok());
    EXPECT_EQ(form.values.text("price"), "2.50");
    EXPECT_EQ(form.values.text("remark"), "ask&price=1");
}

TEST(form_parser, a_key_that_must_follow_keeps_an_optional_one_inside_its_value) {
    const std::vector<key> keys{text_key("name", presence::always), text_key("note"),
                                text_key("phone", presence::always), text_key("remark")};
    const auto form = parse_form("&name=A&remark=x&phone=5", keys);
    ASSERT_TRUE(form.ok());
    EXPECT_EQ(form.values.text("name"), "A&remark=x");
    EXPECT_FALSE(form.values.has("remark"));
}

TEST(form_parser, percent_plus_and_breaks_stand_for_themselves) {
    const auto form = parse_form("type=1&name=50%25+a%20b\r\n\"q\" 甲😀&phone=1&address=x", company_keys);
    ASSERT_TRUE(form.ok());
    EXPECT_EQ(form.values.text("name"), "50%25+a%20b\r\n\"q\" 甲😀");
}

TEST(form_parser, numbers_are_bounded_and_whole) {
    const std::vector<key> keys{id_key("id"), integer_key("page_size", 1, 200)};
    const auto good = parse_form("id=9223372036854775807&page_size=200", keys);
    ASSERT_TRUE(good.ok());
    EXPECT_EQ(good.values.integer("id"), 9223372036854775807);
    EXPECT_EQ(good.values.integer("page_size"), 200);
    for (const auto* bad :
         {"id=0&page_size=1", "id=-1&page_size=1", "id=9223372036854775808&page_size=1", "id=1&page_size=0",
          "id=1&page_size=201", "id=1&page_size=", "id=1&page_size= 1", "id=1&page_size=1.0",
          "id=1&page_size=1e1", "id=+1&page_size=1", "id=１&page_size=1"})
        EXPECT_FALSE(parse_form(bad, keys).ok()) << bad;
}

TEST(form_parser, garbled_bodies_are_refused) {
    for (const auto* bad :
         {"", "&", "=", "type", "x=1", "&x=1&type=1&name=a&phone=1&address=b", "&&type=1", "type=1",
          "type=1&name=a&phone=b", "name=a&type=1&phone=1&address=b", " type=1&name=a&phone=1&address=b"})
        EXPECT_FALSE(parse_form(bad, company_keys).ok()) << bad;
}

TEST(form_parser, a_body_without_keys_must_be_empty) {
    EXPECT_TRUE(parse_form("", {}).ok());
    EXPECT_FALSE(parse_form("a=1", {}).ok());
}

TEST(form_parser, the_limit_is_the_last_byte_that_passes) {
    const std::vector<key> keys{text_key("a")};
    EXPECT_TRUE(parse_form("a=" + std::string(body_limit - 2, 'x'), keys).ok());
    EXPECT_FALSE(parse_form("a=" + std::string(body_limit - 1, 'x'), keys).ok());
}

TEST(form_parser, text_must_be_utf8_without_nul) {
    for (const auto* good : {"plain", "\xC2\x80", "\xE0\xA0\x80", "\xED\x9F\xBF", "\xEE\x80\x80",
                             "\xF0\x90\x80\x80", "\xF4\x8F\xBF\xBF"})
        EXPECT_TRUE(valid_text(good));
    for (const auto* bad : {"\x80", "\xC0\x80", "\xC1\xBF", "\xC2", "\xE0\x9F\xBF", "\xED\xA0\x80",
                            "\xE4\xBD", "\xF0\x8F\xBF\xBF", "\xF4\x90\x80\x80", "\xF5\x80\x80\x80", "\xFF",
                            "a\xE4\xBD"
                            "a"})
        EXPECT_FALSE(valid_text(bad));
    EXPECT_FALSE(valid_text(std::string_view("a\0b", 3)));
    EXPECT_FALSE(parse_form("type=1&name=\xFF&phone=1&address=b", company_keys).ok());
}

TEST(form_parser, a_token_may_hold_what_no_text_may) {
    const std::vector<key> keys{text_key("place"), token_key("locked_id")};
    const auto form = parse_form(std::string_view("place=a&locked_id=x\0\x02\r\ny", 24), keys);
    ASSERT_TRUE(form.ok()) << form.refusal;
    EXPECT_EQ(form.values.text("locked_id"), std::string_view("x\0\x02\r\ny", 6));
    EXPECT_FALSE(parse_form(std::string_view("place=a\0&locked_id=x", 20), keys).ok());
    EXPECT_FALSE(parse_form("place=a&locked_id=\xff", keys).ok());
    EXPECT_FALSE(parse_form("place=a", keys).ok()) << "it is always written";
}

TEST(form_parser, the_first_value_can_be_read_alone) {
    const auto keys =
        first_alone({id_key("id"), integer_key("amount", 0, 9), text_key("remark", presence::always)});
    for (const auto* body : {"id=12", "&id=12", "id=12&amount=x&remark=", "id=12&remark=\xff", "id=12&",
                             "id=12&remark=a&amount=1&id=13"}) {
        const auto form = parse_form(body, keys);
        ASSERT_TRUE(form.ok()) << body;
        EXPECT_EQ(form.values.integer("id"), 12) << body;
        EXPECT_FALSE(form.values.has("amount")) << body;
        EXPECT_FALSE(form.values.has("remark")) << body;
    }
    EXPECT_TRUE(parse_form(std::string_view("id=12&remark=\0", 14), keys).ok());
    for (const auto* body : {"", "&", "id", "id=", "id=x&amount=1", "id=12x&amount=1", "id=\xff", "id=0",
                             "amount=1&id=12", "id= 12&amount=1", "id=12=&amount=1"})
        EXPECT_FALSE(parse_form(body, keys).ok()) << body;
    EXPECT_FALSE(parse_form("id=1&remark=" + std::string(body_limit, 'x'), keys).ok());
}

TEST(form_parser, many_markers_cost_no_more_than_a_look_at_each) {
    std::string body = "type=1&name=a&phone=1&address=";
    while (body.size() < body_limit - 16)
        body += "&address=";
    const auto form = parse_form(body, company_keys);
    ASSERT_TRUE(form.ok());
    EXPECT_EQ(form.values.text("address"), "");
}

TEST(form_parser, a_number_that_was_typed_may_have_blanks_around_it_or_be_missing) {
    const std::vector<key> keys{typed_integer_key("sort", -5, 5), typed_integer_key("level", 0, 2)};
    const auto read = [&](const std::string& sort) { return parse_form("sort=" + sort + "&level=1", keys); };
    for (const auto* nothing : {"", " ", "\t \r\n"}) {
        const auto form = read(nothing);
        ASSERT_TRUE(form.ok()) << form.refusal;
        EXPECT_FALSE(form.values.has("sort"));
        EXPECT_EQ(form.values.integer("sort", 3), 3);
        EXPECT_EQ(form.values.integer("level"), 1);
    }
    for (const auto* number : {"4", " 4", "4\n", "\t 4 "})
        EXPECT_EQ(read(number).values.integer("sort", 0), 4) << number;
    EXPECT_EQ(read("-5").values.integer("sort"), -5);
    for (const auto* wrong : {"6", "-6", "4 4", "x", "4x", "4.0", "+4", "99999999999999999999", "４"})
        EXPECT_FALSE(read(wrong).ok()) << wrong;
    EXPECT_FALSE(parse_form("sort=1", keys).ok()) << "the key itself is always written";
}

} // namespace
} // namespace tavrok::api
