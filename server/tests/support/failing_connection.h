#pragma once

#include "store/connection.h"

namespace tavrok::test {

/** What a process that ends in the middle of a transaction looks like from inside. */
struct stopped {};

/** Counts the calls of a connection and fails at one of them, and at every later one of the transaction. */
class failing_connection final : public store::connection {
public:
    enum class way { error, stop }; /**< a store::error, or `stopped` */

    /** Fails at the call number `at`, which begins with 1. */
    failing_connection(store::connection& real, int at, way how) : m_real(real), m_at(at), m_how(how) {}

    using store::connection::execute;
    using store::connection::query;
    void query(const store::statement& what, std::span<const store::value> bound,
               const std::function<void(const store::row&)>& each) override {
        count();
        m_real.query(what, bound, each);
    }
    std::int64_t execute(const store::statement& what, std::span<const store::value> bound) override {
        count();
        return m_real.execute(what, bound);
    }
    /** As good as a call: fails where all of them succeeded and the commit would be the next. */
    void commit() { count(); }

private:
    void count() {
        if (++m_calls < m_at) return;
        if (m_how == way::stop) throw stopped{};
        throw store::error(store::error_kind::other, "a failure that was asked for");
    }

    store::connection& m_real;
    int m_at;
    way m_how;
    int m_calls{0};
};

} // namespace tavrok::test
