#include "app/commands.h"

#include <algorithm>
#include <ctime>
#include <filesystem>
#include <iostream>
#include <stdexcept>
#include <thread>

#include "app/folds.h"
#include "app/logging.h"
#include "app/password.h"
#include "app/pepper.h"
#include "domain/accounts.h"
#include "domain/check.h"
#include "domain/demo.h"
#include "domain/refused.h"
#include "store/database.h"

namespace tavrok::app {

namespace {

std::int64_t now() {
    return static_cast<std::int64_t>(std::time(nullptr));
}

/** A statement that looks at everything once may take longer than one that answers a request. */
constexpr std::chrono::minutes g_proof_timeout{60};
constexpr unsigned g_most_provers = 4; // at the same time

/** For work that is done by one after the other. */
store::options with_one_reader() {
    store::options how;
    how.readers = 1;
    return how;
}

std::unique_ptr<store::database> open_database(const config& chosen, store::options how = with_one_reader()) {
    how.location = chosen.database;
    auto opened = store::open(how);
    complete_folds(*opened);
    return opened;
}

void use_time_zone(const std::string& zone) {
    if (zone.empty()) return;
    const bool plain = zone.find("..") == std::string::npos && zone.front() != '/';
    if (!plain || !std::filesystem::is_regular_file("/usr/share/zoneinfo/" + zone)) {
        throw std::runtime_error("there is no time zone " + zone);
    }
    ::setenv("TZ", zone.c_str(), 1);
    ::tzset();
}

int dispatch(const config& chosen) {
    if (chosen.command == "version") {
        std::cout << "tavrok_wmsd " << TAVROK_VERSION << '\n';
        return 0;
    }
    use_time_zone(chosen.time_zone);
    if (chosen.command == "serve") return serve(chosen);
    if (chosen.command == "init") return init(chosen);
    if (chosen.command == "demo") return demo(chosen);
    return check(chosen);
}

} // namespace

int init(const config& chosen) {
    const std::string password = chosen.password.empty() ? ask_password() : chosen.password;
    if (password.empty()) throw std::runtime_error("the password is empty");
    const std::string hash =
        domain::hash_password(load_pepper(chosen.pepper_file), domain::md5_hex(password));
    const auto database = open_database(chosen);
    store::write_now(*database, [&](store::connection& with) {
        domain::new_user administrator;
        administrator.company = domain::create_company(with, chosen.company, true, now());
        administrator.username = chosen.user;
        administrator.realname = chosen.realname.empty() ? chosen.user : chosen.realname;
        administrator.password_hash = hash;
        administrator.type = 1;
        domain::create_user(with, administrator, now());
    });
    database->stop();
    std::cout << "made the company " << chosen.company << " with the administrator " << chosen.user << '\n';
    return 0;
}

int demo(const config& chosen) {
    const std::string pepper = load_pepper(chosen.pepper_file);
    const auto database = open_database(chosen);
    std::vector<domain::demo_account> accounts;
    store::write_now(*database,
                     [&](store::connection& with) { accounts = domain::make_demo(with, pepper, now()); });
    database->stop();
    for (const domain::demo_account& one : accounts) {
        std::cout << one.username << '\t' << domain::g_demo_password << '\t' << one.role << '\n';
    }
    return 0;
}

int check(const config& chosen) {
    const bool is_file = chosen.database.find("://") == std::string::npos;
    if (is_file && !std::filesystem::exists(chosen.database)) {
        throw std::runtime_error("there is no database " + chosen.database);
    }
    store::options how;
    how.statement_timeout = g_proof_timeout;
    how.readers = std::clamp(std::thread::hardware_concurrency(), 1U, g_most_provers);
    const auto database = open_database(chosen, how);
    const auto proofs = domain::proofs();
    std::vector<std::vector<domain::finding>> of_each(proofs.size());
    std::vector<store::job> jobs;
    for (std::size_t i = 0; i < proofs.size(); ++i) {
        jobs.emplace_back([&found = of_each[i], prove = proofs[i]](store::connection& with) {
            found.clear();
            prove(with, found);
        });
    }
    store::read_all_now(*database, jobs);
    database->stop();
    std::vector<domain::finding> found;
    for (auto& part : of_each)
        found.insert(found.end(), part.begin(), part.end());
    for (const domain::finding& one : found)
        std::cout << one.rule << ": " << one.text << '\n';
    std::cout << (found.empty() ? "everything holds" : std::to_string(found.size()) + " rows break a promise")
              << '\n';
    return found.empty() ? 0 : 1;
}

int run(int count, const char* const* arguments) {
    const parsed asked = parse(count, arguments);
    if (!asked.runs) return asked.exit_code;
    int code = 1;
    try {
        start_log(asked.chosen);
        code = dispatch(asked.chosen);
    } catch (const std::exception& failure) {
        std::cerr << "tavrok_wmsd: " << failure.what() << '\n';
    }
    end_log();
    return code;
}

} // namespace tavrok::app
