#pragma once

#include <atomic>

namespace tavrok::test {

/** Makes the files of SQLite fail on demand, for the databases that are opened while it lives. One at a time.
 */
class faulty_disk {
public:
    faulty_disk();
    ~faulty_disk();
    faulty_disk(const faulty_disk&) = delete;
    faulty_disk& operator=(const faulty_disk&) = delete;

    /** All writes after the next `good` ones fail with this result code; 0 heals the disk. */
    void fail_writes(int code, int good = 0);
    /** All syncs fail; false heals the disk. */
    void fail_syncs(bool failing);
    int writes() const;
    int syncs() const;
};

} // namespace tavrok::test
