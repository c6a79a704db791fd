#pragma once

#include <string>
#include <string_view>

#include "http/message.h"

namespace tavrok::http {

/** The name under which a session travels. */
inline constexpr std::string_view session_cookie = "tavrok_session";

/** "/wms_company/get_page?x=1" and "https://host/wms_company/get_page" both give "wms_company/get_page". */
std::string path_of(std::string_view target);

/** The session's value in a Cookie header, "" if there is none. */
std::string session_of(std::string_view cookie_header);

/** Status line and header of an answer, up to and with the empty line. A cookie or type that would break out
 * of its line is left out. */
std::string head_of(const response& answer, bool keep_alive);

/** A path for the log: printable ASCII, everything else as '?', at most 120 characters. */
std::string loggable(std::string_view text);

} // namespace tavrok::http
