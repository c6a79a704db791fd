#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "domain/listing.h"
#include "domain/principal.h"
#include "store/connection.h"

namespace tavrok::domain {

/** Kinds of partner. `any` is a search criterion only. */
enum class partner_type : int { supplier = 1, client = 2, other = 3, any = 4 };

/** The kind for the number of a request; throws `refused` for another number. */
partner_type partner_type_of(std::int64_t number);
/** The page whose rights govern a kind: "company_supplier", "company_client", "company_other". */
std::string_view page_of(partner_type type);

struct partner {
    std::int64_t id{0};
    int type{0};
    std::string name;
    std::string phone;
    std::string linkman;
    std::string mobile;
    std::string fax;
    std::string address;
    std::string account;
    std::string bank;
    std::string remark;
    std::int64_t datetime{0}; /**< when it was added, seconds */
};

/** Substrings, without regard to case; an empty one does not restrict. */
struct partner_search {
    partner_type type{partner_type::any};
    std::string name{};
    std::string address{};
    std::string bank{};
    std::string account{};
    std::string remark{};
};

using partner_page = list_page<partner>;

/** What an edit changes: only what is given. */
struct partner_change {
    std::int64_t id{0};
    std::optional<std::string> name{};
    std::optional<std::string> phone{};
    std::optional<std::string> linkman{};
    std::optional<std::string> mobile{};
    std::optional<std::string> fax{};
    std::optional<std::string> address{};
    std::optional<std::string> account{};
    std::optional<std::string> bank{};
    std::optional<std::string> remark{};
};

/** Pages whose screens open the picker of trading partners. */
inline constexpr std::array<std::string_view, 8> g_partner_picker_pages{
    "instore_purchase",         "instore_sale_return", "instore_borrow_return", "instore_lend_return",
    "outstore_purchase_return", "outstore_sale_take",  "outstore_lend",         "outstore_borrow_return"};

/** Rights are judged here, because they hang on the kind of the record: "search" on the kind's page, or any
 * right on one of g_partner_picker_pages. Kind `any`
 * needs the latter, or "search" on all three pages. page_num -1 is the last page, a number outside is brought
 * into the range; page_size is 1 to 200. All of these throw `refused`, and an unknown id is as refused as one
 * of another company. */
partner_page list_partners(store::connection& with, const principal& who, const partner_search& search,
                           std::int64_t page_num, std::int64_t page_size, count_cache& counts);
/** `what.id` and `what.datetime` are ignored. Needs "add" on the kind's page. */
added add_partner(store::connection& with, const principal& who, const partner& what, std::int64_t now);
/** Needs "edit" on the page of the record's kind. */
void edit_partner(store::connection& with, const principal& who, const partner_change& change,
                  std::int64_t now);
/** Needs "delete" on the page of the record's kind. */
void remove_partner(store::connection& with, const principal& who, std::int64_t id, std::int64_t now);

} // namespace tavrok::domain
