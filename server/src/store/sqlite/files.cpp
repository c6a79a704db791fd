#include "store/sqlite/files.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/statvfs.h>
#include <sys/vfs.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstring>
#include <filesystem>

#include "store/connection.h"

namespace tavrok::store {

namespace {

// NFS, SMB, CIFS, SMB2, AFS (two), Coda, 9P, FUSE (sshfs and its like), Ceph, Lustre, OCFS2, GFS2.
constexpr std::array<std::int64_t, 13> g_network_types{
    0x6969,     0x517B,     0xFF534D42, 0xFE534D42, 0x5346414F, 0x6B414653, 0x73757245,
    0x01021997, 0x65735546, 0x00C36400, 0x0BD00BD0, 0x7461636F, 0x01161970};
constexpr std::int64_t g_type_mask = 0xFFFFFFFF; // f_type is signed on some machines
constexpr mode_t g_private = 0600;

[[noreturn]] void fail(error_kind kind, const std::string& what, const std::string& path) {
    throw error(kind, what + " " + path + ": " + std::strerror(errno));
}

std::string folder_of(const std::string& path) {
    const auto folder = std::filesystem::path(path).parent_path();
    return folder.empty() ? "." : folder.string();
}

} // namespace

file_lock::file_lock(const std::string& path)
    : m_file(::open((path + ".lock").c_str(), O_CREAT | O_RDWR | O_CLOEXEC, g_private)) {
    if (m_file < 0) fail(error_kind::other, "cannot open the lock file of", path);
    if (::flock(m_file, LOCK_EX | LOCK_NB) == 0) return;
    const bool taken = errno == EWOULDBLOCK;
    ::close(m_file);
    if (taken) throw error(error_kind::busy, "another server has the database open: " + path);
    fail(error_kind::other, "cannot lock", path);
}

// The file stays: removing it would let two servers lock two files of the same name.
file_lock::~file_lock() {
    ::close(m_file);
}

bool is_network_file_system(std::int64_t type) {
    return std::find(g_network_types.begin(), g_network_types.end(), type & g_type_mask) !=
           g_network_types.end();
}

void check_folder(const std::string& path) {
    struct statfs facts {};
    const auto folder = folder_of(path);
    if (::statfs(folder.c_str(), &facts) != 0) fail(error_kind::other, "cannot use the folder", folder);
    if (is_network_file_system(facts.f_type)) {
        throw error(error_kind::other, "a database must not lie on a network file system: " + path);
    }
}

void create_private_file(const std::string& path) {
    const int file = ::open(path.c_str(), O_CREAT | O_RDWR | O_CLOEXEC, g_private);
    if (file < 0) fail(error_kind::other, "cannot open", path);
    ::close(file);
}

std::uint64_t free_bytes(const std::string& path) {
    struct statvfs facts {};
    if (::statvfs(folder_of(path).c_str(), &facts) != 0) return 0;
    return static_cast<std::uint64_t>(facts.f_bavail) * facts.f_frsize;
}

std::string resolved_path(const std::string& path) {
    std::error_code failure;
    const auto resolved = std::filesystem::weakly_canonical(std::filesystem::absolute(path), failure);
    if (failure) throw error(error_kind::other, "cannot resolve " + path + ": " + failure.message());
    return resolved.string();
}

} // namespace tavrok::store
