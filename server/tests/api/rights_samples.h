#pragma once

#include <functional>
#include <string>
#include <vector>

#include "api/harness.h"

namespace tavrok::test {

/** One request to an endpoint, on data of the company that asks. */
struct sample {
    std::string label;
    std::string body;
    /** Whether an ordinary user with this one grant may make it: written down by hand, a second time beside
     * the declarations. */
    std::function<bool(const grant&)> open;
    /** Makes the body anew, where serving the request uses up what it names. */
    std::function<std::string()> fresh{};
    /** Only administrators of the operator's company may make it; `open` then lets nobody in. */
    bool operators_alone{false};
};

/** Samples for an endpoint of one module, empty for the others'. `owner` is the session of the company's
 * administrator; what they are about is made once a test, by `fresh` where a request uses it up. */
using sampler = std::vector<sample> (*)(harness& world, const std::string& owner, const std::string& path);

std::vector<sample> company_samples(harness& world, const std::string& owner, const std::string& path);
std::vector<sample> goods_samples(harness& world, const std::string& owner, const std::string& path);
std::vector<sample> menu_samples(harness& world, const std::string& owner, const std::string& path);
std::vector<sample> document_samples(harness& world, const std::string& owner, const std::string& path);
std::vector<sample> emp_samples(harness& world, const std::string& owner, const std::string& path);
std::vector<sample> warehouse_samples(harness& world, const std::string& owner, const std::string& path);
std::vector<sample> stock_control_samples(harness& world, const std::string& owner, const std::string& path);
std::vector<sample> user_samples(harness& world, const std::string& owner, const std::string& path);
std::vector<sample> permission_samples(harness& world, const std::string& owner, const std::string& path);

/** The samples of an endpoint. A new endpoint has to join here: one without samples fails the test. */
std::vector<sample> samples_of(harness& world, const std::string& owner, const std::string& path);

/** For `open`: exactly this right; any right on one of these pages; nobody but administrators; whoever has a
 * session. */
std::function<bool(const grant&)> only(const std::string& page, const std::string& right);
std::function<bool(const grant&)> on_pages(std::vector<std::string> pages);
bool administrators_alone(const grant& granted);
bool everybody(const grant& granted);

} // namespace tavrok::test
