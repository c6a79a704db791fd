#include "api/rights_samples.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace tavrok::test {

std::vector<sample> samples_of(harness& world, const std::string& owner, const std::string& path) {
    std::vector<sample> list;
    for (const sampler one : {company_samples, document_samples, emp_samples, goods_samples, menu_samples,
                              permission_samples, stock_control_samples, user_samples, warehouse_samples}) {
        auto more = one(world, owner, path);
        std::move(more.begin(), more.end(), std::back_inserter(list));
    }
    EXPECT_FALSE(list.empty()) << "no sample for " << path;
    return list;
}

std::function<bool(const grant&)> only(const std::string& page, const std::string& right) {
    return [expected = grant(page, right)](const grant& granted) { return granted == expected; };
}

std::function<bool(const grant&)> on_pages(std::vector<std::string> pages) {
    return [pages = std::move(pages)](const grant& granted) {
        return std::find(pages.begin(), pages.end(), granted.first) != pages.end();
    };
}

bool administrators_alone(const grant&) {
    return false;
}

bool everybody(const grant&) {
    return true;
}

} // namespace tavrok::test
