#pragma once

#include <functional>
#include <random>

#include "documents_site.h"

namespace tavrok::test {

/** What a claim on a row of stock is for, as the wire has it. */
enum class claim_for { transfer = 1, taking = 2, outbound = 3 };

/** "12.50" for five units; all goods of a race cost 2.50. */
std::string total_of(int amount);
/** The token, "0" for a refusal. */
std::string claim(documents_world& by, claim_for use, const std::string& stock, int amount);
/** Gives a claim back, which never fails. */
void give_back(documents_world& by, claim_for use, const std::string& token);
/** Sells what is claimed, which never fails. */
void sell(documents_world& by, const std::string& stock, int amount, const std::string& token);

/** Many clients on one row of stock, each a user with a connection of his own, spread over the services. */
class stock_race {
public:
    static constexpr int clients = 32;
    static constexpr int on_hand = 400;

    stock_race(const std::string& engine, int services);

    struct client {
        std::size_t number;
        stock_control_world by;
        std::mt19937 chance;
    };
    /** All clients do it at once; returns when all are done. */
    void all(const std::function<void(client&)>& what);
    /** One who may do something before and after. */
    stock_control_world& goods() { return *m_goods; }
    const std::string& row() const { return m_row; }
    /** Stops the services; nothing may be wrong then. */
    void finish();
    std::int64_t number(const std::string& sql) { return number_in(*m_site.database(), sql); }

private:
    documents_site m_site;
    std::vector<std::unique_ptr<running_service>> m_services;
    std::unique_ptr<wire> m_link;
    std::unique_ptr<stock_control_world> m_goods;
    std::string m_row;
};

} // namespace tavrok::test
