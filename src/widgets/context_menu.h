#pragma once
#include <QList>

class QAction;
class QMenu;
class QWidget;

/** A menu on `owner` with the actions in their order, a separator between each two. */
QMenu* make_context_menu(QWidget* owner, const QList<QAction*>& actions);
