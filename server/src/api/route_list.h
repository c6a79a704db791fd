#pragma once

#include <vector>

#include "api/registry.h"
#include "api/service.h"

namespace tavrok::api {

/** The routes of a registry in words, in their order. */
std::vector<route_info> list_routes(const registry& of);

} // namespace tavrok::api
