#include "e2e/document_flow.h"

#include <QComboBox>
#include <QLineEdit>
#include <QMessageBox>
#include <QTableWidget>
#include <QTest>
#include <QTextEdit>
#include <QTreeView>

#include "documents/dlg_instore_detail_add.h"
#include "documents/dlg_outstore_detail_add.h"
#include "documents/dlg_search_stock.h"
#include "master/dlg_dept.h"
#include "master/dlg_search_company.h"
#include "master/dlg_search_emp.h"
#include "master/dlg_search_product.h"
#include "model/list_table.h"
#include "support/modal.h"
#include "support/screen.h"
#include "support/tree.h"

namespace {

/** Of the lines, inbound and outbound alike. */
constexpr int name_column = 2;
constexpr int total_column = 9;

/** Of the stock list and of the picker. */
constexpr int place_column = 3;
constexpr int amount_column = 11;

} // namespace

void document_flow::open_as(const QString& user) {
    serve();
    log_in(shell, user);
}

void document_flow::go(const char* page) {
    click_navigation(shell, QLatin1String(page));
    tab = front(shell);
}

void document_flow::with_new(const std::function<void(QWidget*)>& drive) {
    with_modal([this] { click(tab, "btn_add"); }, drive);
}

void document_flow::press(const QWidget* owner, const char* field) {
    QTest::mousePress(child<QLineEdit>(owner, field), Qt::LeftButton);
}

void document_flow::take_row(const QWidget* picker, int row) {
    QTableWidget* list = table(picker);
    ASSERT_GT(list->rowCount(), row);
    click_row(list, row);
    QTest::mouseDClick(list->viewport(), Qt::LeftButton, Qt::NoModifier,
                       list->visualItemRect(list->item(row, 1)).center());
}

seen_document document_flow::pick_people(QWidget* editor, const known_kind& kind) {
    with_modal_of<dlg_search_emp>([editor] { press(editor, "txt_operater"); },
                                  [&kind](dlg_search_emp* picker) {
                                      // The button hands over one character, which the service understands.
                                      if (kind.type % 2 != 0) return take_row(picker, 0);
                                      click_row(table(picker), 0);
                                      click(picker, "btn_choose");
                                  });
    seen_document seen;
    seen.operater = child<QLineEdit>(editor, "txt_operater")->text();
    EXPECT_FALSE(seen.operater.isEmpty());
    if (kind.has("company")) {
        with_modal_of<dlg_search_company>([editor] { press(editor, "txt_company"); },
                                          [&kind](dlg_search_company* picker) {
                                              EXPECT_EQ(picker->windowTitle(),
                                                        QString::fromUtf8(kind.picker_title));
                                              click_row(table(picker), 0);
                                              click(picker, "btn_choose");
                                          });
        seen.partner = child<QLineEdit>(editor, "txt_company")->text();
    } else if (kind.has("dept")) {
        with_modal_of<dlg_dept>([editor] { press(editor, "txt_dept"); },
                                [&kind](dlg_dept* picker) {
                                    EXPECT_EQ(picker->windowTitle(), QString::fromUtf8(kind.picker_title));
                                    auto* tree = child<QTreeView>(picker, "treeview");
                                    const QModelIndex root = tree->model()->index(0, 0);
                                    double_click_node(tree,
                                                      tree->model()->index(0, 0, root).data().toString());
                                });
        seen.partner = child<QLineEdit>(editor, "txt_dept")->text();
    }
    EXPECT_EQ(seen.partner.isEmpty(), kind.has(""));
    return seen;
}

void document_flow::write_line(QWidget* editor, const typed_line& line) {
    with_modal_of<dlg_instore_detail_add>(
        [editor] { click(editor, "btn_add"); },
        [&line](dlg_instore_detail_add* dialog) {
            with_modal_of<dlg_search_product>(
                [dialog] { press(dialog, "txt_product_name"); },
                [&line](dlg_search_product* picker) { take_row(picker, line.product); });
            type_into(dialog, "txt_price", line.price);
            type_into(dialog, "txt_amount", QString::number(line.amount));
            auto* warehouse = child<QComboBox>(dialog, "comb_warehouse");
            // The first entry asks to choose one.
            warehouse->setCurrentIndex(1 + line.product % (warehouse->count() - 1));
            child<QLineEdit>(dialog, "txt_place")->setText(line.place);
            child<QTextEdit>(dialog, "txt_remark")->setPlainText(line.remark);
            click(dialog, "btn_save");
        });
}

void document_flow::with_line_out(QWidget* editor, const QString& place, int amount, const QString& price,
                                  const std::function<void(QWidget*)>& drive) {
    with_modal_of<dlg_outstore_detail_add>([editor] { click(editor, "btn_add"); },
                                           [&](dlg_outstore_detail_add* dialog) {
                                               with_modal_of<dlg_search_stock>(
                                                   [dialog] { press(dialog, "txt_product_name"); },
                                                   [&place](dlg_search_stock* picker) {
                                                       child<QLineEdit>(picker, "txt_place")->setText(place);
                                                       click(picker, "btn_search");
                                                       ASSERT_EQ(table(picker)->rowCount(), 1);
                                                       take_row(picker, 0);
                                                   });
                                               type_into(dialog, "txt_amount", QString::number(amount));
                                               if (!price.isEmpty()) type_into(dialog, "txt_price", price);
                                               drive(dialog);
                                           });
}

void document_flow::take_line(QWidget* editor, const QString& place, int amount, const QString& price) {
    with_line_out(editor, place, amount, price, [](QWidget* dialog) { click(dialog, "btn_save"); });
}

void document_flow::delete_line(QWidget* editor, int row) {
    QTableWidget* lines = table(editor);
    QTest::mouseClick(lines->viewport(), Qt::LeftButton, Qt::NoModifier,
                      lines->visualItemRect(lines->item(row, name_column)).center());
    with_question([editor] { click(editor, "btn_delete"); }, QStringLiteral("确认删除"),
                  QStringLiteral("确认删除吗？"), QMessageBox::Yes);
}

QList<QStringList> document_flow::visible_rows(const QWidget* screen) {
    QList<QStringList> rows;
    const QTableWidget* list = table(screen);
    for (int row = 0; row < list->rowCount(); ++row) {
        QStringList cells;
        for (int i = 0; i < list->columnCount(); ++i)
            if (!list->isColumnHidden(i)) cells.append(cell_text(list, row, i));
        rows.append(cells);
    }
    return rows;
}

namespace {

/** Notes what stands in the editor, and saves. */
void save(QWidget* editor, const QString& remark, seen_document& seen, const QList<QStringList>& lines,
          const QStringList& totals) {
    seen.lines = lines;
    for (const QString& text : totals)
        seen.total += text.toDouble();
    child<QLineEdit>(editor, "txt_remark")->setText(remark);
    click(editor, "btn_submit");
}

} // namespace

seen_document document_flow::write_in(const known_kind& kind, const QList<typed_line>& lines,
                                      const QString& remark) {
    seen_document seen;
    with_new([&](QWidget* editor) {
        EXPECT_EQ(editor->windowTitle(), QStringLiteral("添加") + QString::fromUtf8(kind.name));
        seen = pick_people(editor, kind);
        for (const typed_line& line : lines)
            write_line(editor, line);
        save(editor, remark, seen, visible_rows(editor), column(editor, total_column));
    });
    return seen;
}

seen_document document_flow::write_out(const known_kind& kind, const QList<typed_line>& lines,
                                       const QString& remark) {
    seen_document seen;
    with_new([&](QWidget* editor) {
        EXPECT_EQ(editor->windowTitle(), QStringLiteral("添加") + QString::fromUtf8(kind.name));
        seen = pick_people(editor, kind);
        for (const typed_line& line : lines)
            take_line(editor, line.place, line.amount, line.price);
        save(editor, remark, seen, visible_rows(editor), column(editor, total_column));
    });
    return seen;
}

void document_flow::bring_in(const QList<typed_line>& lines) {
    const known_kind& kind = inbound_rows[6];
    go(kind.page);
    write_in(kind, lines, QStringLiteral("进货"));
    ASSERT_EQ(value(QStringLiteral("SELECT count(*) FROM document WHERE remark = '进货' AND state = 1")),
              QStringLiteral("1"));
}

void document_flow::delete_first() {
    click_row(table(tab), 0);
    with_question([this] { click(tab, "btn_delete"); }, QStringLiteral("确认删除"),
                  QStringLiteral("确认删除吗？"), QMessageBox::Yes);
}

QStringList document_flow::picker_shows(const QString& place) {
    dlg_search_stock picker(&shell, QString());
    picker.show();
    child<QLineEdit>(&picker, "txt_place")->setText(place);
    click(&picker, "btn_search");
    QStringList shown;
    const QStringList places = column(&picker, place_column);
    for (int row = 0; row < places.size(); ++row)
        shown.append(places[row] + QLatin1Char(' ') + column(&picker, amount_column)[row]);
    return shown;
}

/** The sum of the movements less the claims, where there is anything. */
QStringList document_flow::ledger_says(const QString& place) const {
    return service->read_database(
        QStringLiteral("SELECT s.place || ' ' || (sum(m.amount) - (SELECT coalesce(sum(c.amount), 0) "
                       "FROM claim c WHERE c.stock = s.id AND c.state = 1)) FROM stock s "
                       "JOIN movement m ON m.company = s.company AND m.stock = s.id WHERE s.place LIKE '%") +
        place + QStringLiteral("%' GROUP BY s.id HAVING sum(m.amount) > 0 ORDER BY s.id DESC"));
}

QString document_flow::value(const QString& query) const {
    return service->read_database(query).value(0);
}

void document_flow::expect_sound() {
    EXPECT_EQ(service->stop(), 0);
    EXPECT_EQ(service->check(), 0);
}
