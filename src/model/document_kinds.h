#pragma once
#include <QString>
#include <vector>

/** Which kind of counterparty a document has. */
enum class counterparty { none, company, dept };

/** A kind of inbound or outbound documents, as its list and its editor need it. */
struct document_kind {
    /** As the protocol numbers it; 0 is no kind. */
    int type = 0;
    /** Navigation and rights key of the list's page. */
    QString page;
    counterparty partner = counterparty::none;
    /** Label of the partner's field. */
    QString label;
    /** Header of the partner's column in the list; the header of the id is this and "id". */
    QString header;
    /** Company type that the partner picker is opened with. */
    int company_type = 0;
    /** Title of the picker of the partner or department. */
    QString picker_title;
    /** What the editor says when the partner is missing. */
    QString missing;
    /** Name in titles: "查看" and "编辑" stand before it for a saved document, "添加" for a new one. */
    QString name;
};

/** The kind of that number; the empty kind for a number that is none. */
const document_kind& inbound_kind(int type);
const document_kind& outbound_kind(int type);

/** All kinds in the order of their numbers. */
const std::vector<document_kind>& inbound_kinds();
const std::vector<document_kind>& outbound_kinds();
