#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <exception>
#include <stdexcept>

#include "domain/accounts.h"
#include "domain/partners.h"
#include "store/database.h"
#include "support/names.h"
#include "support/service.h"

namespace {

using namespace tavrok;

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

} // namespace

/** seed_partners DATABASE COUNT: gives the demo company that many more suppliers, through the rules of the
 * service. */
int main(int count, char** words) try {
    if (count != 3) {
        std::fputs("usage: seed_partners DATABASE COUNT\n", stderr);
        return 2;
    }
    constexpr std::uint32_t per_transaction = 2000;
    const auto wanted = static_cast<std::uint32_t>(std::strtoul(words[2], nullptr, 10));
    store::options how;
    how.location = words[1];
    const auto database = store::open(how);
    const domain::principal who = demo_principal(*database);
    const std::int64_t now = std::time(nullptr);
    for (std::uint32_t begin = 0; begin < wanted; begin += per_transaction) {
        const std::uint32_t end = std::min(wanted, begin + per_transaction);
        store::write_now(*database, [&](store::connection& with) {
            for (std::uint32_t number = begin; number < end; ++number)
                domain::add_partner(with, who, make_partner(number), now);
        });
    }
    database->stop();
    return 0;
} catch (const std::exception& failed) {
    std::fprintf(stderr, "seed_partners: %s\n", failed.what());
    return 1;
}
