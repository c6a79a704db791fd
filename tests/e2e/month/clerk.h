#pragma once
#include <QList>
#include <QString>
#include <QTableWidget>
#include <functional>
#include <random>

#include "e2e/month/deeds.h"
#include "model/struct_stock.h"

/**
 * A user who works for a month, by the client's own models: deliveries and returns of all inbound kinds,
 * sales and loans of all outbound kinds, transfers, stocktakings, and now and then he deletes a document of
 * his. Every deed that the service agreed to is told.
 */
class clerk {
public:
    /** Logs in; throws when that is refused. `number` tells the clerks apart. */
    clerk(const QString& name, const QString& password, int number, std::function<void(const deed&)> tell);

    void work(int days);

private:
    struct written {
        QString remark;
        deed done;
    };
    /** A stock row that a line takes from, and its claim. */
    struct claimed {
        struct_stock row;
        int amount = 0;
        QString claim;
    };

    void deliver();
    void take_out();
    void count_stock();
    void transfer();
    void delete_one();

    int any(int below) { return int(random() % unsigned(below)); }
    QString next_remark();
    QString next_place();
    QString partner_of(int type);
    /** Some rows of a page of the stock list, of one warehouse where it is given. */
    QList<struct_stock> some_rows(int most, const QString& warehouse = QString());
    QList<claimed> claim_rows(int most, int lock_type, const QString& warehouse = QString());
    static void give_back(const QList<claimed>& rows, int lock_type);
    /** The id of the document with that remark, from the list of its kind. Empty when no list shows it. */
    QString find(const QString& kind, const QString& remark);
    bool delete_document(const QString& kind, const QString& id);
    void note(const QString& remark, const deed& done);

    std::mt19937 random;
    int number;
    int documents = 0;
    int places = 0;
    std::function<void(const deed&)> tell;
    QTableWidget table;
    QList<QString> products;
    QList<QString> warehouses;
    QList<QString> employees;
    QList<QString> partners[4];
    QList<written> own;
};
