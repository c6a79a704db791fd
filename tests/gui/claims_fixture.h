#pragma once
#include <QSignalSpy>

#include "gui/list_fixture.h"
#include "gui/outstore_samples.h"
#include "support/pick.h"

/**
 * Editors whose lines claim stock rows, against a scripted service. Claims get the ids C1, C2 and so on; the
 * user 王 (id 9) is logged in.
 */
class claims_test : public list_test, protected outstore_records {
protected:
    claims_test() {
        server.always("wms_warehouse/get_option", "[]");
        server.always("wms_warehouse/get_option_with_stat", "[]");
        server.always("wms_stock_detail/get_page", page_body({}));
        server.always("wms_stock_detail/lock_stock", [this](const recorded_request&) {
            return scripted_answer("C" + QByteArray::number(++claims));
        });
        server.always("wms_stock_detail/unlock_stock", "1");
        g_http.current_user.id = QStringLiteral("9");
        g_http.current_user.realname = QStringLiteral("王");
    }
    ~claims_test() override { g_http.current_user = struct_user(); }

    /** What went over the wire, but for what pickers ask when they open. */
    QStringList wire() const {
        QStringList calls;
        for (const auto& request : server.requests())
            if (!request.path.startsWith("wms_warehouse/") && request.path != "wms_stock_detail/get_page")
                calls.append(QString::fromUtf8(request.path + ' ' + request.body));
        return calls;
    }

    static QStringList words(std::initializer_list<const char*> texts) {
        QStringList result;
        for (const char* text : texts)
            result.append(QString::fromUtf8(text));
        return result;
    }

    int claims = 0;
};
