#pragma once
#include <QList>
#include <QString>
#include <QStringList>
#include <functional>

#include "app/window.h"
#include "e2e/e2e_fixture.h"
#include "support/kinds.h"

/** What a user types into one line. The product is the row of that number in its picker. */
struct typed_line {
    int product = 0;
    int amount = 0;
    QString price;
    QString place;
    QString remark;
};

/** What the user saw of a document while he wrote it. */
struct seen_document {
    QString operater;
    QString partner;
    /** The visible cells of each line. */
    QList<QStringList> lines;
    double total = 0;
};

/** Documents of any kind, written, listed and undone through the screens. */
class document_flow : public e2e_test {
protected:
    /** Starts the service and logs in. */
    void open_as(const QString& user);
    /** Opens a page; its tab is `tab` from then on. */
    void go(const char* page);

    /** Opens a new document of the page in front, for `drive` to write and to leave. */
    void with_new(const std::function<void(QWidget* editor)>& drive);
    /** Picks operator and partner as the kind has it; gives their names. */
    static seen_document pick_people(QWidget* editor, const known_kind& kind);
    /** Writes an inbound line through its dialog and the picker of products. */
    static void write_line(QWidget* editor, const typed_line& line);
    /**
     * Opens the dialog of an outbound line, picks the stock row that lies at that place, types the quantity
     * and lets `drive` do the rest. A price that is empty stays as the row has it.
     */
    static void with_line_out(QWidget* editor, const QString& place, int amount, const QString& price,
                              const std::function<void(QWidget* dialog)>& drive);
    /** Writes an outbound line. */
    static void take_line(QWidget* editor, const QString& place, int amount,
                          const QString& price = QString());
    /** Deletes a line of a document that is being written. */
    static void delete_line(QWidget* editor, int row);

    /** Writes a document of the page in front and saves it. */
    seen_document write_in(const known_kind& kind, const QList<typed_line>& lines, const QString& remark);
    /** The same for an outbound one, whose lines are quantities of what lies at these places. */
    seen_document write_out(const known_kind& kind, const QList<typed_line>& lines, const QString& remark);
    /** Writes an inbound document that has no partner, so that there is stock. */
    void bring_in(const QList<typed_line>& lines);

    /** Deletes the first row of the list in front. */
    void delete_first();

    /** Presses a field that opens a picker. */
    static void press(const QWidget* owner, const char* field);
    /** Takes a row of a picker's list by a double click. */
    static void take_row(const QWidget* picker, int row);
    /** The visible cells of every row of a table. */
    static QList<QStringList> visible_rows(const QWidget* screen);

    /** "place amount" of the stock rows at places like that, newest first, as the picker shows them. */
    QStringList picker_shows(const QString& place);
    /** The same as the ledger has it. */
    QStringList ledger_says(const QString& place) const;
    /** The one value that a query finds. */
    QString value(const QString& query) const;
    /** Stops the service, whose own check finds nothing wrong. */
    void expect_sound();

    window shell;
    QWidget* tab = nullptr;
};
