#include <QJsonArray>
#include <QJsonObject>
#include <QPushButton>
#include <QTableWidget>

#include "e2e/document_flow.h"
#include "model/answers.h"
#include "model/model_instore.h"
#include "model/model_instore_detail.h"
#include "model/model_outstore.h"
#include "model/model_outstore_detail.h"
#include "model/model_stock_detail.h"
#include "net/http.h"
#include "support/modal.h"
#include "support/screen.h"

namespace {

const char* const list_rights[] = {"search", "add", "view", "delete", "print"};

/** One user after another who may do a part of what there is to do with documents. */
class document_rights_flow : public document_flow {
protected:
    static QList<known_kind> kinds() {
        QList<known_kind> all;
        for (const known_kind& kind : inbound_rows)
            all.append(kind);
        for (const known_kind& kind : outbound_rows)
            all.append(kind);
        return all;
    }

    /** Writes a document of each kind, for somebody to look at. */
    void fill() {
        log_in(shell, QStringLiteral("demo_admin"));
        bring_in({{0, 100, QStringLiteral("2"), QStringLiteral("权"), QString()}});
        line.price = 2;
        line.amount = 1;
        line.total = 2;
        line.place = QStringLiteral("权");
        line.product = value(QStringLiteral("SELECT product FROM stock WHERE place = '权'"));
        line.warehouse = value(QStringLiteral("SELECT warehouse FROM stock WHERE place = '权'"));
        stock_id = value(QStringLiteral("SELECT id FROM stock WHERE place = '权'"));
        operater = value(QStringLiteral("SELECT operater FROM document WHERE remark = '进货'"));
        partners = service->read_database(
            QStringLiteral("SELECT max(id) FROM partner WHERE state = 1 AND company = "
                           "(SELECT company FROM stock WHERE place = '权') GROUP BY type ORDER BY type"));
        ASSERT_EQ(partners.size(), 3);
        for (const known_kind& kind : kinds())
            ASSERT_TRUE(kind.inbound ? add_in(kind) : add_out(kind)) << kind.page;
    }

    template <class header>
    header header_of(const known_kind& kind) const {
        header made{};
        made.type = kind.type;
        made.operater = operater;
        // A supplier, a client, and one of the rest for the kinds that ask for any.
        if (kind.has("company"))
            made.company = partners.value(kind.company_type == 4 ? 2 : kind.company_type - 1);
        if (kind.has("dept")) made.dept = QStringLiteral("0");
        return made;
    }

    bool add_in(const known_kind& kind) const {
        model_instore model(kind.type);
        const auto added = read_added(model.do_add(header_of<struct_instore>(kind)));
        if (!added) return false;
        auto one = line;
        one.main_id = added->id;
        model_instore_detail().do_add(one);
        struct_stock stock;
        stock.product = one.product;
        stock.price = one.price;
        stock.amount = one.amount;
        stock.total = one.total;
        stock.warehouse = one.warehouse;
        stock.place = one.place;
        model_stock_detail().do_add(stock);
        return model.update_total(added->id, one.total);
    }

    bool add_out(const known_kind& kind) const {
        model_outstore model(kind.type);
        const auto added = read_added(model.do_add(header_of<struct_outstore>(kind)));
        if (!added) return false;
        struct_outstore_detail one;
        one.main_id = added->id;
        one.product = line.product;
        one.price = line.price;
        one.amount = line.amount;
        one.total = line.total;
        one.warehouse = line.warehouse;
        one.place = line.place;
        one.stock_id = stock_id;
        model_outstore_detail().do_add(one);
        return model.update_total(added->id, one.total);
    }

    QString document_of(const known_kind& kind) const {
        return value(
            QStringLiteral("SELECT max(id) FROM document WHERE module = %1 AND type = %2 AND state = 1")
                .arg(QString::number(kind.inbound ? 1 : 2), QString::number(kind.type)));
    }

    /** Gives demo_guest exactly these rights on one page; page and group go with them. */
    void grant(const char* page, const QStringList& rights) {
        service->change_database(
            QStringLiteral("DELETE FROM user_grant WHERE user_id = "
                           "(SELECT id FROM app_user WHERE username = 'demo_guest');"
                           "INSERT INTO user_grant (company, user_id, menu_id) "
                           "SELECT u.company, u.id, r.id FROM app_user u JOIN menu r JOIN menu p "
                           "ON p.action = '%1' AND ((r.parent = p.id AND r.action IN ('%2')) OR "
                           "r.id IN (p.id, p.parent)) WHERE u.username = 'demo_guest'")
                .arg(QLatin1String(page), rights.join(QStringLiteral("','")))
                .toUtf8()
                .constData());
    }

    /** What the user sees: one page, its buttons as the rights are. */
    void expect_page(const known_kind& kind, const QStringList& rights) {
        window own;
        g_http.rights.clear();
        log_in(own, QStringLiteral("demo_guest"));
        EXPECT_EQ(pages(own), QStringList{QLatin1String(kind.page)});
        click_navigation(own, QLatin1String(kind.page));
        const bool searches = rights.contains(QStringLiteral("search"));
        EXPECT_EQ(front(own)->isEnabled(), searches);
        EXPECT_EQ(table(front(own))->rowCount() > 0, searches);
        for (const char* right : list_rights)
            EXPECT_EQ(child<QPushButton>(front(own), (std::string("btn_") + right).c_str())->isVisible(),
                      rights.contains(QLatin1String(right)))
                << right;
    }

    static QString path(const known_kind& kind, const char* call) {
        return QString::fromLatin1(kind.module()) + QLatin1Char('/') + QLatin1String(call);
    }

    /** What the service lets the user do, whatever the screens show. Documents that may be deleted are not.
     */
    void expect_service(const known_kind& kind, const QStringList& rights) const {
        const auto has = [&rights](const char* right) { return rights.contains(QLatin1String(right)); };
        const QString type_key = QLatin1String(kind.inbound ? "&instore_type=" : "outstore_type=");
        const QJsonObject page =
            g_http.post_object(path(kind, "get_page"), type_key + QString::number(kind.type) +
                                                           QStringLiteral("&page_num=1&page_size=20"));
        EXPECT_EQ(page.value(QLatin1String("list")).toArray().isEmpty(), !has("search")) << kind.page;
        const QString id = QStringLiteral("id=") + document_of(kind);
        EXPECT_EQ(g_http.post_array(path(kind, "get_detail"), id).isEmpty(), !has("view")) << kind.page;
        EXPECT_EQ(kind.inbound ? add_in(kind) : add_out(kind), has("add")) << kind.page;
        if (has("delete")) return;
        EXPECT_EQ(g_http.post_raw(path(kind, "do_delete"), id), "0") << kind.page;
    }

    struct_instore_detail line;
    QString stock_id;
    QString operater;
    /** The newest of each type. */
    QStringList partners;
};

} // namespace

TEST_F(document_rights_flow, a_user_sees_and_may_do_what_was_granted_on_one_page_and_no_more) {
    serve();
    fill();
    const QList<QStringList> sets{
        {QStringLiteral("search"), QStringLiteral("add"), QStringLiteral("view"), QStringLiteral("delete"),
         QStringLiteral("print")},
        {QStringLiteral("search"), QStringLiteral("view")},
        {QStringLiteral("add")},
        {QStringLiteral("search"), QStringLiteral("delete"), QStringLiteral("print")},
        {QStringLiteral("view"), QStringLiteral("print")}};
    const QList<known_kind> all = kinds();
    for (int i = 0; i < all.size(); ++i) {
        SCOPED_TRACE(all[i].page);
        const QStringList& rights = sets[i % sets.size()];
        grant(all[i].page, rights);
        expect_page(all[i], rights);
        for (int k = 0; k < all.size(); ++k)
            expect_service(all[k], k == i ? rights : QStringList());
    }
    expect_sound();
}

/** With the right to add come the pickers that an editor opens; the right to view is one of its own. */
TEST_F(document_rights_flow, who_may_add_writes_a_whole_document) {
    serve();
    const QList<typed_line> lines{{0, 5, QStringLiteral("2"), QStringLiteral("手-1"), QString()}};
    // What the first brings in the second takes out.
    for (const known_kind& kind : {inbound_rows[3], outbound_rows[0]}) {
        SCOPED_TRACE(kind.page);
        grant(kind.page, {QStringLiteral("search"), QStringLiteral("add")});
        window own;
        g_http.rights.clear();
        log_in(own, QStringLiteral("demo_guest"));
        click_navigation(own, QLatin1String(kind.page));
        tab = front(own);
        const int rows = table(tab)->rowCount();
        const seen_document seen = kind.inbound ? write_in(kind, lines, QString::fromUtf8(kind.label))
                                                : write_out(kind, lines, QString::fromUtf8(kind.label));
        EXPECT_EQ(table(tab)->rowCount(), rows + 1);
        EXPECT_EQ(column(tab, kind.inbound ? 6 : 3).value(0), seen.operater);
        // A double click opens it all the same, and the service keeps its lines to itself.
        with_modal([this] { take_row(tab, 0); },
                   [](QWidget* editor) {
                       EXPECT_EQ(table(editor)->rowCount(), 0);
                       click(editor, "btn_cancel");
                   });
    }
    EXPECT_EQ(value(QStringLiteral("SELECT count(*) FROM movement m JOIN stock s ON s.id = m.stock "
                                   "WHERE s.place = '手-1' AND s.on_hand = 0")),
              QStringLiteral("2"));
    expect_sound();
}
