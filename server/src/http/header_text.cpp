#include "http/header_text.h"

#include <algorithm>

namespace tavrok::http {

namespace {

std::string_view reason_of(unsigned status) {
    switch (status) {
        case 200:
            return "OK";
        case 400:
            return "Bad Request";
        case 403:
            return "Forbidden";
        case 404:
            return "Not Found";
        case 405:
            return "Method Not Allowed";
        case 408:
            return "Request Timeout";
        case 413:
            return "Payload Too Large";
        case 429:
            return "Too Many Requests";
        case 431:
            return "Request Header Fields Too Large";
        case 503:
            return "Service Unavailable";
        default:
            return "Answer";
    }
}

bool fits_line(std::string_view value, std::string_view barred) {
    return std::all_of(value.begin(), value.end(), [&](unsigned char c) {
        return c >= 0x20 && c < 0x7f && barred.find(static_cast<char>(c)) == std::string_view::npos;
    });
}

} // namespace

std::string path_of(std::string_view target) {
    target = target.substr(0, target.find_first_of("?#"));
    if (target.starts_with("http://") || target.starts_with("https://")) {
        const auto slash = target.find('/', target.find("//") + 2);
        target = slash == std::string_view::npos ? std::string_view{} : target.substr(slash);
    }
    if (target.starts_with('/')) target.remove_prefix(1);
    return std::string(target);
}

std::string session_of(std::string_view cookie_header) {
    while (!cookie_header.empty()) {
        const auto semicolon = cookie_header.find(';');
        std::string_view pair = cookie_header.substr(0, semicolon);
        cookie_header =
            semicolon == std::string_view::npos ? std::string_view{} : cookie_header.substr(semicolon + 1);
        while (pair.starts_with(' ') || pair.starts_with('\t'))
            pair.remove_prefix(1);
        while (pair.ends_with(' ') || pair.ends_with('\t'))
            pair.remove_suffix(1);
        if (pair.starts_with(session_cookie) && pair.substr(session_cookie.size()).starts_with('=')) {
            return std::string(pair.substr(session_cookie.size() + 1));
        }
    }
    return {};
}

std::string head_of(const response& answer, bool keep_alive) {
    std::string head;
    head.reserve(320);
    head.append("HTTP/1.1 ").append(std::to_string(answer.status)).append(" ");
    head.append(reason_of(answer.status)).append("\r\n");
    if (!answer.content_type.empty() && fits_line(answer.content_type, "")) {
        head.append("Content-Type: ").append(answer.content_type).append("\r\n");
    }
    head.append("Content-Length: ").append(std::to_string(answer.body.size())).append("\r\n");
    head.append("Cache-Control: no-store\r\n");
    if (!answer.set_cookie.empty() && fits_line(answer.set_cookie, " \",;\\")) {
        head.append("Set-Cookie: ").append(session_cookie).append("=").append(answer.set_cookie);
        head.append("; Path=/; HttpOnly; Secure; SameSite=Strict\r\n");
    }
    head.append(keep_alive ? "Connection: keep-alive\r\n\r\n" : "Connection: close\r\n\r\n");
    return head;
}

std::string loggable(std::string_view text) {
    std::string shown(text.substr(0, 120));
    for (char& c : shown) {
        if (c <= 0x20 || c >= 0x7f) c = '?';
    }
    return shown;
}

} // namespace tavrok::http
