#include <gtest/gtest.h>

#include "model/form_body.h"
#include "support/screen.h"

TEST(form_body, pairs_stand_in_the_order_written_with_their_own_leading_characters) {
    QString args;
    append(args, "&type=", 3);
    append(args, "&name=", QStringLiteral("甲"));
    append(args, "id=", QString());
    EXPECT_EQ(args, QStringLiteral("&type=3&name=甲id="));
}

TEST(form_body, an_empty_value_drops_the_pair_only_where_asked) {
    QString args;
    append_if(args, "&bank=", QString());
    append_if(args, "&fax=", QStringLiteral(" "));
    EXPECT_EQ(args, QStringLiteral("&fax= "));
}

TEST(form_body, nothing_is_escaped) {
    QString args;
    append(args, "name=", QStringLiteral("a&b=c+d%20"));
    EXPECT_EQ(args, QStringLiteral("name=a&b=c+d%20"));
}

TEST(form_body, numbers_are_decimal) {
    QString args;
    append(args, "n=", -1);
    append(args, "&m=", 2147483647);
    EXPECT_EQ(args, QStringLiteral("n=-1&m=2147483647"));
}
