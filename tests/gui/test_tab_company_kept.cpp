#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QSignalSpy>
#include <QTest>

#include "gui/tab_company_fixture.h"
#include "master/dlg_company_add.h"

// What looks like a mistake in the partner tab and is kept on purpose.

struct rights_row {
    const char* what;
    std::vector<const char*> supplier;
    std::vector<const char*> client;
    std::vector<const char*> other;
    int loads;
    bool tab_enabled;
    bool add;
    bool edit;
    bool remove;
};

class company_rights : public company_tab, public testing::WithParamInterface<rights_row> {};

TEST_P(company_rights, of_the_other_units_decide_about_every_kind_of_tab) {
    const rights_row& row = GetParam();
    grant("company_supplier", row.supplier);
    grant("company_client", row.client);
    grant("company_other", row.other);
    for (int type : {1, 2, 3}) {
        server.forget();
        open_with_rights_as_they_are(type);
        EXPECT_EQ(server.requests().size(), row.loads);
        EXPECT_EQ(tab->isEnabled(), row.tab_enabled);
        EXPECT_EQ(action("添加")->isEnabled(), row.add);
        EXPECT_EQ(action("编辑")->isEnabled(), row.edit);
        EXPECT_EQ(action("删除")->isEnabled(), row.remove);
        EXPECT_TRUE(action("查询")->isEnabled());
        for (const char* button : {"btn_add", "btn_edit", "btn_delete", "btn_search"}) {
            auto* b = child<QPushButton>(tab.get(), button);
            EXPECT_TRUE(b->isEnabledTo(tab.get())) << button << " stays enabled whatever the rights are";
            EXPECT_FALSE(b->isHidden());
        }
    }
}

INSTANTIATE_TEST_SUITE_P(
    rights, company_rights,
    testing::Values(
        rights_row{"nobody", {}, {}, {}, 0, false, false, false, false},
        rights_row{"all",
                   {"search", "add", "edit", "delete"},
                   {"search", "add", "edit", "delete"},
                   {"search", "add", "edit", "delete"},
                   3,
                   true,
                   true,
                   true,
                   true},
        rights_row{
            "supplier_alone", {"search", "add", "edit", "delete"}, {}, {}, 1, false, false, false, false},
        rights_row{
            "client_alone", {}, {"search", "add", "edit", "delete"}, {}, 1, false, false, false, false},
        rights_row{"other_alone", {}, {}, {"search", "add"}, 1, true, true, false, false},
        rights_row{"first_and_last",
                   {"search", "delete"},
                   {"delete"},
                   {"search", "edit"},
                   2,
                   true,
                   false,
                   true,
                   false},
        rights_row{"add_without_search", {}, {}, {"add"}, 0, false, true, false, false}),
    [](const auto& p) { return std::string(p.param.what); });

TEST_F(company_tab, rights_go_out_three_times_in_a_fixed_order) {
    // The signals go out while the tab is being made, so they are seen by what they leave behind: the order
    // of the passes shows in which pass has the last word.
    grant("company_client", {"search", "add"});
    grant("company_other", {"search"});
    open_with_rights_as_they_are(2);
    EXPECT_EQ(server.bodies("wms_company/get_page"),
              QList<QByteArray>({"type=2&page_num=1&page_size=20", "type=2&page_num=1&page_size=20"}));
    EXPECT_FALSE(action("添加")->isEnabled());
    EXPECT_TRUE(tab->isEnabled());
    for (const char* page : {"company_supplier", "company_client", "company_other"})
        EXPECT_TRUE(g_http.rights.contains(QLatin1String(page))) << "an absent key reads as an empty list";
}

TEST_F(company_tab, a_button_works_without_the_right) {
    grant("company_other", {"search"});
    open_with_rights_as_they_are(1);
    with_modal_of<dlg_company_add>([this] { click(tab.get(), "btn_add"); },
                                   [](dlg_company_add* d) { d->close(); });
    EXPECT_FALSE(action("添加")->isEnabled());
}

TEST_F(company_tab, editing_any_row_writes_its_add_time_into_the_first) {
    open();
    click_row(table, 2);
    server.answer("1");
    with_modal_of<dlg_company_add>([this] { click(tab.get(), "btn_edit"); },
                                   [](dlg_company_add* d) { click(d, "btn_save"); });
    EXPECT_EQ(cell_text(table, 0, 11), QStringLiteral("2020-04-12 12:59"));
    EXPECT_EQ(cell_text(table, 1, 11), QStringLiteral("2020-04-12 12:58"));
    EXPECT_EQ(cell_text(table, 2, 11), QStringLiteral("2020-04-12 12:59"));
    EXPECT_EQ(cell_text(table, 0, 1), QStringLiteral("单位1"));
}

TEST_F(company_tab, a_selection_from_the_bottom_upward_deletes_by_numbers_that_have_moved) {
    open();
    click_row(table, 2);
    click_row(table, 0, Qt::ControlModifier);
    server.forget();
    server.always("wms_company/do_delete", "1");
    with_question([this] { click(tab.get(), "btn_delete"); }, QStringLiteral("确认删除"),
                  QStringLiteral("确认删除吗？"), QMessageBox::Yes);
    // Row 0 goes first; row 2 is then beyond the end and reads as id 0.
    EXPECT_EQ(server.bodies("wms_company/do_delete"), QList<QByteArray>({"id=1", "id=0"}));
    EXPECT_EQ(names(table), QStringList({QStringLiteral("单位2"), QStringLiteral("单位3")}));
}

TEST_F(company_tab, a_moved_number_can_hit_a_record_that_was_not_selected) {
    open();
    click_row(table, 1);
    click_row(table, 0, Qt::ControlModifier);
    server.forget();
    server.always("wms_company/do_delete", "1");
    with_question([this] { click(tab.get(), "btn_delete"); }, QStringLiteral("确认删除"),
                  QStringLiteral("确认删除吗？"), QMessageBox::Yes);
    EXPECT_EQ(server.bodies("wms_company/do_delete"), QList<QByteArray>({"id=1", "id=3"}));
    EXPECT_EQ(names(table), QStringList({QStringLiteral("单位2")}));
}

TEST_F(company_tab, a_partner_added_on_a_later_page_is_gone_after_a_page_turn) {
    open();
    server.always("wms_company/get_page", page_of(1, 3, 3, 3));
    click(tab.get(), "btn_search");
    QTest::mousePress(child<QLabel>(tab.get(), "lbl_last"), Qt::LeftButton);
    EXPECT_EQ(child<QLineEdit>(tab.get(), "txt_page_num")->text(), QStringLiteral("3"));
    server.answer("{\"http_state\":1,\"insert_id\":\"9\",\"datetime\":0}");
    with_modal_of<dlg_company_add>([this] { click(tab.get(), "btn_add"); },
                                   [](dlg_company_add* d) {
                                       for (const char* name : {"txt_name", "txt_address", "txt_phone"})
                                           child<QLineEdit>(d, name)->setText(QStringLiteral("new"));
                                       click(d, "btn_save");
                                   });
    EXPECT_EQ(names(table).first(), QStringLiteral("new"));
    QTest::mousePress(child<QLabel>(tab.get(), "lbl_pre"), Qt::LeftButton);
    EXPECT_FALSE(names(table).contains(QStringLiteral("new")));
}

TEST_F(company_tab, a_name_with_an_ampersand_goes_out_as_it_stands) {
    open();
    with_modal_of<dlg_company_add>([this] { click(tab.get(), "btn_add"); },
                                   [](dlg_company_add* d) {
                                       child<QLineEdit>(d, "txt_name")->setText(QStringLiteral("A&type=3"));
                                       child<QLineEdit>(d, "txt_address")->setText(QStringLiteral("a+b"));
                                       child<QLineEdit>(d, "txt_phone")->setText(QStringLiteral("5%6"));
                                       click(d, "btn_save");
                                   });
    EXPECT_EQ(server.last().body, "&type=1&name=A&type=3&phone=5%6&address=a+b");
}
