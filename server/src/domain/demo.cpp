#include "domain/demo.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <map>

#include "domain/accounts.h"
#include "domain/demo_documents.h"
#include "domain/demo_goods.h"
#include "domain/demo_partners.h"
#include "domain/demo_staff.h"
#include "domain/grants.h"
#include "domain/menu.h"
#include "domain/refused.h"
#include "domain/sessions.h"

namespace tavrok::domain {

const std::string_view g_demo_password = "Tavrok-2026";

namespace {

constexpr std::int64_t g_day = 24 * 3600;

principal administrator_of(std::int64_t company, std::int64_t user) {
    principal who;
    who.company = company;
    who.user = user;
    who.administrator = true;
    return who;
}

/** Makes the accounts of one company, all with the demo password. */
class account_maker {
public:
    account_maker(store::connection& with, std::string_view pepper, std::int64_t company, std::int64_t now)
        : m_with(with), m_pepper(pepper), m_company(company), m_now(now) {}

    std::int64_t make(const std::string& username, const std::string& realname, int type,
                      const std::string& mobile) {
        // Each its own hash: accounts with one password must not show it in the database.
        return create_user(m_with,
                           {m_company, username, realname, hash_password(m_pepper, md5_hex(g_demo_password)),
                            type, mobile, username + "@example.com"},
                           m_now);
    }

private:
    store::connection& m_with;
    std::string_view m_pepper;
    std::int64_t m_company;
    std::int64_t m_now;
};

using wanted_rights = std::map<std::string, std::vector<std::string>, std::less<>>;

/** Grants the rights with the page and group rows above them. */
void grant_pages(store::connection& with, const user_key& whom, const wanted_rights& wanted,
                 std::int64_t now) {
    for (const auto& group : whole_menu(with)) {
        bool any = false;
        for (const auto& page : group.child) {
            const auto rights = wanted.find(page.action);
            if (rights == wanted.end()) continue;
            any = true;
            grant_row(with, whom, page.id, now);
            for (const auto& right : page.child) {
                const auto& keys = rights->second;
                if (std::find(keys.begin(), keys.end(), right.action) == keys.end()) continue;
                grant_row(with, whom, right.id, now);
            }
        }
        if (any) grant_row(with, whom, group.id, now);
    }
}

wanted_rights keeper_rights() {
    const std::vector<std::string> all{"search", "add", "add_child", "edit", "delete"};
    const std::vector<std::string> documents{"search", "add", "view", "print", "detail_add", "detail_print"};
    return {{"instore_production", documents},
            {"instore_receive_return", documents},
            {"instore_lend_return", documents},
            {"instore_other", documents},
            {"outstore_receive", documents},
            {"outstore_lend", documents},
            {"outstore_other", documents},
            {"stock_summary", {"search", "print"}},
            {"stock_detail", {"search"}},
            {"stock_taking", documents},
            {"stock_allot", documents},
            {"prodcate", all},
            {"product", all},
            {"warehouse", all},
            {"dept", {"search"}},
            {"emp", {"search"}}};
}

wanted_rights buyer_rights() {
    const std::vector<std::string> documents{"search", "add", "view", "print", "detail_add", "detail_print"};
    return {{"instore_purchase", documents},
            {"instore_sale_return", {"search", "view"}},
            {"outstore_purchase_return", documents},
            {"stock_summary", {"search"}},
            {"product", {"search"}},
            {"company_supplier", {"search", "add", "edit", "delete"}}};
}

/** Partners as a company gathers them over the years: one every few days, the kinds mixed. */
void fill_partners(store::connection& with, const principal& who, std::array<int, 3> left, std::size_t first,
                   std::int64_t now) {
    std::int64_t count = left[0] + left[1] + left[2];
    for (std::size_t number = first; count > 0; ++number) {
        const auto kind = number % left.size();
        if (left[kind] == 0) continue;
        --left[kind];
        const auto hours = static_cast<std::int64_t>(8 + number % 9);
        add_partner(with, who, demo_partner(static_cast<int>(kind) + 1, number),
                    now - count * 5 * g_day - hours * 1800);
        --count;
    }
}

/** Documents of several users, each with his own rights, in a session that is over when they are written. */
void fill_documents(store::connection& with, const std::array<user_key, 3>& writers, std::int64_t now) {
    const auto enter = [&](const user_key& whom) {
        return resume(with, open_session(with, whom.company, whom.user, "demo", now), now).value();
    };
    tell_documents(with, {enter(writers[0]), enter(writers[1]), enter(writers[2])}, now);
    for (const auto& one : writers)
        void_access(with, one.company, one.user);
    sweep(with, now); // a transfer leaves its draft behind: it never closes
}

std::vector<demo_account> make_main_company(store::connection& with, std::string_view pepper,
                                            std::int64_t start, std::int64_t now) {
    const auto company = create_company(with, "澜杉市拓瓦克演示商贸有限公司", true, start);
    account_maker accounts(with, pepper, company, start);
    const auto admin = accounts.make("demo_admin", "沈砚舟", 1, "15400001001");
    const auto clerk = accounts.make("demo_clerk", "陆棠宁", 2, "15400001002");
    accounts.make("demo_guest", "贺知遥", 2, "15400001003");
    const auto gone = accounts.make("demo_gone", "闻一川", 2, "15400001004");
    const auto keeper = accounts.make("demo_keeper", "祁云阶", 2, "15400001005");
    const auto buyer = accounts.make("demo_buyer", "褚若岚", 2, "15400001006");
    grant_pages(with, {company, clerk},
                {{"company_supplier", {"search", "add", "edit", "delete"}}, {"company_other", {"search"}}},
                start);
    grant_pages(with, {company, keeper}, keeper_rights(), start);
    grant_pages(with, {company, buyer}, buyer_rights(), start);
    disable_user(with, {company, gone}, start + g_day);
    fill_partners(with, administrator_of(company, admin), {45, 38, 32}, 0, now);
    fill_staff(with, administrator_of(company, admin), {0, 40, 4}, now);
    fill_goods(with, administrator_of(company, admin), {5, 5, 200}, now);
    fill_documents(with, {{{company, admin}, {company, keeper}, {company, buyer}}}, now);
    return {{"demo_admin", "管理员，拥有全部权限"},
            {"demo_clerk", "普通用户，可维护供应商、查询其他单位"},
            {"demo_keeper", "普通用户，库管员：办理部分出入库，管理库存、仓库和基础资料"},
            {"demo_buyer", "普通用户，采购员：办理采购入库、维护供应商"},
            {"demo_guest", "普通用户，没有任何权限"},
            {"demo_gone", "已停用的用户"}};
}

demo_account make_second_company(store::connection& with, std::string_view pepper, std::int64_t start,
                                 std::int64_t now) {
    const auto company = create_company(with, "霁柘北岸物资有限公司", false, start);
    account_maker accounts(with, pepper, company, start);
    const auto admin = accounts.make("nord_admin", "柏望舒", 1, "15400002001");
    fill_partners(with, administrator_of(company, admin), {5, 4, 3}, 500, now);
    fill_staff(with, administrator_of(company, admin), {501, 3, 1}, now);
    fill_goods(with, administrator_of(company, admin), {2, 1, 12}, now);
    return {"nord_admin", "另一家公司的管理员"};
}

} // namespace

std::vector<demo_account> make_demo(store::connection& with, std::string_view pepper, std::int64_t now) {
    if (!no_company(with)) {
        throw refused("the database holds a company already: demo data go into an empty database only");
    }
    const auto start = now - 600 * g_day;
    auto accounts = make_main_company(with, pepper, start, now);
    accounts.push_back(make_second_company(with, pepper, start, now));
    return accounts;
}

} // namespace tavrok::domain
