#include "gui/permission_fixture.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTest>
#include <QTreeWidget>

namespace {

constexpr int first_id = 8;

QJsonArray rows_under(int parent, const std::vector<int>& parents) {
    QJsonArray rows;
    for (int row = 0; row < int(parents.size()); ++row) {
        if (parents[size_t(row)] != parent) continue;
        rows.append(QJsonObject{{QStringLiteral("id"), QString::number(first_id + row)},
                                {QStringLiteral("name"), QStringLiteral("row %1").arg(row)},
                                {QStringLiteral("child"), rows_under(row, parents)}});
    }
    return rows;
}

} // namespace

permission_test::~permission_test() = default;

void permission_test::serve(const std::vector<int>& rows, const std::set<int>& granted) {
    parents = rows;
    granted_rows = granted;
    server.always("wms_permission/get_permission", [this](const recorded_request& request) {
        EXPECT_EQ(request.body, "user=44");
        QJsonArray grants;
        for (int row : granted_rows)
            grants.append(QJsonObject{{QStringLiteral("menu"), QString::number(first_id + row)}});
        return scripted_answer(QJsonDocument(grants).toJson());
    });
    server.always("wms_permission/get_permission_tree",
                  scripted_answer(QJsonDocument(rows_under(-1, parents)).toJson()));
    server.always("wms_permission/set_checked",
                  [this](const recorded_request& request) { return change(request, true); });
    server.always("wms_permission/set_unchecked",
                  [this](const recorded_request& request) { return change(request, false); });
}

scripted_answer permission_test::change(const recorded_request& request, bool grant) {
    if (!agrees()) return "0";
    const QByteArray head = "user=44&menu=";
    EXPECT_TRUE(request.body.startsWith(head)) << request.body.constData();
    const int row = request.body.mid(head.size()).toInt() - first_id;
    if (grant)
        granted_rows.insert(row);
    else
        granted_rows.erase(row);
    return "1";
}

void permission_test::open() {
    struct_user user;
    user.id = QStringLiteral("44");
    dialog = std::make_unique<dlg_permission>(nullptr, user);
    tree = child<QTreeWidget>(dialog.get(), "treewidget");
    tree->expandAll();
    dialog->show();
    server.forget();
}

QTreeWidgetItem* permission_test::item(int row) const {
    const auto found =
        tree->findItems(QString::number(first_id + row), Qt::MatchExactly | Qt::MatchRecursive, 1);
    if (found.size() != 1) throw std::runtime_error("no single row " + std::to_string(row));
    return found.first();
}

std::vector<int> permission_test::marks() const {
    std::vector<int> result;
    for (int row = 0; row < int(parents.size()); ++row)
        result.push_back(mark(row));
    return result;
}

void permission_test::toggle(int row) {
    tree->setCurrentItem(item(row));
    QTest::keyClick(tree, Qt::Key_Space);
}

QByteArray permission_test::asked() {
    QByteArray result;
    for (const recorded_request& request : server.requests()) {
        const bool grant = request.path == "wms_permission/set_checked";
        EXPECT_TRUE(grant || request.path == "wms_permission/set_unchecked") << request.path.constData();
        const int id = request.body.mid(request.body.lastIndexOf('=') + 1).toInt();
        if (!result.isEmpty()) result += ' ';
        result += (grant ? '+' : '-') + QByteArray::number(id - first_id);
    }
    server.forget();
    return result;
}
