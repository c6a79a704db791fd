#include <QComboBox>
#include <QTextEdit>

#include "documents/dlg_instore_add.h"
#include "documents/dlg_outstore_add.h"
#include "documents/dlg_search_stock.h"
#include "gui/list_fixture.h"
#include "master/dlg_search_product.h"
#include "stock/dlg_stock_allot_add.h"
#include "stock/dlg_stock_taking_add.h"
#include "support/pick.h"

// How the editors of documents differ on purpose, side by side. Each row is an editor; each test is one point
// in which they are not alike.

namespace {

enum class place { typed, read_only, open_and_required };

/** An editor and what is its own about it. */
struct editor_row {
    const char* name;
    QDialog* (*make)();
    /** The picker in which a line begins, and what it asks the service for besides dates and page. */
    const char* picker;
    const char* narrowed;
    /** The claim on the stock row 88 of a line of 2 units at 2.5; empty where there is none. */
    const char* claim;
    /** Whether the row of a line stays when the service does not take its claim back. */
    bool stays_when_refused;
    /** What is called after the lines of a document. */
    const char* closing_call;
    bool closes_when_refused;
    place line_place;
    /** What the line dialog counts in, and what accepts the line. */
    const char* amount_field;
    const char* accept_button;
};

template <class editor, int... kind>
QDialog* new_document() {
    return new editor(nullptr, 0, kind...);
}

const editor_row g_editors[] = {
    {"inbound", new_document<dlg_instore_add, 7>, "dlg_search_product", "", "", false,
     "wms_instore/update_total", false, place::typed, "txt_amount", "btn_save"},
    {"outbound", new_document<dlg_outstore_add, 6>, "dlg_search_stock", "",
     "lock_type=3&id=88&amount=2&total=5", true, "wms_outstore/update_total", false, place::read_only,
     "txt_amount", "btn_save"},
    {"stocktaking", new_document<dlg_stock_taking_add>, "dlg_search_stock", "", "lock_type=2&id=88", false,
     "wms_stock_taking/update_profitloss", false, place::read_only, "txt_real_amount", "btn_submit"},
    {"transfer", new_document<dlg_stock_allot_add>, "dlg_search_stock", "&warehouse=3",
     "lock_type=1&id=88&amount=2&total=5", true, "", true, place::open_and_required, "txt_amount",
     "btn_save"},
};

} // namespace

class editors_differ : public list_test, public testing::WithParamInterface<editor_row> {
protected:
    editors_differ() {
        for (const char* path : {"wms_warehouse/get_option", "wms_warehouse/get_option_with_stat"})
            server.always(path,
                          R"([{"id":"3","name":"一号仓","sum_amount":"9"},{"id":"8","name":"二号仓"}])");
        server.always("wms_product/get_page", page_body({QJsonObject{{text("id"), text("9")},
                                                                     {text("name"), text("钉")},
                                                                     {text("price"), text("2.5")}}}));
        server.always("wms_stock_detail/get_page", page_body({QJsonObject{{text("id"), text("88")},
                                                                          {text("product"), text("9")},
                                                                          {text("product_name"), text("钉")},
                                                                          {text("place"), text("A1")},
                                                                          {text("price"), text("2.5")},
                                                                          {text("amount"), text("7")},
                                                                          {text("total"), text("17.5")}}}));
        server.always("wms_stock_detail/lock_stock", "C1");
        server.always("wms_stock_detail/unlock_stock", "0");
        for (const char* module : {"instore", "outstore", "stock_taking", "stock_allot"})
            server.always(QByteArray("wms_") + module + "/do_add", R"({"http_state":1,"insert_id":"77"})");
        for (const char* page : {"stock_taking", "stock_allot"})
            grant(page, {"detail_add", "detail_delete", "detail_print"});
        dialog.reset(GetParam().make());
        dialog->show();
        table = child<QTableWidget>(dialog.get(), "tablewidget");
        struct_emp operater;
        operater.id = text("3");
        operater.name = text("员工");
        QMetaObject::invokeMethod(dialog.get(), "slot_emp_selected", Q_ARG(struct_emp, operater));
        choose(dialog.get(), "comb_warehouse_out", 1);
        choose(dialog.get(), "comb_warehouse_in", 2);
    }

    static QString text(const char* utf8) { return QString::fromUtf8(utf8); }

    /** Chooses in a box that not every dialog has. */
    static void choose(const QWidget* of, const char* name, int index) {
        if (auto* box = of->findChild<QComboBox*>(QLatin1String(name))) box->setCurrentIndex(index);
    }

    /** Begins a line, picks the first of what its picker offers and lets `act` go on. */
    void begin_line(const std::function<void(QWidget*)>& act) {
        with_modal(
            [this] { click(dialog.get(), "btn_add"); },
            [&](QWidget* line) {
                with_modal(
                    [line] { QTest::mousePress(child<QLineEdit>(line, "txt_product_name"), Qt::LeftButton); },
                    [this](QWidget* picker) {
                        picked_in = QString::fromLatin1(picker->metaObject()->className());
                        double_click_first(picker);
                    });
                choose(line, "comb_warehouse", 1);
                act(line);
                line->close();
            });
    }

    /** Writes a line of 2 units. */
    void add_line() {
        begin_line([](QWidget* line) {
            type_into(line, GetParam().amount_field, text("2"));
            auto* where = child<QLineEdit>(line, "txt_place");
            if (!where->isReadOnly()) where->setText(text("B2"));
            click(line, GetParam().accept_button);
        });
        ASSERT_EQ(table->rowCount(), 1);
    }

    std::unique_ptr<QDialog> dialog;
    QTableWidget* table = nullptr;
    QString picked_in;
};

INSTANTIATE_TEST_SUITE_P(editors, editors_differ, testing::ValuesIn(g_editors),
                         [](const auto& p) { return std::string(p.param.name); });

TEST_P(editors_differ, in_what_a_line_starts_from) {
    begin_line([](QWidget*) {});
    EXPECT_EQ(picked_in, QLatin1String(GetParam().picker));
    QByteArray narrowed = server.bodies("wms_stock_detail/get_page").value(0);
    narrowed = narrowed.left(narrowed.indexOf("&page_num="));
    narrowed = narrowed.mid(narrowed.indexOf("&date_end=") + 1);
    EXPECT_EQ(narrowed.indexOf('&') < 0 ? QByteArray() : narrowed.mid(narrowed.indexOf('&')),
              QByteArray(GetParam().narrowed));
}

TEST_P(editors_differ, in_the_claim_of_a_line) {
    add_line();
    QList<QByteArray> expected;
    if (*GetParam().claim != 0) expected.append(GetParam().claim);
    EXPECT_EQ(server.bodies("wms_stock_detail/lock_stock"), expected);
}

TEST_P(editors_differ, in_the_row_whose_claim_is_not_taken_back) {
    add_line();
    table->selectRow(0);
    with_question([this] { click(dialog.get(), "btn_delete"); }, text("确认删除"), text("确认删除吗？"),
                  QMessageBox::Yes);
    EXPECT_EQ(server.bodies("wms_stock_detail/unlock_stock").size(), *GetParam().claim != 0 ? 1 : 0);
    EXPECT_EQ(table->rowCount(), GetParam().stays_when_refused ? 1 : 0);
}

TEST_P(editors_differ, in_the_call_after_the_lines) {
    add_line();
    server.forget();
    click(dialog.get(), "btn_submit");
    const QByteArray last = server.last().path;
    if (*GetParam().closing_call != 0)
        EXPECT_EQ(last, QByteArray(GetParam().closing_call));
    else
        EXPECT_TRUE(last.endsWith("_detail/do_add")) << last.toStdString();
}

TEST_P(editors_differ, in_whether_a_refusal_keeps_the_dialog_open) {
    add_line();
    server.always(GetParam().closing_call, "0");
    click(dialog.get(), "btn_submit");
    EXPECT_EQ(dialog->isVisible(), !GetParam().closes_when_refused);
}

TEST_P(editors_differ, in_what_becomes_of_a_lines_place) {
    begin_line([](QWidget* line) {
        auto* where = child<QLineEdit>(line, "txt_place");
        const place expected = GetParam().line_place;
        EXPECT_EQ(where->isReadOnly(), expected == place::read_only);
        EXPECT_EQ(where->text(), expected == place::typed ? QString() : text("A1"))
            << "as the stock row has it";
        if (expected == place::read_only) return;
        where->setText(text("  "));
        click(line, GetParam().accept_button);
        expect_tip(where, expected == place::typed ? text("请选择位置") : text("请填写存储位置"));
        EXPECT_TRUE(line->isVisible());
    });
}
