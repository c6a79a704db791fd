#pragma once
#include <functional>
#include <set>
#include <vector>

/** What a change of a grant asks of the service. */
struct grant_request {
    bool grant;
    int row;
    bool operator==(const grant_request& other) const { return grant == other.grant && row == other.row; }
};

/**
 * Knows what clicks on the tree of grants have to do, without a tree: rows are numbers from 0, each with the
 * number of the row above (-1 for none), and a mark 0, 1 or 2.
 */
class grant_oracle {
public:
    /** `agrees` gives the service's answer to each request in turn. */
    grant_oracle(std::vector<int> parents, std::set<int> granted, std::function<bool()> agrees);

    /** The user presses the box of a row. */
    void click(int row);

    /** The marks that a dialog opened now would show. */
    std::vector<int> marks_when_opened() const;

    std::vector<int> marks;
    /** What the service holds. */
    std::set<int> granted;
    /** Of the latest click. */
    std::vector<grant_request> requests;

private:
    bool ask(bool grant, int row);
    void down(int row);
    void up(int row);

    std::vector<int> parents;
    std::vector<std::vector<int>> children;
    std::function<bool()> agrees;
};
