#pragma once

#include <string>
#include <string_view>

namespace tavrok::http {

/** Writes a file whole or not at all: a new file beside it, synced, then renamed over it. Throws
 * std::system_error that names the file. `mode` as in chmod; 0600 keeps a secret with its owner. */
void write_file(const std::string& path, std::string_view content, unsigned mode);

} // namespace tavrok::http
