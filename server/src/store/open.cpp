#include <future>
#include <string_view>

#include "store/database.h"
#include "store/postgresql/database.h"
#include "store/sqlite/database.h"

namespace tavrok::store {

namespace {

bool is_postgresql(std::string_view location) {
    return location.starts_with("postgresql://") || location.starts_with("postgres://");
}

void wait_for(const std::function<void(completion)>& start) {
    std::promise<void> ended;
    auto outcome = ended.get_future();
    start([&ended](const std::exception_ptr& failure) {
        if (failure) {
            ended.set_exception(failure);
        } else {
            ended.set_value();
        }
    });
    outcome.get();
}

} // namespace

std::unique_ptr<database> open(const options& how) {
    if (is_postgresql(how.location)) return open_postgresql(how);
    return open_sqlite(how);
}

void read_now(database& where, const job& work) {
    wait_for([&](completion done) { where.read(work, std::move(done)); });
}

void write_now(database& where, const job& work) {
    wait_for([&](completion done) { where.write(work, std::move(done)); });
}

} // namespace tavrok::store
