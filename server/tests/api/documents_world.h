#pragma once

#include <gtest/gtest.h>

#include <boost/json.hpp>
#include <functional>
#include <string>

namespace tavrok::test {

/** A company with what documents name, reached as its client does. */
class documents_world {
public:
    /** Posts a body to a path and gives the body of the answer. */
    using way = std::function<std::string(const std::string& path, const std::string& body)>;
    explicit documents_world(way to);
    /** The same company, reached another way. */
    documents_world by(way way_to) const;

    std::string ask(const std::string& path, const std::string& body);
    /** Adds a record and gives its id. */
    std::string added(const std::string& path, const std::string& body);

    /** Opens an inbound draft of that kind, writes a line of `amount` at `price` and its stock; the draft's
     * id. */
    std::string inbound_draft(const std::string& amount, const std::string& price, const std::string& total,
                              int kind = 1);
    /** The same, closed; gives the id of the stock row. */
    std::string stock(const std::string& amount, const std::string& price, const std::string& total);
    /** Opens an outbound draft of that kind with a line on that row. */
    std::string outbound_draft(const std::string& stock, const std::string& amount, const std::string& price,
                               const std::string& total, const std::string& claim, int kind = 2);
    /** An outbound header of the kind with what it needs. */
    std::string outbound_header(int kind) const;
    std::string inbound_header(int kind) const;
    /** The keys of a line up to the remark. */
    std::string line(const std::string& amount, const std::string& price, const std::string& total,
                     const std::string& remark = "") const;
    boost::json::value page(const std::string& path, const std::string& criteria);

    std::string product, warehouse, supplier, client, other, department, employee;

protected:
    way m_way;
};

} // namespace tavrok::test
