#include "app/pepper.h"

#include <sodium.h>
#include <sys/stat.h>

#include <filesystem>
#include <fstream>
#include <stdexcept>

#include "http/private_file.h"

namespace tavrok::app {

namespace {

constexpr std::size_t key_bytes = 32;
constexpr std::size_t shortest = 16;

std::string random_key() {
    unsigned char key[key_bytes];
    if (sodium_init() < 0) throw std::runtime_error("no source of random numbers");
    randombytes_buf(key, sizeof key);
    char text[2 * key_bytes + 1];
    return sodium_bin2hex(text, sizeof text, key, sizeof key);
}

} // namespace

std::string load_pepper(const std::string& path) {
    if (!std::filesystem::exists(path)) http::write_file(path, random_key() + "\n", 0600);
    struct stat about {};
    if (::stat(path.c_str(), &about) == 0 && (about.st_mode & 077) != 0) {
        throw std::runtime_error(path + " can be read by others; it must have the mode 0600");
    }
    std::ifstream file(path);
    std::string key;
    std::getline(file, key);
    if (key.size() < shortest) throw std::runtime_error(path + " holds no key of at least 16 characters");
    return key;
}

} // namespace tavrok::app
