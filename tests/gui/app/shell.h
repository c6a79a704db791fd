#pragma once
#include <QList>
#include <QMenu>
#include <QObject>
#include <QString>
#include <QStringList>
#include <QUrl>
#include <functional>

class QTreeWidgetItem;
class window;

/** Stands for the user's browser: keeps what it is asked to open. */
class browser : public QObject {
    Q_OBJECT

public:
    browser();
    ~browser() override;

    QList<QUrl> opened;

public slots:
    void open(const QUrl& url);
};

/** The tree row with that action key; throws when there is none. */
QTreeWidgetItem* navigation_item(const window& shell, const QString& key);

/** Clicks the tree row with that action key as a user does. */
void click_navigation(window& shell, const QString& key);

/** Opens the three partner tabs behind the home tab. */
void open_partner_tabs(window& shell);

/** Runs `act`, which is expected to pop up a menu, and gives that menu to `drive`; closes it at the end.
 * Throws when no menu comes. */
void with_popup(const std::function<void()>& act, const std::function<void(QMenu*)>& drive);

/** Texts of a menu's entries; a separator is "-". */
QStringList entries(const QMenu* menu);

/** Whether a window that takes the whole input is on the screen. */
bool modal_shown();
