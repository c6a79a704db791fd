#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace tavrok::api {

/** `typed`: a whole number that a person typed into a field that nobody checks. Blanks around it do not
 * count, and nothing but blanks counts as a key that did not come. `token`: a text that came from here, or
 * whatever the client took for it: it may hold NUL bytes. `unread`: see first_alone(). */
enum class key_kind { text, id, integer, typed, token, unread };

/** Whether the client always writes a key, or only when its value is not empty. */
enum class presence { always, optional };

/** One key of a request body. `low` and `high` bound ids and integers, both included. */
struct key {
    std::string_view name;
    key_kind kind{key_kind::text};
    presence given{presence::optional};
    std::int64_t low{0};
    std::int64_t high{0};
};

/** Shorthands for the tables of endpoints. An id counts from 1 unless `low` says that 0 means 'none'. */
key text_key(std::string_view name, presence given = presence::optional);
key id_key(std::string_view name, presence given = presence::always, std::int64_t low = 1);
key integer_key(std::string_view name, std::int64_t low, std::int64_t high,
                presence given = presence::always);
key typed_integer_key(std::string_view name, std::int64_t low, std::int64_t high);
key token_key(std::string_view name);
/** The same keys for a body of which nothing but the first value, a number, can be read: the others come as
 * if they had not been sent. */
std::vector<key> first_alone(std::vector<key> keys);

/** The values of one body by key, each as it was typed. Views point into the body that was parsed. */
class fields {
public:
    fields() = default;
    explicit fields(const std::vector<key>& keys);

    bool has(std::string_view name) const;
    /** The value, empty when the key did not come. */
    std::string_view text(std::string_view name) const;
    /** The value of a key that is a number; `otherwise` when it did not come. */
    std::int64_t integer(std::string_view name, std::int64_t otherwise = 0) const;

private:
    friend struct parser_access;
    std::size_t index(std::string_view name) const;

    const std::vector<key>* m_keys{nullptr};
    std::vector<std::optional<std::string_view>> m_values;
    std::vector<std::int64_t> m_integers;
};

/** Either the fields, or why the body is refused (a text for the log that holds nothing of the body). */
struct parsed_form {
    fields values;
    std::string refusal;
    bool ok() const { return refusal.empty(); }
};

constexpr std::size_t body_limit = 64 * 1024;

/**
 * Splits a body that was written as `key=value` pairs in the order of `keys`, joined by `&`, with or without
 * a leading `&`, without any escaping.
 *
 * The start of the body tells the first key. The other keys are looked for from the end of the body
 * backwards, the last one first, each at the last place that still leaves room for the keys before it that
 * are always written. So the text `&k=` inside a value stays in that value when k stands before that value's
 * own key, when k's own pair follows it, or when a key that is always written would be lost otherwise. A
 * value cannot be told from a pair when it holds `&k=` of its own key, or of an optional key after it that is
 * absent and that no key which is always written separates from it: then the pair is what is read.
 */
parsed_form parse_form(std::string_view body, const std::vector<key>& keys);

/** True when `text` is UTF-8 without overlong forms, surrogates and NUL bytes. */
bool valid_text(std::string_view text);

} // namespace tavrok::api
