#include "stock_race.h"

#include <gtest/gtest.h>

#include <thread>

namespace tavrok::test {

std::string total_of(int amount) {
    const auto hundredths = amount * 250;
    return std::to_string(hundredths / 100) + (hundredths % 100 == 0 ? ".00" : ".50");
}

std::string claim(documents_world& by, claim_for use, const std::string& stock, int amount) {
    const auto kind = "lock_type=" + std::to_string(static_cast<int>(use)) + "&id=" + stock;
    const auto part = use == claim_for::taking ? "" : "&amount=" + std::to_string(amount) + "&total=1";
    return by.ask("wms_stock_detail/lock_stock", kind + part);
}

void give_back(documents_world& by, claim_for use, const std::string& token) {
    EXPECT_EQ(by.ask("wms_stock_detail/unlock_stock",
                     "locked_id=" + token + "&lock_type=" + std::to_string(static_cast<int>(use))),
              "1");
}

void sell(documents_world& by, const std::string& stock, int amount, const std::string& token) {
    const auto draft = by.outbound_draft(stock, std::to_string(amount), "2.50", total_of(amount), token);
    EXPECT_EQ(by.ask("wms_outstore/update_total", "id=" + draft + "&total=" + total_of(amount)), "1")
        << "what is claimed can be taken";
}

stock_race::stock_race(const std::string& engine, int services) : m_site(engine, clients) {
    for (int one = 0; one < services; ++one)
        m_services.push_back(m_site.start());
    m_link = std::make_unique<wire>(m_services.front()->port(), m_site.actors().front().cookie);
    m_goods = std::make_unique<stock_control_world>(documents_site::through(*m_link));
    m_row = m_goods->stock(std::to_string(on_hand), "2.50", total_of(on_hand));
}

void stock_race::all(const std::function<void(client&)>& what) {
    std::vector<std::thread> at_work;
    for (std::size_t number = 0; number < m_site.actors().size(); ++number) {
        at_work.emplace_back([&, number] {
            wire link(m_services[number % m_services.size()]->port(), m_site.actors()[number].cookie);
            client one{number, m_goods->by(documents_site::through(link)),
                       std::mt19937(static_cast<std::uint32_t>(number))};
            what(one);
        });
    }
    for (auto& one : at_work)
        one.join();
}

void stock_race::finish() {
    for (auto& one : m_services)
        EXPECT_EQ(one->stop(), 0);
    EXPECT_EQ(m_site.faults(), "");
}

} // namespace tavrok::test
