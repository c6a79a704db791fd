#pragma once
#include <QHash>
#include <QString>
#include <QVariant>
#include <QtPlugin>

/** What a page bar needs of a model. */
class model_interface {
public:
    virtual ~model_interface() = default;

    /**
     * Fetches a page (from 1; -1 is the last), refills the model's table with it and returns `total`,
     * `page_count` and `page_num` as text, empty where the service gave none, and `html` from models that
     * print.
     */
    virtual QHash<QString, QVariant> get_page(QString args, int page_num, int page_size) = 0;
};
Q_DECLARE_INTERFACE(model_interface, "model_interface")
