#include <QTreeWidget>
#include <algorithm>
#include <random>

#include "gui/grant_oracle.h"
#include "gui/permission_fixture.h"

// Any tree, any grants, any clicks, any refusals: the requests and the marks are those of the oracle.

namespace {

class dice {
public:
    explicit dice(unsigned seed) : engine(seed) {}
    int below(int n) { return int(engine() % unsigned(n)); }

private:
    std::mt19937 engine;
};

std::vector<int> random_tree(dice& throws) {
    const int depth_limit = 1 + throws.below(4);
    std::vector<int> parents;
    std::vector<int> depth;
    const int rows = 1 + throws.below(24);
    for (int row = 0; row < rows; ++row) {
        int parent = throws.below(row + 1) - 1;
        while (parent >= 0 && depth[size_t(parent)] >= depth_limit)
            parent = parents[size_t(parent)];
        parents.push_back(parent);
        depth.push_back(parent < 0 ? 0 : depth[size_t(parent)] + 1);
    }
    return parents;
}

QByteArray written(const std::vector<grant_request>& requests) {
    QByteArray result;
    for (const grant_request& each : requests) {
        if (!result.isEmpty()) result += ' ';
        result += (each.grant ? '+' : '-') + QByteArray::number(each.row);
    }
    return result;
}

/** The same answers for both sides: none, a tenth or four tenths of them refusals. */
std::function<bool()> answers(unsigned seed) {
    const int refused_of_ten = seed % 3 == 0 ? 0 : seed % 3 == 1 ? 1 : 4;
    return [throws = dice(seed), refused_of_ten]() mutable { return throws.below(10) >= refused_of_ten; };
}

} // namespace

class permission_clicks : public permission_test {};

TEST_F(permission_clicks, do_what_the_oracle_says) {
    constexpr unsigned sequences = 400;
    int clicks = 0;
    int parts = 0;
    int requests = 0;
    for (unsigned seed = 0; seed < sequences; ++seed) {
        dice throws(seed + 1000);
        const std::vector<int> rows = random_tree(throws);
        std::set<int> granted;
        for (int row = 0; row < int(rows.size()); ++row)
            if (throws.below(3) == 0) granted.insert(row);
        grant_oracle oracle(rows, granted, answers(seed));
        serve(rows, granted);
        serve_with(answers(seed));
        open();
        ASSERT_EQ(marks(), oracle.marks) << "seed " << seed << " when opened";
        for (int n = 1 + throws.below(6); n > 0; --n) {
            // Every other click goes to the first rows, which have the most below them.
            const int row = throws.below(throws.below(2) == 0 ? int(rows.size()) : 1 + int(rows.size()) / 4);
            toggle(row);
            oracle.click(row);
            ASSERT_EQ(asked(), written(oracle.requests)) << "seed " << seed << ", row " << row;
            ASSERT_EQ(marks(), oracle.marks) << "seed " << seed << ", row " << row;
            ASSERT_EQ(granted_rows, oracle.granted) << "seed " << seed << ", row " << row;
            ++clicks;
            parts += int(std::count(oracle.marks.begin(), oracle.marks.end(), 1));
            requests += int(oracle.requests.size());
        }
        open();
        ASSERT_EQ(marks(), oracle.marks_when_opened()) << "seed " << seed << " opened again";
    }
    // The sequences reach what they are for.
    EXPECT_GT(clicks, 1000);
    EXPECT_GT(parts, 500);
    EXPECT_GT(requests, 4 * clicks);
}

TEST_F(permission_clicks, without_refusals_the_tree_opens_again_as_it_was_left) {
    for (unsigned seed = 0; seed < 60; ++seed) {
        dice throws(seed);
        const std::vector<int> rows = random_tree(throws);
        serve(rows, {});
        open();
        for (int n = 1 + throws.below(8); n > 0; --n)
            toggle(throws.below(int(rows.size())));
        const std::vector<int> left = marks();
        open();
        ASSERT_EQ(marks(), left) << "seed " << seed;
    }
}
