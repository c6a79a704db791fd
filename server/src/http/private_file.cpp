#include "http/private_file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <system_error>

namespace tavrok::http {

namespace {

[[noreturn]] void fail(const std::string& path) {
    throw std::system_error(errno, std::generic_category(), "cannot write " + path);
}

bool write_all(int file, std::string_view content) {
    while (!content.empty()) {
        const ssize_t written = ::write(file, content.data(), content.size());
        if (written < 0 && errno == EINTR) continue;
        if (written < 0) return false;
        content.remove_prefix(static_cast<std::size_t>(written));
    }
    return true;
}

} // namespace

void write_file(const std::string& path, std::string_view content, unsigned mode) {
    std::string beside = path + ".XXXXXX";
    const int file = ::mkostemp(beside.data(), O_CLOEXEC);
    if (file < 0) fail(path);
    // mkostemp makes the file with 0600, so nobody else reads it before it has its mode.
    const bool whole = write_all(file, content) && ::fchmod(file, mode) == 0 && ::fsync(file) == 0;
    const int failure = errno;
    ::close(file);
    if (whole && ::rename(beside.c_str(), path.c_str()) == 0) return;
    if (!whole) errno = failure;
    const int told = errno;
    ::unlink(beside.c_str());
    errno = told;
    fail(path);
}

} // namespace tavrok::http
