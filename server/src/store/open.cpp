#include <future>
#include <memory>
#include <string_view>

#include "store/database.h"
#include "store/postgresql/database.h"
#include "store/sqlite/database.h"

namespace tavrok::store {

namespace {

bool is_postgresql(std::string_view location) {
    return location.starts_with("postgresql://") || location.starts_with("postgres://");
}

std::future<void> begin(const std::function<void(completion)>& start) {
    auto ended = std::make_shared<std::promise<void>>();
    auto outcome = ended->get_future();
    start([ended](const std::exception_ptr& failure) {
        if (failure) {
            ended->set_exception(failure);
        } else {
            ended->set_value();
        }
    });
    return outcome;
}

std::future<void> begin_read(database& where, const job& work) {
    return begin([&](completion done) { where.read(work, std::move(done)); });
}

} // namespace

std::unique_ptr<database> open(const options& how) {
    if (is_postgresql(how.location)) return open_postgresql(how);
    return open_sqlite(how);
}

void read_now(database& where, const job& work) {
    begin_read(where, work).get();
}

void read_all_now(database& where, const std::vector<job>& work) {
    std::vector<std::future<void>> outcomes;
    outcomes.reserve(work.size());
    for (const auto& one : work)
        outcomes.push_back(begin_read(where, one));
    for (const auto& one : outcomes)
        one.wait();
    for (auto& one : outcomes)
        one.get();
}

void write_now(database& where, const job& work) {
    begin([&](completion done) { where.write(work, std::move(done)); }).get();
}

} // namespace tavrok::store
