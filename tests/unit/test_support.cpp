#include <gtest/gtest-spi.h>

#include <QDialog>
#include <QLineEdit>
#include <QTimer>
#include <QToolTip>

#include "net/http.h"
#include "support/client_fixture.h"
#include "support/modal.h"
#include "support/screen.h"

// The tools of the tests have to fail where they should.

TEST(support, a_missing_child_tells_what_there_is) {
    QWidget parent;
    QLineEdit edit(&parent);
    edit.setObjectName(QStringLiteral("txt_name"));
    EXPECT_EQ(child<QLineEdit>(&parent, "txt_name"), &edit);
    try {
        child<QLineEdit>(&parent, "txt_nam");
        FAIL();
    } catch (const std::runtime_error& e) {
        EXPECT_NE(std::string(e.what()).find("QLineEdit:txt_name"), std::string::npos);
    }
}

TEST(support, with_modal_fails_when_no_window_comes) {
    EXPECT_NONFATAL_FAILURE(with_modal([] {}, [](QWidget*) {}), "no modal window");
}

TEST(support, with_modal_closes_a_window_that_stays) {
    EXPECT_NONFATAL_FAILURE(with_modal([] { QDialog().exec(); }, [](QWidget*) {}, 20), "closed by force");
}

TEST(support, with_modal_passes_on_what_drive_throws) {
    EXPECT_THROW(with_modal([] { QDialog().exec(); }, [](QWidget*) { throw std::runtime_error("x"); }),
                 std::runtime_error);
}

TEST(support, with_modal_drives_windows_inside_windows) {
    int depth = 0;
    with_modal([] { QDialog().exec(); },
               [&](QWidget* outer) {
                   ++depth;
                   with_modal([outer] { QDialog(outer).exec(); },
                              [&](QWidget* inner) {
                                  ++depth;
                                  inner->close();
                              });
                   outer->close();
               });
    EXPECT_EQ(depth, 2);
}

TEST(support, a_tip_elsewhere_is_noticed) {
    static QWidget* shown = nullptr; // what the failure's own function can reach
    QWidget widget;
    shown = &widget;
    widget.resize(200, 200);
    widget.show();
    QToolTip::showText(widget.mapToGlobal(QPoint(10, 30)), QStringLiteral("名称"), &widget);
    EXPECT_NONFATAL_FAILURE(expect_tip(shown, QStringLiteral("名称"), QPoint(0, 0)), "instead of");
    QToolTip::showText(widget.mapToGlobal(QPoint(10, 30)), QStringLiteral("名称"), &widget);
    expect_tip(&widget, QStringLiteral("名称"), QPoint(10, 30));
    EXPECT_TRUE(shown_tip().isEmpty());
    widget.hide();
}

class support_server : public client_test {};

TEST_F(support_server, answers_from_the_queue_then_by_path_then_with_nothing) {
    server.always("a/b", "standing");
    server.answer("queued");
    EXPECT_EQ(g_http.get_raw(QStringLiteral("a/b")), "queued");
    EXPECT_EQ(g_http.get_raw(QStringLiteral("a/b")), "standing");
    EXPECT_EQ(g_http.get_raw(QStringLiteral("c/d")), "");
    EXPECT_EQ(server.paths(), QList<QByteArray>({"a/b", "a/b", "c/d"}));
    EXPECT_TRUE(server.last().raw.startsWith("GET /c/d HTTP/1.1\r\n"));
}
