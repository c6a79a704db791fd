#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <exception>
#include <functional>
#include <stdexcept>
#include <vector>

#include "domain/accounts.h"
#include "domain/employees.h"
#include "domain/partners.h"
#include "domain/products.h"
#include "domain/trees.h"
#include "store/database.h"
#include "support/names.h"
#include "support/service.h"

namespace {

using namespace tavrok;

constexpr std::uint32_t per_transaction = 200;

/** The demo company with the administrator in whose name all is added. */
struct seeding {
    store::database& database;
    domain::principal who;
    std::int64_t now;
};

domain::principal demo_principal(store::database& database) {
    domain::principal who;
    store::read_now(database, [&](store::connection& with) {
        const auto found = domain::find_user(with, bench::demo_name);
        if (!found) throw std::runtime_error("no demo account; run tavrok_wmsd demo first");
        who.company = found->company;
        who.user = found->user;
    });
    who.username = bench::demo_name;
    who.administrator = true;
    return who;
}

domain::partner make_partner(std::uint32_t number) {
    const std::string digits = std::to_string(100'000 + number % 900'000);
    domain::partner made;
    made.type = 1;
    made.name = bench::partner_name(number);
    made.phone = "0571-88" + digits;
    made.linkman = number % 3 == 0 ? "周明" : "林晓燕";
    made.mobile = "13900" + digits;
    made.address = "云泽市滨江路" + std::to_string(1 + number % 400) + "号";
    made.bank = "云泽商业银行滨江支行";
    made.account = "6200" + digits + digits;
    made.remark = number % 5 == 0 ? "月结" : "";
    return made;
}

domain::product make_product(std::uint32_t number, const std::vector<std::int64_t>& categories) {
    domain::product made;
    made.name = bench::product_name(number);
    made.code = "HP-" + std::to_string(1'000'000 + number);
    made.spec = "M" + std::to_string(4 + number % 20) + "×" + std::to_string(10 + number % 90);
    made.category = categories[number % categories.size()];
    made.price = 50 + number * 37 % 90'000;
    return made;
}

/** Marks that none of the demo's employees has. */
domain::employee make_employee(std::uint32_t number) {
    const std::string digits = std::to_string(100'000 + number);
    domain::employee made;
    made.name = bench::person_name(number);
    made.jobnum = "YG-" + digits;
    made.mobile = "13800" + digits;
    made.address = "云泽市滨江路" + std::to_string(1 + number % 400) + "号";
    made.remark = number % 5 == 0 ? "夜班" : "";
    return made;
}

/** Adds in transactions of a bearable length: SQLite walks its notes for taking a statement back, which grow
 * with the transaction, at many a statement. */
void add_each(const seeding& to, std::uint32_t count,
              const std::function<void(store::connection&, std::uint32_t)>& add) {
    for (std::uint32_t begin = 0; begin < count; begin += per_transaction) {
        const std::uint32_t end = std::min(count, begin + per_transaction);
        store::write_now(to.database, [&](store::connection& with) {
            for (std::uint32_t number = begin; number < end; ++number)
                add(with, number);
        });
    }
}

/** Two hundred categories on three levels; gives the 160 lowest ones. */
std::vector<std::int64_t> add_categories(const seeding& to) {
    constexpr int tops = 8;
    constexpr int middles = 4;
    constexpr int leaves = 5;
    std::vector<std::int64_t> lowest;
    store::write_now(to.database, [&](store::connection& with) {
        lowest.clear();
        const auto add = [&](const std::string& name, std::int64_t parent) {
            return domain::add_node(with, to.who, store::g_categories, name, parent, to.now).id;
        };
        for (int top = 1; top <= tops; ++top) {
            const std::string name = "大类" + std::to_string(top);
            const std::int64_t first = add(name, 0);
            for (int middle = 1; middle <= middles; ++middle) {
                const std::string below = name + "." + std::to_string(middle);
                const std::int64_t second = add(below, first);
                for (int leaf = 1; leaf <= leaves; ++leaf)
                    lowest.push_back(add(below + "." + std::to_string(leaf), second));
            }
        }
    });
    return lowest;
}

std::uint32_t count_of(const char* word) {
    return static_cast<std::uint32_t>(std::strtoul(word, nullptr, 10));
}

} // namespace

/** seed_company DATABASE PARTNERS PRODUCTS EMPLOYEES: gives the demo company that many more suppliers,
 * products (with two hundred categories) and employees, through the rules of the service. */
int main(int count, char** words) try {
    if (count != 5) {
        std::fputs("usage: seed_company DATABASE PARTNERS PRODUCTS EMPLOYEES\n", stderr);
        return 2;
    }
    store::options how;
    how.location = words[1];
    const auto database = store::open(how);
    const seeding to{*database, demo_principal(*database), std::time(nullptr)};
    add_each(to, count_of(words[2]), [&](store::connection& with, std::uint32_t number) {
        domain::add_partner(with, to.who, make_partner(number), to.now);
    });
    const std::uint32_t products = count_of(words[3]);
    std::vector<std::int64_t> categories;
    if (products > 0) categories = add_categories(to);
    add_each(to, products, [&](store::connection& with, std::uint32_t number) {
        domain::add_product(with, to.who, make_product(number, categories), to.now);
    });
    add_each(to, count_of(words[4]), [&](store::connection& with, std::uint32_t number) {
        domain::add_employee(with, to.who, make_employee(number), to.now);
    });
    database->stop();
    return 0;
} catch (const std::exception& failed) {
    std::fprintf(stderr, "seed_company: %s\n", failed.what());
    return 1;
}
