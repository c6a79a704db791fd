#include "gui/grant_oracle.h"

#include <algorithm>

grant_oracle::grant_oracle(std::vector<int> rows_above, std::set<int> granted_rows,
                           std::function<bool()> answers)
    : granted(std::move(granted_rows)),
      parents(std::move(rows_above)),
      children(parents.size()),
      agrees(std::move(answers)) {
    for (int row = 0; row < int(parents.size()); ++row)
        if (parents[size_t(row)] >= 0) children[size_t(parents[size_t(row)])].push_back(row);
    marks = marks_when_opened();
}

/**
 * A row is partly marked when any row at or below it has some but not all of its children granted; otherwise
 * it is marked as it is granted. Rows above stand before those below, so it goes through them backwards.
 */
std::vector<int> grant_oracle::marks_when_opened() const {
    std::vector<int> opened(parents.size());
    for (int row = int(parents.size()) - 1; row >= 0; --row) {
        const auto& below = children[size_t(row)];
        const auto given =
            std::count_if(below.begin(), below.end(), [this](int child) { return granted.count(child) > 0; });
        const bool part_below =
            std::any_of(below.begin(), below.end(), [&](int child) { return opened[size_t(child)] == 1; });
        const bool some = given > 0 && given < std::ptrdiff_t(below.size());
        opened[size_t(row)] = part_below || some ? 1 : 2 * int(granted.count(row));
    }
    return opened;
}

bool grant_oracle::ask(bool grant, int row) {
    requests.push_back({grant, row});
    if (!agrees()) return false;
    if (grant)
        granted.insert(row);
    else
        granted.erase(row);
    return true;
}

void grant_oracle::click(int row) {
    requests.clear();
    int& mark = marks[size_t(row)];
    mark = mark == 2 ? 0 : 2;
    ask(mark == 2, row);
    for (int child : children[size_t(row)])
        down(child);
    for (int above = parents[size_t(row)]; above >= 0; above = parents[size_t(above)])
        up(above);
}

void grant_oracle::down(int row) {
    if (!ask(true, row)) return;
    const int above = marks[size_t(parents[size_t(row)])];
    if (above != 1 && ask(above == 2, row)) marks[size_t(row)] = above;
    for (int child : children[size_t(row)])
        down(child);
}

void grant_oracle::up(int row) {
    int sum = 0;
    bool part = false;
    for (int child : children[size_t(row)]) {
        sum += marks[size_t(child)];
        part = part || marks[size_t(child)] == 1;
    }
    const int full = 2 * int(children[size_t(row)].size());
    const int mark = sum == 0 ? 0 : !part && sum == full ? 2 : 1;
    if (ask(mark > 0, row)) marks[size_t(row)] = mark;
}
