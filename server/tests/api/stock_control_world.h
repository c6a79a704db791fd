#pragma once

#include <string>

#include "api/documents_world.h"

namespace tavrok::test {

/** A documents_world that counts its stock and moves it to a second warehouse. */
class stock_control_world : public documents_world {
public:
    explicit stock_control_world(way to);

    /** The same company, reached another way. */
    stock_control_world by(way way_to) const;

    /** A line that counts a row; the money is as the client truncates it. */
    std::string counted(const std::string& stock, int sys, int real, const std::string& price,
                        const std::string& money, const std::string& claim = "",
                        const std::string& remark = "") const;
    /** A stocktaking's draft with that line. */
    std::string taking_draft(const std::string& line);
    /** Writes a stocktaking that takes one off the row; gives its id. */
    std::string taking(const std::string& stock);

    std::string transfer_header() const;
    std::string moved(const std::string& stock, const std::string& amount, const std::string& price,
                      const std::string& total, const std::string& claim = "",
                      const std::string& remark = "搬") const;
    /** Writes a transfer of one unit of the row; gives its id. */
    std::string transfer(const std::string& stock);
    /** The first of a list. */
    boost::json::value newest(const std::string& module);

    std::string second_warehouse;
};

} // namespace tavrok::test
