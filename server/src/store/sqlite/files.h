#pragma once

#include <cstdint>
#include <string>

namespace tavrok::store {

/** The right to serve a database file: a lock on `path`.lock that the system gives back when the process
 * ends. */
class file_lock {
public:
    /** Throws error_kind::busy when another server holds it. */
    explicit file_lock(const std::string& path);
    ~file_lock();
    file_lock(const file_lock&) = delete;
    file_lock& operator=(const file_lock&) = delete;

private:
    int m_file;
};

/** True for a file system type (statfs) on which locks and shared memory are not to be trusted. */
bool is_network_file_system(std::int64_t type);

/** Throws when the folder of `path` does not exist or lies on a network file system. */
void check_folder(const std::string& path);

/** Creates an empty file that only the owner can read; leaves an existing one alone. */
void create_private_file(const std::string& path);

/** Bytes that this process may still write in the folder of `path`; 0 when it cannot be told. */
std::uint64_t free_bytes(const std::string& path);

/** The path with links and dots resolved, so that one file has one lock. */
std::string resolved_path(const std::string& path);

} // namespace tavrok::store
