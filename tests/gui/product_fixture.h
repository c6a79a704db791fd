#pragma once
#include <QLineEdit>
#include <QTableWidget>
#include <memory>

#include "support/client_fixture.h"
#include "support/modal.h"
#include "support/pages.h"
#include "support/screen.h"
#include "support/time_zone.h"
#include "support/tree.h"

/**
 * Screens of products against a scripted service. Product n has the id n and the name "货n", costs n and a
 * half and is of category 5. There are the categories 食品 (id 1) with 茶 (id 2) in it.
 */
class product_test : public client_test {
protected:
    product_test() {
        server.always("wms_prodcate/get_prodcate",
                      R"([{"id":"1","name":"食品","child":[{"id":"2","name":"茶","child":[]}]}])");
        grant("prodcate", {"search"});
    }
    ~product_test() override { clear_tip(); }

    /** A page with the products 1 to `last`. */
    static QByteArray page_of(int last, int page_count = 1, int page_num = 1) {
        QJsonArray list;
        for (int n = 1; n <= last; ++n) {
            const QString number = QString::number(n);
            list.append(QJsonObject{{QStringLiteral("id"), number},
                                    {QStringLiteral("category_name"), QStringLiteral("类")},
                                    {QStringLiteral("name"), QStringLiteral("货") + number},
                                    {QStringLiteral("code"), QStringLiteral("code") + number},
                                    {QStringLiteral("spec"), QStringLiteral("spec") + number},
                                    {QStringLiteral("price"), number + QStringLiteral(".5")},
                                    {QStringLiteral("category"), QStringLiteral("5")},
                                    // One minute apart.
                                    {QStringLiteral("datetime"), 1586696160 + n * 60}});
        }
        return page_body(list, page_count, page_num);
    }

    /** Picks a category in the tree that opens at the press on a field. */
    static void pick_category(QWidget* screen, const char* field, const QString& name, const QString& title) {
        with_modal([=] { QTest::mousePress(child<QLineEdit>(screen, field), Qt::LeftButton); },
                   [=](QWidget* picker) {
                       EXPECT_EQ(QLatin1String(picker->metaObject()->className()),
                                 QLatin1String("dlg_prodcate"));
                       EXPECT_EQ(picker->windowTitle(), title);
                       double_click_node(child<QTreeView>(picker, "treeview"), name);
                   });
    }

    /** Checks that only the left button's press on a field opens a picker, and that it goes no further. */
    static void expect_left_press_alone_picks(QLineEdit* field) {
        QTest::mousePress(field, Qt::RightButton);
        QTest::mouseRelease(field, Qt::LeftButton);
        EXPECT_EQ(QApplication::activeModalWidget(), nullptr);
        with_modal(
            [field] {
                QMouseEvent press(QEvent::MouseButtonPress, QPointF(3, 3), Qt::LeftButton, Qt::LeftButton,
                                  Qt::NoModifier);
                press.setAccepted(false);
                EXPECT_TRUE(QApplication::sendEvent(field, &press));
            },
            [](QWidget* picker) { picker->close(); });
    }

    static void set_texts(const QWidget* screen,
                          std::initializer_list<std::pair<const char*, QString>> texts) {
        for (const auto& t : texts)
            child<QLineEdit>(screen, t.first)->setText(t.second);
    }

    static QStringList words(std::initializer_list<const char*> texts) {
        QStringList result;
        for (const char* text : texts)
            result.append(QString::fromUtf8(text));
        return result;
    }

    const scoped_time_zone zone{"UTC"};
};
