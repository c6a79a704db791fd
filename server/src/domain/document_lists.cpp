#include <algorithm>

#include "domain/document_kinds.h"
#include "domain/documents.h"
#include "domain/employees.h"
#include "domain/refused.h"

namespace tavrok::domain {

namespace {

/** Numbers are capitals, digits and a hyphen: so is a pattern that is to find them whatever its case. */
std::string number_pattern(const std::string& word) {
    auto pattern = criterion_pattern(word);
    std::transform(pattern.begin(), pattern.end(), pattern.begin(), [](char letter) {
        return letter >= 'a' && letter <= 'z' ? static_cast<char>(letter - 'a' + 'A') : letter;
    });
    return pattern;
}

store::list_filter filter_of(const principal& who, document_module module, const document_search& search,
                             std::optional<std::int64_t> operater) {
    store::list_filter filter{who.company, {}};
    store::of_kind(filter, module, search.type);
    if (search.date_start) store::at_least(filter, "added_at", *search.date_start);
    if (search.date_end) store::at_most(filter, "added_at", *search.date_end);
    store::like(filter, "sn", number_pattern(search.sn));
    if (search.partner) store::equal(filter, "partner", *search.partner);
    if (operater) store::equal(filter, "operater", *operater);
    if (search.writer) store::equal(filter, "writer", *search.writer);
    store::like(filter, "remark_folded", criterion_pattern(search.remark));
    if (search.dept) {
        store::equal(filter, "has_dept", 1);
        store::equal(filter, "dept", *search.dept);
    }
    if (search.warehouse_out) store::equal(filter, "warehouse_out", *search.warehouse_out);
    if (search.warehouse_in) store::equal(filter, "warehouse_in", *search.warehouse_in);
    return filter;
}

} // namespace

list_page<document_record> list_documents(store::connection& with, const principal& who,
                                          document_module module, const document_search& search,
                                          const page_wish& wish, count_cache& counts) {
    check_page_size(wish.page_size);
    kind_of(module, search.type);
    std::optional<std::int64_t> operater;
    if (!search.operater.empty()) {
        operater = find_employee(with, who.company, search.operater);
        if (!operater) return {};
    }
    const auto filter = filter_of(who, module, search, operater);
    return read_page<document_record>(with, store::g_document_list, filter,
                                      filtered_total(with, store::g_document_list, filter, counts), wish,
                                      store::document_of);
}

std::vector<document_line_record> lines_of_document(store::connection& with, const principal& who,
                                                    document_module module, std::int64_t id) {
    const auto type = store::document_type(with, who.company, module, id);
    if (!type) throw refused("unknown document " + std::to_string(id));
    demand_right(who, module, *type, "view");
    return store::document_lines(with, who.company, id);
}

} // namespace tavrok::domain
