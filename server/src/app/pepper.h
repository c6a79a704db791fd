#pragma once

#include <string>

namespace tavrok::app {

/** The key of the password hashes from its file; where there is none, a random one is made (and readable by
 * its owner only). Throws std::runtime_error for a file that cannot be read, or that others can read. */
std::string load_pepper(const std::string& path);

} // namespace tavrok::app
