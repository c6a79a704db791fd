#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "api/endpoint.h"

namespace tavrok::api {

/** The one table of routes. */
class registry {
public:
    /** Takes an endpoint in. Throws std::logic_error for one that nobody declared access to, that stands
     * twice, or whose declaration contradicts itself. */
    void add(endpoint what);

    const endpoint* find(std::string_view path) const;
    /** In the order in which they were added. */
    const std::vector<std::unique_ptr<const endpoint>>& all() const { return m_endpoints; }

private:
    struct text_hash {
        using is_transparent = void;
        std::size_t operator()(std::string_view text) const { return std::hash<std::string_view>()(text); }
    };
    std::vector<std::unique_ptr<const endpoint>> m_endpoints;
    std::unordered_map<std::string, const endpoint*, text_hash, std::equal_to<>> m_by_path;
};

/** True when `who` may make the request that `what` describes. */
bool permitted(const access& rule, const context& what);

} // namespace tavrok::api
