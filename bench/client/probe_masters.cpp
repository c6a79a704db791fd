#include <QComboBox>
#include <QTreeWidget>

#include "access/dlg_permission.h"
#include "client/watch.h"
#include "master/tab_product.h"
#include "model/model_emp.h"
#include "net/http.h"

namespace {

constexpr int warm_up = 2;
constexpr int openings = 20;
constexpr int clicks = 6;

/** The account of that name, as far as the dialog of its grants needs it. */
struct_user account(const QString& username) {
    const QJsonObject page =
        g_http.post_object(QStringLiteral("user/get_page"), QStringLiteral("username=") + username +
                                                                QStringLiteral("&page_num=1&page_size=20"));
    const QJsonObject found = page.value(QLatin1String("list")).toArray().first().toObject();
    struct_user user;
    user.id = found.value(QLatin1String("id")).toString();
    user.username = username;
    if (user.id.isEmpty()) {
        std::printf("no account %s\n", qPrintable(username));
        leave(1);
    }
    return user;
}

int rows_below(const QTreeWidgetItem* item) {
    int all = item->childCount();
    for (int i = 0; i < item->childCount(); ++i)
        all += rows_below(item->child(i));
    return all;
}

void open_grants(const struct_user& user, bool print) {
    const answer_counter answers;
    const double begin = now_ms();
    dlg_permission dialog(nullptr, user);
    const double filled = now_ms();
    dialog.show();
    wait_for_paint(child<QTreeWidget>(&dialog, "treewidget")->viewport());
    if (!print) return;
    std::printf("grants_filled_ms %.4f\ngrants_painted_ms %.4f\n", filled - begin, now_ms() - begin);
    std::printf("grants_requests %d\n", answers.count());
}

/** A click on the check mark of the first group, which is what the change of its state is; it must carry over
 * to all that is below. */
void click_group(QTreeWidgetItem* group, Qt::CheckState state, const char* name) {
    const answer_counter answers;
    const double begin = now_ms();
    group->setCheckState(0, state);
    std::printf("%s_ms %.4f\n%s_requests %d\n", name, now_ms() - begin, name, answers.count());
    const QTreeWidgetItem* last = group;
    while (last->childCount() > 0)
        last = last->child(last->childCount() - 1);
    if (last->checkState(0) != state) {
        std::printf("the click did not come through\n");
        leave(1);
    }
}

void measure_grants() {
    const struct_user user = account(QStringLiteral("demo_guest"));
    for (int at = 0; at < warm_up + openings; ++at)
        open_grants(user, at >= warm_up);
    dlg_permission dialog(nullptr, user);
    dialog.show();
    QTreeWidgetItem* group = child<QTreeWidget>(&dialog, "treewidget")->topLevelItem(0);
    std::printf("group_rows %d\n", rows_below(group));
    for (int at = 0; at < clicks; ++at) {
        click_group(group, Qt::Checked, "grant");
        click_group(group, Qt::Unchecked, "revoke");
    }
}

void measure_employee_box() {
    for (int at = 0; at < warm_up + openings; ++at) {
        QComboBox box;
        model_emp model;
        const double begin = now_ms();
        model.get_option(&box);
        const double filled = now_ms();
        box.show();
        wait_for_paint(&box);
        const double painted = now_ms();
        box.showPopup();
        const double opened = now_ms();
        if (at < warm_up) continue;
        std::printf("box_filled_ms %.4f\nbox_painted_ms %.4f\nbox_opened_ms %.4f\nbox_entries %d\n",
                    filled - begin, painted - begin, opened - painted, box.count());
    }
}

} // namespace

void measure_masters() {
    tab_product products(nullptr);
    turn_pages(&products, "product_");
    measure_grants();
    measure_employee_box();
}
