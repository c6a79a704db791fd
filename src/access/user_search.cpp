#include "access/user_search.h"

#include <QComboBox>

#include "model/model_user.h"
#include "widgets/fields.h"

void user_search::fill_boxes() const {
    type->addItem(QStringLiteral("【全部】"), 0);
    type->addItem(QStringLiteral("普通用户"), user_ordinary);
    type->addItem(QStringLiteral("管理员"), user_administrator);
    state->addItem(QStringLiteral("【全部】"), 0);
    state->addItem(QStringLiteral("启用"), user_enabled);
    state->addItem(QStringLiteral("停用"), user_disabled);
}

QString user_search::args() const {
    struct_user search;
    search.username = field_text(username);
    search.realname = field_text(realname);
    search.type = type->currentData().toInt();
    search.state = state->currentData().toInt();
    return model_user::search_args(search);
}
