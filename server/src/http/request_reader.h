#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>

#include "http/message.h"

namespace tavrok::http {

/** Reads one request after the other out of the bytes of a connection: the header first, then the body. */
class request_reader {
public:
    enum class progress { more, whole, too_large, malformed };

    explicit request_reader(std::size_t header_bytes);
    ~request_reader();

    /** Takes the header off the front of `input`; `more` where it has not come whole. */
    progress header(std::string& input);
    /** Takes what is there of the body off the front of `input`. */
    progress body(std::string& input);
    /** From now on the body is counted and thrown away. */
    void discard_body();
    std::uint64_t body_bytes() const;

    /** @name After the header */
    /**@{*/
    std::optional<std::uint64_t> content_length() const;
    bool keep_alive() const;
    bool expects_continue() const;
    std::string forwarded_for() const;
    /**@}*/

    /** The request, without peer and id; the next one may then be read. */
    request take();

private:
    struct state;
    void next();

    const std::size_t m_header_bytes;
    std::unique_ptr<state> m_state;
};

} // namespace tavrok::http
