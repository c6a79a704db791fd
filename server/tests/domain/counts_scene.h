#pragma once

#include <string>
#include <vector>

#include "domain/documents_scene.h"

namespace tavrok::test {

inline constexpr auto g_taking = domain::document_module::stocktaking;
inline constexpr auto g_transfer = domain::document_module::transfer;

/** A trading company that counts its stock and moves it between its warehouses. */
class counts_test : public documents_test {
protected:
    domain::document_header taking_header() const;
    domain::document_header transfer_header() const;

    /** A line that counts a row at the row's price. */
    domain::taking_line counted(std::int64_t stock, std::int64_t sys, std::int64_t real,
                                const std::string& token = {});
    using documents_test::put;
    std::int64_t put(const domain::principal& who, std::int64_t draft, const domain::taking_line& line);
    std::string close_sums(const domain::principal& who, std::int64_t draft, std::int64_t difference,
                           std::int64_t total, std::int64_t now = g_now);
    /** A draft with these lines. */
    std::int64_t counting(const domain::principal& who, const std::vector<domain::taking_line>& lines,
                          std::int64_t now = g_now);
    /** Writes a stocktaking as the client does; gives why it was dropped. */
    std::string take_stock(const std::vector<domain::taking_line>& lines, std::int64_t now = g_now) {
        return take_stock(boss, lines, now);
    }
    std::string take_stock(const domain::principal& who, const std::vector<domain::taking_line>& lines,
                           std::int64_t now = g_now);

    /** A transfer's line out of a row, to a place at the destination. */
    domain::document_line moved(std::int64_t stock, std::int64_t amount, const std::string& token = {});
    /** Whether the line was the first of its document. */
    bool move(std::int64_t draft, const domain::document_line& line, std::int64_t now = g_now) {
        return move(boss, draft, line, now);
    }
    bool move(const domain::principal& who, std::int64_t draft, const domain::document_line& line,
              std::int64_t now = g_now);
    /** A whole transfer; gives the document. */
    std::int64_t transfer(const std::vector<domain::document_line>& lines);
    /** Nothing of these modules is there but what the parameters say. */
    void nothing_made(std::int64_t movements, std::int64_t drafts = 0);
    std::int64_t rows();
};

} // namespace tavrok::test
