#pragma once
#include <QString>
#include <vector>

#include "net/http.h"

/** A right of a page and the signal by which a screen enables what needs it. */
template <class screen>
struct right_signal {
    QString right;
    void (screen::*enable)(bool);
};

/**
 * One pass over the rights of a page: each right's signal goes out with whether the user has it, in order.
 * The right "search" also loads the list, before its signal goes out.
 */
template <class screen>
void apply_rights(screen* target, const QString& page, void (screen::*search)(),
                  const std::vector<right_signal<screen>>& rights) {
    const QStringList granted = g_http.rights[page];
    for (const auto& entry : rights) {
        const bool has = granted.contains(entry.right);
        if (has && entry.right == QLatin1String("search")) (target->*search)();
        emit(target->*entry.enable)(has);
    }
}
