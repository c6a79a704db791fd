#include <QTreeWidget>
#include <random>
#include <set>

#include "access/dlg_permission.h"
#include "app/window.h"
#include "e2e/e2e_fixture.h"
#include "gui/grant_oracle.h"
#include "net/http.h"
#include "support/screen.h"

namespace {

constexpr int sequences = 200;
constexpr int clicks = 5;

/** The grants of one user, with the menu table numbered from the top down. */
class grant_storm : public e2e_test {
protected:
    void number(QTreeWidgetItem* item, int parent) {
        const int row = int(items.size());
        items.push_back(item);
        parents.push_back(parent);
        ids.push_back(item->text(1));
        for (int i = 0; i < item->childCount(); ++i)
            number(item->child(i), row);
    }

    void open(const QString& user) {
        struct_user whom;
        whom.id = user;
        dialog = std::make_unique<dlg_permission>(nullptr, whom);
        auto* tree = child<QTreeWidget>(dialog.get(), "treewidget");
        items.clear();
        parents.clear();
        ids.clear();
        for (int i = 0; i < tree->topLevelItemCount(); ++i)
            number(tree->topLevelItem(i), -1);
    }

    std::vector<int> marks() const {
        std::vector<int> result;
        for (QTreeWidgetItem* item : items)
            result.push_back(item->data(0, Qt::CheckStateRole).toInt());
        return result;
    }

    std::set<QString> granted_ids(const std::set<int>& rows) const {
        std::set<QString> result;
        for (int row : rows)
            result.insert(ids[size_t(row)]);
        return result;
    }

    /** What stands in the database. */
    std::set<QString> stored(const QString& user) const {
        const QStringList rows =
            service->read_database(QStringLiteral("SELECT menu_id FROM user_grant WHERE user_id = ") + user);
        return std::set<QString>(rows.begin(), rows.end());
    }

    std::unique_ptr<dlg_permission> dialog;
    std::vector<QTreeWidgetItem*> items;
    std::vector<int> parents;
    std::vector<QString> ids;
};

} // namespace

/** Random clicks in the grant dialog of one user after another; tree, rules and database agree after each. */
TEST_F(grant_storm, random_clicks_leave_the_tree_and_the_database_as_the_rules_say) {
    serve();
    window shell;
    log_in(shell, QStringLiteral("demo_admin"));
    const QString user =
        service->read_database(QStringLiteral("SELECT id FROM app_user WHERE username = 'demo_clerk'"))
            .value(0);
    ASSERT_FALSE(user.isEmpty());
    std::mt19937 random(20261121);
    std::set<int> granted;
    for (int sequence = 0; sequence < sequences; ++sequence) {
        open(user);
        ASSERT_GT(items.size(), 150u);
        if (sequence == 0) {
            for (int row = 0; row < int(ids.size()); ++row)
                if (stored(user).count(ids[size_t(row)]) != 0) granted.insert(row);
        }
        grant_oracle rules(parents, granted, [] { return true; });
        ASSERT_EQ(marks(), rules.marks) << "opened, sequence " << sequence;
        for (int i = 0; i < clicks; ++i) {
            // A group is a hundred requests: now and then, as people do.
            int row = int(random() % items.size());
            if (parents[size_t(row)] < 0 && random() % 4 != 0) row += 2;
            QTreeWidgetItem* item = items[size_t(row)];
            item->setCheckState(0, item->checkState(0) == Qt::Checked ? Qt::Unchecked : Qt::Checked);
            rules.click(row);
            ASSERT_EQ(marks(), rules.marks) << "sequence " << sequence << ", row " << row;
        }
        granted = rules.granted;
        ASSERT_EQ(stored(user), granted_ids(granted)) << "sequence " << sequence;
    }
    EXPECT_EQ(service->stop(), 0);
    EXPECT_EQ(service->check(), 0);
}
