#include "domain/check.h"

#include <set>

#include "domain/employees.h"
#include "domain/fold.h"
#include "domain/ledger_check.h"
#include "domain/menu_edit.h"
#include "store/records/menu.h"
#include "store/records/proofs.h"

namespace tavrok::domain {

namespace {

/** A whole body "7" tells the client that its session is over, so no id may read like it. */
constexpr std::int64_t g_session_code = 7;

using findings = std::vector<finding>;

std::string of(std::int64_t company, const char* what, std::int64_t id) {
    return "company " + std::to_string(company) + ", " + what + ' ' + std::to_string(id);
}

void check_counters(store::connection& with, findings& found) {
    store::each_wrong_counter(with, [&](const store::wrong_counter& one) {
        found.push_back({"counter", of(one.company, "partners of type", one.type) + ": the counter tells " +
                                        (one.stored < 0 ? "nothing" : std::to_string(one.stored)) +
                                        ", there are " + std::to_string(one.counted)});
    });
}

void check_list_counters(store::connection& with, findings& found) {
    store::each_wrong_list_counter(with, [&](const store::wrong_list_counter& one) {
        found.push_back({"counter", "company " + std::to_string(one.company) + ", list " + one.list +
                                        ": the counter tells " + std::to_string(one.stored) + ", there are " +
                                        std::to_string(one.counted)});
    });
}

void check_folded_texts(store::connection& with, findings& found) {
    store::each_folded_text(with, [&](const store::folded_text& one) {
        if (one.folded == fold(one.text)) return;
        found.push_back(
            {"folded", of(one.company, one.table.c_str(), one.id) + " cannot be found by its texts"});
    });
}

void check_companies(store::connection& with, findings& found) {
    store::each_company_name(with, [&](const store::company_name& one) {
        if (one.folded == fold(one.name)) return;
        found.push_back({"folded", "company " + std::to_string(one.id) +
                                       (one.folded.empty() ? " bears the name of an older one"
                                                           : " cannot be found by its name")});
    });
    store::each_headless_company(with, [&](std::int64_t company) {
        found.push_back(
            {"administrator", "company " + std::to_string(company) + " has no enabled administrator"});
    });
}

void check_references(store::connection& with, findings& found) {
    store::each_orphan(with, [&](const store::orphan& one) {
        found.push_back({"reference", of(one.company, one.table.c_str(), one.id) + " names a row of " +
                                          one.names + " that is not there, not live or of the wrong kind"});
    });
}

void check_folded(store::connection& with, findings& found) {
    store::each_folded_partner(with, [&](std::int64_t company, const store::partner_record& partner,
                                         const store::partner_words& folded) {
        for (std::size_t i = 0; i < folded.size(); ++i) {
            const auto& text = partner.texts[static_cast<std::size_t>(store::g_partner_searched[i])];
            if (folded[i] == fold(text)) continue;
            found.push_back({"folded", of(company, "partner", partner.id) + " cannot be found by its texts"});
            return;
        }
    });
    store::each_folded_user(with, [&](const store::folded_user& one) {
        if (one.username_folded == fold(one.username) && one.email_folded == fold(one.email)) return;
        found.push_back(
            {"folded", of(one.company, "user", one.id) + " cannot be found by its name or e-mail"});
    });
}

std::size_t size_of(const std::vector<menu_node>& nodes) {
    std::size_t size = nodes.size();
    for (const auto& one : nodes)
        size += size_of(one.child);
    return size;
}

void check_menu(store::connection& with, findings& found) {
    std::set<std::string, std::less<>> pages;
    std::size_t rows = 0;
    store::each_menu_row(with, [&](const store::menu_record& one) {
        ++rows;
        if (one.real_level == 1) pages.insert(one.action);
    });
    for (const auto& one : g_pages) {
        if (pages.contains(one.key)) continue;
        found.push_back({"menu", "no row for the page " + std::string(one.key)});
    }
    for (const auto& [page, right] : missing_rights(with))
        found.push_back({"menu", "no row for the right " + right + " on the page " + page});
    for (auto& fault : menu_faults(with))
        found.push_back({"menu", std::move(fault)});
    const auto reached = size_of(whole_menu(with));
    if (reached != rows) {
        found.push_back({"menu", std::to_string(rows - reached) + " rows hang below no row of the tree"});
    }
}

void check_ids(store::connection& with, findings& found) {
    store::each_row_with_id(with, g_session_code, [&](const std::string& table) {
        found.push_back(
            {"id", table + " has a row with the id 7, which clients take for the end of a session"});
    });
    store::each_late_series(with, [&](const store::late_series& one) {
        found.push_back({"series", "the series of " + one.name + " stands at " + std::to_string(one.last) +
                                       ", the id " + std::to_string(one.greatest) + " is given"});
    });
    store::each_employee_id(with, [&](std::int64_t company, std::int64_t id) {
        if (may_name_employee(id)) return;
        found.push_back(
            {"id", of(company, "employee", id) + " has an id whose low byte is no letter for it"});
    });
}

constexpr proof g_proofs[] = {check_counters,   check_list_counters, check_folded_texts, check_companies,
                              check_references, check_folded,        check_menu,         check_ids,
                              check_stock,      check_ledger,        check_documents,    check_counts};

} // namespace

std::span<const proof> proofs() {
    return g_proofs;
}

std::vector<finding> check(store::connection& with) {
    findings found;
    for (const auto one : proofs())
        one(with, found);
    return found;
}

} // namespace tavrok::domain
