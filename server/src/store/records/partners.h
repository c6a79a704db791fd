#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>

#include "store/connection.h"
#include "store/records/listing.h"

namespace tavrok::store {

/** The text columns in the order of partner_texts, and those of them that are searched, in the order of
 *  partner_words. */
enum class partner_text : std::size_t { name, phone, linkman, mobile, fax, address, account, bank, remark };
inline constexpr std::size_t g_partner_texts = 9;
inline constexpr std::array<partner_text, 5> g_partner_searched{partner_text::name, partner_text::address,
                                                                partner_text::account, partner_text::bank,
                                                                partner_text::remark};

using partner_texts = std::array<std::string, g_partner_texts>;
/** One word for each searched column: its folded text, or a LIKE pattern for it. */
using partner_words = std::array<std::string, g_partner_searched.size()>;

struct partner_record {
    std::int64_t id{0};
    std::int64_t type{0};
    std::int64_t added_at{0};
    partner_texts texts;
};

/** Which live partners; an empty pattern and type 0 do not restrict. */
struct partner_filter {
    std::int64_t company{0};
    std::int64_t type{0};
    partner_words patterns;
};

/** The list of partners; a row of it is read by partner_of. */
extern const listing g_partner_list;
list_filter criteria_of(const partner_filter& filter);
partner_record partner_of(const row& one);

std::int64_t insert_partner(connection& with, std::int64_t company, std::int64_t user,
                            const partner_record& what, const partner_words& folded);
/** Changes what is given; null leaves a column alone. Gives 0 for an unknown or retired partner. */
std::int64_t update_partner(connection& with, std::int64_t company, std::int64_t id,
                            const std::array<value, g_partner_texts>& texts,
                            const std::array<value, g_partner_searched.size()>& folded);
/** The type of a live partner. */
std::optional<std::int64_t> live_partner_type(connection& with, std::int64_t company, std::int64_t id);
/** Gives 0 for an unknown or retired partner. */
std::int64_t retire_partner(connection& with, std::int64_t company, std::int64_t id, std::int64_t now);

void create_partner_counters(connection& with, std::int64_t company);
void change_partner_counter(connection& with, std::int64_t company, std::int64_t type, std::int64_t by);
/** Type 0: of all types. */
std::int64_t partner_counter(connection& with, std::int64_t company, std::int64_t type);

} // namespace tavrok::store
