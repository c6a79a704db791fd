#include <QLabel>
#include <QPushButton>
#include <QTest>
#include <QTimer>

#include "app/dlg_about.h"
#include "app/tab_main.h"
#include "gui/app/app_fixture.h"
#include "net/http.h"
#include "support/screen.h"

namespace {

class pages_test : public app_test {};

} // namespace

TEST_F(pages_test, home_shows_the_fixed_hints_in_the_middle) {
    tab_main home;
    EXPECT_EQ(home.size(), QSize(800, 500));
    const auto labels = home.findChildren<QWidget*>();
    ASSERT_EQ(labels.size(), 1);
    const auto* label = child<QLabel>(&home, "txt_datetime");
    EXPECT_EQ(
        label->text(),
        QStringLiteral("<html><head/><body><p>欢迎使用本系统，请点击左边导航进行操作</p><p>操作技巧：</p>"
                       "<p>1、在基础信息下进行所有基本信息的录入</p>"
                       "<p>2、在入库管理、出库管理、库存管理进行表单填写</p>"
                       "<p>3、按回车键可快速查询</p><p>4、选项卡可右键批量快速关闭</p></body></html>"));
    home.show();
    const QPoint off = label->geometry().center() - home.rect().center();
    EXPECT_LE(qAbs(off.x()), 2);
    EXPECT_LE(qAbs(off.y()), 2);
}

TEST_F(pages_test, home_shows_no_time) {
    tab_main home;
    const QString before = child<QLabel>(&home, "txt_datetime")->text();
    EXPECT_NE(home.metaObject()->indexOfSlot("update_timer()"), -1);
    home.update_timer();
    EXPECT_EQ(child<QLabel>(&home, "txt_datetime")->text(), before);
    EXPECT_TRUE(home.findChildren<QTimer*>().isEmpty());
}

TEST_F(pages_test, about_has_the_stated_texts) {
    const dlg_about about;
    EXPECT_EQ(about.windowTitle(), QStringLiteral("Tavrok仓储管理系统(Tavrok_WMS)"));
    const auto* banner = child<QLabel>(&about, "lbl_img");
    EXPECT_EQ(banner->text(),
              QStringLiteral("<a href='%1'><img src=':/img/logo.jpg'></a>").arg(server.base_url()));
    EXPECT_TRUE(banner->hasScaledContents());
    EXPECT_TRUE(banner->openExternalLinks());
    EXPECT_EQ(child<QLabel>(&about, "label_3")->text(), QStringLiteral("版本："));
    EXPECT_EQ(child<QLabel>(&about, "txt_version")->text(), QStringLiteral("1.0.3"));
    EXPECT_TRUE(child<QLabel>(&about, "label_link")->text().contains(QStringLiteral("<a href=")));
    EXPECT_EQ(child<QPushButton>(&about, "btn_close")->text(), QStringLiteral("确定"));
}

TEST_F(pages_test, about_closes_by_its_button) {
    dlg_about about;
    about.show();
    click(&about, "btn_close");
    EXPECT_FALSE(about.isVisible());
    EXPECT_TRUE(server.requests().isEmpty());
}

TEST_F(pages_test, about_links_open_the_browser_once) {
    dlg_about about;
    about.show();
    auto* banner = child<QLabel>(&about, "lbl_img");
    QTest::mouseClick(banner, Qt::LeftButton, Qt::NoModifier, QPoint(40, banner->height() / 2));
    EXPECT_EQ(web.opened, QList<QUrl>{QUrl(server.base_url())});
    web.opened.clear();
    auto* maker = child<QLabel>(&about, "label_link");
    QTest::mouseClick(maker, Qt::LeftButton, Qt::NoModifier, maker->rect().center());
    EXPECT_EQ(web.opened, QList<QUrl>{QUrl(QStringLiteral("https://www.tavrok.example/"))});
    web.opened.clear();
    emit banner->linkActivated(QStringLiteral("https://partner.example/b"));
    EXPECT_EQ(web.opened, QList<QUrl>{QUrl(QStringLiteral("https://partner.example/b"))});
}
