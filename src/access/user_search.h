#pragma once
#include <QString>

class QComboBox;
class QLineEdit;

/** The search fields that the list of the accounts and its picker have in common. */
struct user_search {
    QLineEdit* username;
    QLineEdit* realname;
    QComboBox* type;
    QComboBox* state;

    /** Puts the choices into the boxes. */
    void fill_boxes() const;
    /** The search arguments for what the fields hold. */
    QString args() const;
};
