#include "api/second_look.h"

namespace tavrok::api {

std::optional<store::error_kind> store_failure(const std::exception_ptr& failure) {
    if (!failure) return std::nullopt;
    try {
        std::rethrow_exception(failure);
    } catch (const store::error& error) {
        return error.kind();
    } catch (...) {
        return std::nullopt;
    }
}

bool worth_a_second_look(const std::exception_ptr& failure) {
    const auto kind = store_failure(failure);
    return kind == store::error_kind::lost || kind == store::error_kind::unique;
}

} // namespace tavrok::api
