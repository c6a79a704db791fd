#include "store/faulty_disk.h"

#include <sqlite3.h>

#include <array>
#include <stdexcept>

namespace tavrok::test {

namespace {

struct {
    sqlite3_vfs* real{nullptr};
    sqlite3_vfs ours{};
    /** The system has one table of methods for databases and one for files beside them, with the same
     * functions to write and to sync in both. */
    std::array<const sqlite3_io_methods*, 2> real_methods{};
    std::array<sqlite3_io_methods, 2> our_methods{};
    std::atomic<int> write_code{0};
    std::atomic<int> good_writes{0};
    std::atomic<bool> failing_syncs{false};
    std::atomic<int> writes{0};
    std::atomic<int> syncs{0};
} g_disk;

int faulty_write(sqlite3_file* file, const void* bytes, int count, sqlite3_int64 at) {
    ++g_disk.writes;
    const int code = g_disk.write_code;
    if (code != SQLITE_OK && g_disk.good_writes-- <= 0) return code;
    return g_disk.real_methods[0]->xWrite(file, bytes, count, at);
}

int faulty_sync(sqlite3_file* file, int flags) {
    ++g_disk.syncs;
    if (g_disk.failing_syncs) return SQLITE_IOERR_FSYNC;
    return g_disk.real_methods[0]->xSync(file, flags);
}

int faulty_open(sqlite3_vfs*, const char* name, sqlite3_file* file, int flags, int* out_flags) {
    const int code = g_disk.real->xOpen(g_disk.real, name, file, flags, out_flags);
    if (code != SQLITE_OK || !file->pMethods) return code;
    for (std::size_t i = 0; i < g_disk.real_methods.size(); ++i) {
        if (!g_disk.real_methods[i]) {
            g_disk.real_methods[i] = file->pMethods;
            g_disk.our_methods[i] = *file->pMethods;
            g_disk.our_methods[i].xWrite = faulty_write;
            g_disk.our_methods[i].xSync = faulty_sync;
        }
        if (file->pMethods != g_disk.real_methods[i]) continue;
        file->pMethods = &g_disk.our_methods[i];
        break;
    }
    return code;
}

} // namespace

faulty_disk::faulty_disk() {
    fail_writes(SQLITE_OK);
    fail_syncs(false);
    g_disk.real = sqlite3_vfs_find(nullptr);
    g_disk.ours = *g_disk.real;
    g_disk.ours.zName = "faulty";
    g_disk.ours.xOpen = faulty_open;
    if (sqlite3_vfs_register(&g_disk.ours, 1) != SQLITE_OK)
        throw std::runtime_error("cannot register the disk");
}

faulty_disk::~faulty_disk() {
    sqlite3_vfs_unregister(&g_disk.ours);
}

void faulty_disk::fail_writes(int code, int good) {
    g_disk.good_writes = good;
    g_disk.write_code = code;
}

void faulty_disk::fail_syncs(bool failing) {
    g_disk.failing_syncs = failing;
}

int faulty_disk::writes() const {
    return g_disk.writes;
}

int faulty_disk::syncs() const {
    return g_disk.syncs;
}

} // namespace tavrok::test
