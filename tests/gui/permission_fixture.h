#pragma once
#include <QByteArray>
#include <QList>
#include <QTreeWidgetItem>
#include <functional>
#include <memory>
#include <set>
#include <vector>

#include "access/dlg_permission.h"
#include "support/client_fixture.h"
#include "support/screen.h"

class QTreeWidget;

/**
 * The grants of user 44 at a service that keeps them as the real one does. Row n of the menu has the id 8 + n
 * and stands under the row that `parents` has for it (-1: at the top).
 */
class permission_test : public client_test {
protected:
    ~permission_test() override;

    void serve(const std::vector<int>& parents, const std::set<int>& granted);
    /** Makes the service answer whether it agrees; until then it always does. */
    void serve_with(std::function<bool()> agreement) { agrees = std::move(agreement); }
    void open();

    QTreeWidgetItem* item(int row) const;
    int mark(int row) const { return item(row)->data(0, Qt::CheckStateRole).toInt(); }
    std::vector<int> marks() const;
    /** Presses the space bar on a row, which is a click on its box. */
    void toggle(int row);
    /** What was asked since the last call, as "+3" for a grant of row 3, "-3" for a revocation. */
    QByteArray asked();

    std::set<int> granted_rows;
    std::unique_ptr<dlg_permission> dialog;
    QTreeWidget* tree = nullptr;

private:
    scripted_answer change(const recorded_request& request, bool grant);

    std::vector<int> parents;
    std::function<bool()> agrees = [] { return true; };
};
