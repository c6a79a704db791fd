#pragma once

#include <atomic>
#include <future>

#include "store/store_tools.h"

namespace tavrok::test {

/** A write that stays open after its work, with all its locks, until it is let go. PostgreSQL only: on SQLite
 *  nothing runs beside it. */
class open_write {
public:
    open_write(store::database& where, store::job work)
        : m_outcome(start_write(
              where, [this, work = std::move(work), go = m_go.get_future().share()](store::connection& with) {
                  work(with);
                  if (!m_told.exchange(true)) m_worked.set_value();
                  go.wait();
              })) {
        m_worked.get_future().wait();
    }
    ~open_write() {
        if (m_outcome.valid()) commit();
    }
    void commit() {
        m_go.set_value();
        m_outcome.get();
    }

private:
    std::promise<void> m_go;
    std::promise<void> m_worked;
    std::atomic<bool> m_told{false};
    std::future<void> m_outcome;
};

/** Waits until somebody waits for a lock of the database. */
inline bool somebody_waits(store::database& where) {
    return comes_true([&] {
        return number(where,
                      "SELECT count(*) FROM pg_stat_activity WHERE datname = current_database() AND "
                      "wait_event_type = 'Lock'") > 0;
    });
}

} // namespace tavrok::test
