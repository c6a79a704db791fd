#pragma once

#include <exception>
#include <functional>
#include <memory>
#include <string>
#include <unordered_map>
#include <vector>

#include "store/connection.h"
#include "store/meter.h"
#include "store/migrations.h"
#include "store/postgresql/placeholders.h"
#include "store/postgresql/session.h"

namespace tavrok::store {

/** The connection that jobs see: statements with their server-side preparations on one session. Used by one
 * thread.
 *
 *  The first failed statement spoils the transaction until begin(): the server would refuse all others
 * anyway. */
class pg_connection final : public connection, public schema_session {
public:
    pg_connection(const options& how, std::shared_ptr<meter> figures);

    using connection::execute;
    using connection::query;
    void query(const statement& what, std::span<const value> bound,
               const std::function<void(const row&)>& each) override;
    std::int64_t execute(const statement& what, std::span<const value> bound) override;

    dialect speaks() const override { return dialect::postgresql; }
    void script(const std::string& sql) override;
    void in_transaction(const std::function<void(connection&)>& step) override;

    /** `how` is a BEGIN statement. */
    void begin(const std::string& how);
    /** Throws error_kind::lost when it cannot be told whether the commit took place. */
    void commit();
    /** Never throws: a session that cannot roll back is not usable any more. */
    void rollback() noexcept;
    bool usable() const { return m_session.usable(); }
    /** What the first failed statement of the transaction threw; null when none did. */
    std::exception_ptr failure() const { return m_failure; }

private:
    struct known {
        std::string sql; /**< as the caller wrote it */
        numbered_statement numbered;
        /** Name of the preparation on the server, by the types of the values ("it" is an integer and a text).
         */
        std::unordered_map<std::string, std::string> prepared;
    };

    pg_result_ptr run(const statement& what, std::span<const value> bound);
    known& look_up(const statement& what);
    const std::string& preparation(known& text, std::span<const value> bound,
                                   pg_session::clock::time_point deadline);
    void forget_all();
    /** Runs `action`; a failure spoils the transaction. */
    template <typename Action>
    auto guarded(const std::string& name, const Action& action);
    pg_session::clock::time_point deadline() const;

    const std::chrono::milliseconds m_statement_timeout;
    std::shared_ptr<meter> m_figures;
    pg_session m_session;
    std::unordered_map<std::string, known> m_cache;
    known m_unnamed;
    std::exception_ptr m_failure;
    std::uint64_t m_prepared{0};
    bool m_migrating{false};
};

} // namespace tavrok::store
