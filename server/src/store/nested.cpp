#include "store/nested.h"

namespace tavrok::store {

namespace {

const statement g_begin{"nested_begin", "SAVEPOINT part"};
const statement g_undo{"nested_undo", "ROLLBACK TO SAVEPOINT part"};
const statement g_end{"nested_end", "RELEASE SAVEPOINT part"};

} // namespace

void nested(connection& with, const std::function<void()>& work) {
    with.execute(g_begin, {});
    try {
        work();
    } catch (const error&) {
        throw;
    } catch (...) {
        with.execute(g_undo, {});
        with.execute(g_end, {});
        throw;
    }
    with.execute(g_end, {});
}

} // namespace tavrok::store
