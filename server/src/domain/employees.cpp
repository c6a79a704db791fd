#include "domain/employees.h"

#include <algorithm>
#include <array>
#include <charconv>

#include "domain/accounts.h"
#include "domain/audit.h"
#include "domain/fold.h"
#include "domain/refused.h"
#include "domain/text_rules.h"
#include "store/records/companies.h"
#include "store/records/live_rows.h"

namespace tavrok::domain {

namespace {

constexpr std::int64_t g_yes = 1;
constexpr std::int64_t g_no = 2;
const std::string g_series = "employee";

constexpr std::array<text_rule<employee>, 6> g_texts{{
    {"name", &employee::name, check_required, 200},
    {"jobnum", &employee::jobnum, check_required, 200},
    {"mobile", &employee::mobile, check_dialable, 40},
    {"address", &employee::address, check_text, 1000},
    {"idnum", &employee::idnum, check_text, 40},
    {"remark", &employee::remark, check_text, 1000},
}};

struct mark_rule {
    employee_mark mark;
    std::string employee::*text;
    const char* name;
};

constexpr std::array<mark_rule, 3> g_marks{{
    {employee_mark::jobnum, &employee::jobnum, "job number"},
    {employee_mark::idnum, &employee::idnum, "identity number"},
    {employee_mark::mobile, &employee::mobile, "mobile"},
}};

void check_flag(const char* name, std::int64_t flag) {
    if (flag != g_yes && flag != g_no) throw refused(std::string(name) + " is neither 1 nor 2");
}

store::employee_folds folds_of(const employee& what) {
    return {fold(what.name), fold(what.jobnum), fold(what.idnum)};
}

/** What holds for a record before it is written. The company is locked by now, so nobody takes a mark or the
 * default flag between this look and the write. */
void prepare(store::connection& with, std::int64_t company, const employee& what) {
    check_texts(what, g_texts);
    check_flag("isdefault", what.isdefault);
    check_flag("dimission", what.dimission);
    for (const auto& [mark, text, name] : g_marks) {
        if (store::employee_bears(with, company, mark, fold(what.*text), what.id)) {
            throw refused(std::string("another employee has this ") + name);
        }
    }
    if (what.isdefault == g_yes) store::clear_default(with, store::g_employee_list, company, g_no, what.id);
}

[[noreturn]] void refuse_unknown(std::int64_t id) {
    throw refused("unknown employee " + std::to_string(id));
}

/** The letter of a text that is this one letter; 0 for any other text. */
char32_t only_letter(std::string_view text) {
    if (text.empty()) return 0;
    std::size_t at = 0;
    const auto letter = next_letter(text, at);
    return at == text.size() && letter != g_no_letter ? letter : 0;
}

bool is_digit(char32_t letter) {
    return letter >= U'0' && letter <= U'9';
}

} // namespace

employee_page list_employees(store::connection& with, const principal& who, const employee_search& search,
                             const page_wish& wish, count_cache& counts) {
    const auto filter = store::criteria_of(
        who.company,
        store::employee_patterns{criterion_pattern(search.name), criterion_pattern(search.idnum),
                                 criterion_pattern(search.jobnum), criterion_pattern(search.mobile)});
    return read_page<employee>(with, store::g_employee_list, filter,
                               list_total(with, store::g_employee_list, filter, counts), wish,
                               store::employee_of);
}

std::vector<employee_option> list_employee_options(store::connection& with, const principal& who) {
    return store::employee_options(with, who.company);
}

added add_employee(store::connection& with, const principal& who, const employee& what, std::int64_t now) {
    lock_for_adding(with, who);
    if (store::list_counter(with, who.company, store::g_employee_list) >= g_most_employees) {
        throw refused("the company has as many employees as it may have");
    }
    employee made = what;
    made.id = 0;
    made.added_at = now;
    prepare(with, who.company, made);
    do {
        made.id = store::next_number(with, g_series);
    } while (!may_name_employee(made.id));
    store::insert_employee(with, who.company, who.user, made, folds_of(made));
    store::change_list_counter(with, who.company, store::g_employee_list, 1);
    note(with, who, "employee_add", made.id, now);
    return {made.id, now};
}

void edit_employee(store::connection& with, const principal& who, const employee& what, std::int64_t now) {
    store::bump_data_version(with, who.company);
    prepare(with, who.company, what);
    if (store::update_employee(with, who.company, what, folds_of(what)) == 0) refuse_unknown(what.id);
    note(with, who, "employee_edit", what.id, now);
}

void remove_employee(store::connection& with, const principal& who, std::int64_t id, std::int64_t now) {
    store::bump_data_version(with, who.company);
    if (store::retire(with, store::g_employee_list, who.company, id, now) == 0) refuse_unknown(id);
    store::change_list_counter(with, who.company, store::g_employee_list, -1);
    note(with, who, "employee_delete", id, now);
}

bool is_mark_taken(store::connection& with, const principal& who, employee_mark mark, std::string_view text,
                   std::int64_t except) {
    if (except != 0 && !store::is_live(with, store::g_employee_list, who.company, except)) {
        refuse_unknown(except);
    }
    check_text("mark", text, 200);
    return store::employee_bears(with, who.company, mark, fold(text), except);
}

bool may_name_employee(std::int64_t id) {
    const auto letter = static_cast<unsigned char>(id & 0xff);
    const bool blank =
        (letter >= 0x09 && letter <= 0x0d) || letter == 0x20 || letter == 0x85 || letter == 0xa0;
    const bool parts = letter == '&' || letter == '=' || letter == '+' || letter == '%';
    return letter != 0 && !is_digit(letter) && !blank && !parts;
}

std::optional<std::int64_t> find_employee(store::connection& with, std::int64_t company,
                                          std::string_view text) {
    const auto letter = only_letter(text);
    if (letter > 0 && letter <= 0xff && !is_digit(letter)) {
        const auto ids = store::employees_of_low_byte(with, company, letter);
        return ids.size() == 1 ? std::optional(ids.front()) : std::nullopt;
    }
    if (text.empty() || !std::all_of(text.begin(), text.end(), is_digit)) return std::nullopt;
    std::int64_t id = 0;
    const auto* end = text.data() + text.size();
    if (std::from_chars(text.data(), end, id).ec != std::errc()) return std::nullopt;
    if (!store::is_live(with, store::g_employee_list, company, id)) return std::nullopt;
    return id;
}

std::int64_t resolve_employee(store::connection& with, std::int64_t company, std::string_view text) {
    const auto id = find_employee(with, company, text);
    if (!id) throw refused("no one employee of the company is meant");
    return *id;
}

} // namespace tavrok::domain
