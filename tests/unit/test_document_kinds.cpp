#include <gtest/gtest.h>

#include "model/document_kinds.h"
#include "support/kinds.h"
#include "support/screen.h"

namespace {

void expect_kind(const document_kind& kind, const known_kind& row) {
    EXPECT_EQ(kind.type, row.type);
    EXPECT_EQ(kind.page, QLatin1String(row.page));
    EXPECT_EQ(kind.partner, row.has("company") ? counterparty::company
                            : row.has("dept")  ? counterparty::dept
                                               : counterparty::none);
    EXPECT_EQ(kind.label, QString::fromUtf8(row.label));
    EXPECT_EQ(kind.header, QString::fromUtf8(row.header));
    EXPECT_EQ(kind.company_type, row.company_type);
    EXPECT_EQ(kind.picker_title, QString::fromUtf8(row.picker_title));
    EXPECT_EQ(kind.missing, QString::fromUtf8(row.missing));
    EXPECT_EQ(kind.name, QString::fromUtf8(row.name));
    EXPECT_EQ(kind.header.isNull(), row.has("")) << "no header at all, not an empty one";
}

} // namespace

TEST(document_kinds, seven_inbound) {
    ASSERT_EQ(inbound_kinds().size(), std::size(inbound_rows));
    for (const known_kind& row : inbound_rows) {
        SCOPED_TRACE(row.page);
        expect_kind(inbound_kind(row.type), row);
        EXPECT_EQ(inbound_kinds()[size_t(row.type) - 1].type, row.type);
    }
}

TEST(document_kinds, six_outbound) {
    ASSERT_EQ(outbound_kinds().size(), std::size(outbound_rows));
    for (const known_kind& row : outbound_rows) {
        SCOPED_TRACE(row.page);
        expect_kind(outbound_kind(row.type), row);
        EXPECT_EQ(outbound_kinds()[size_t(row.type) - 1].type, row.type);
    }
}

TEST(document_kinds, both_inbound_department_kinds_open_the_same_picker) {
    EXPECT_EQ(inbound_kind(4).picker_title, inbound_kind(2).picker_title);
    EXPECT_NE(inbound_kind(4).label, inbound_kind(2).label);
}

TEST(document_kinds, any_other_number_is_no_kind) {
    for (const document_kind* kind : {&inbound_kind(0), &inbound_kind(8), &inbound_kind(-1),
                                      &outbound_kind(0), &outbound_kind(7), &outbound_kind(-1)}) {
        EXPECT_EQ(kind->type, 0);
        EXPECT_EQ(kind->partner, counterparty::none);
        EXPECT_TRUE(kind->page.isEmpty() && kind->label.isEmpty() && kind->name.isEmpty());
    }
}
