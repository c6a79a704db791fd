#pragma once

#include <functional>
#include <optional>
#include <span>
#include <string_view>
#include <vector>

#include "api/endpoint.h"
#include "api/json_writer.h"
#include "domain/documents.h"
#include "domain/refused.h"

namespace tavrok::api {

/** What the forms of the modules that write documents have in common. */

/** The right on any of these pages lets in; the domain judges the record. */
access on_any_page(std::span<const std::string_view> pages, std::string_view right);

/** A criterion on an id. */
key id_criterion_key(std::string_view name);
/** Money in hundredths: of a price, of the sum of a line or a document, and of one that may be lost. */
std::int64_t price_of(const fields& form);
std::int64_t total_of(const fields& form, std::string_view key = "total");
std::int64_t signed_total_of(const fields& form, std::string_view key);

/** The criteria that all lists of documents have. */
domain::document_search search_of(const fields& form);
/** The keys that all headers have. */
domain::document_header header_of(const fields& form);
/** The keys that lines and their stock have in common. */
domain::document_line line_of(const fields& form);
/** What a line says of the row that it takes from or counts. */
void read_row(const fields& form, domain::document_line& line);

/** Who handled a document and who wrote it. */
void write_people(json_writer& json, const domain::document_record& one);

/** Of a line, which names its draft: so the answer to the header arrived, and the same header is a new one.
 */
void header_arrived(context& request, std::string_view module);

/** Answers whether a line was added to the draft that it names. A draft that lacks one is spoilt. */
void answer_line(context& request, domain::document_module which, const std::function<void()>& add);
/** What a closing call carries; none where that cannot be read: its draft is dropped all the same. */
template <typename reader>
auto readable(reader read) -> std::optional<decltype(read())> {
    try {
        return read();
    } catch (const domain::refused&) {
        return std::nullopt;
    }
}
/** Answers whether a closing call made the document; why not, where it says so, goes to the log. Whoever
 * closes a draft has the answers to its header and lines: when these come once more with the same bytes they
 * are a new save, also where this service does not know yet that the former answers arrived. */
void answer_closing(context& request, std::string why_not, std::span<const std::string_view> modules);
/** Works of every module: the list, the lines of a document, its end. */
void answer_removal(context& request, domain::document_module which, const domain::session_limits& limits);
template <typename writer>
void answer_lines(context& request, domain::document_module which, writer write) {
    const auto lines =
        domain::lines_of_document(*request.db, *request.who, which, request.form.integer("id"));
    json_writer json(request.answer);
    json.open_array();
    for (const auto& one : lines)
        write(json, one);
    json.close_array();
}

} // namespace tavrok::api
