#include "api/second_look.h"

#include "store/connection.h"

namespace tavrok::api {

bool worth_a_second_look(const std::exception_ptr& failure) {
    if (!failure) return false;
    try {
        std::rethrow_exception(failure);
    } catch (const store::error& error) {
        return error.kind() == store::error_kind::lost || error.kind() == store::error_kind::unique;
    } catch (...) {
        return false;
    }
}

} // namespace tavrok::api
