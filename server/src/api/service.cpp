#include "api/service.h"

#include <spdlog/spdlog.h>

#include <optional>
#include <utility>

#include "api/dispatcher.h"
#include "api/metrics.h"
#include "api/modules/modules.h"
#include "api/probes.h"
#include "api/registry.h"
#include "api/route_list.h"

namespace tavrok::api {

namespace {

std::string word_of(http::rejection why) {
    switch (why) {
        case http::rejection::body_too_large:
            return "body over the limit";
        case http::rejection::too_many_requests:
            return "too many requests";
        case http::rejection::timed_out:
            return "not answered in time";
        default:
            return "failed";
    }
}

class whole_service final : public service {
public:
    whole_service(store::database& where, settings options, clock_function clock, defer later)
        : m_options(std::move(options)),
          m_with{where,
                 m_options,
                 std::move(clock),
                 later ? std::move(later) : own_timer(),
                 m_hashing.emplace(m_options.hashing_threads, m_options.hashing_limit),
                 m_pictures.emplace(1, m_options.picture_limit),
                 m_counts} {
        add_version(m_routes, m_with);
        add_login(m_routes, m_with);
        add_wms(m_routes, m_with);
        add_menu(m_routes, m_with);
        add_permission(m_routes, m_with);
        add_company(m_routes, m_with);
        add_emp(m_routes, m_with);
        add_warehouse(m_routes, m_with);
        add_trees(m_routes, m_with);
        add_product(m_routes, m_with);
        add_instore(m_routes, m_with);
        add_outstore(m_routes, m_with);
        add_stock_detail(m_routes, m_with);
        add_stock_taking(m_routes, m_with);
        add_stock_allot(m_routes, m_with);
        add_stock_summary(m_routes, m_with);
        add_user_reg(m_routes, m_with);
        add_user(m_routes, m_with);
        m_list = list_routes(m_routes);
        m_figures.emplace(m_routes);
        m_dispatcher.emplace(m_with, *m_figures);
        m_dispatcher->house().start_sweeping();
    }
    ~whole_service() override { drain(); }

    void handle(http::request incoming, http::respond answer) override {
        if (const auto* what = m_routes.find(incoming.path))
            return m_dispatcher->handle(*what, std::move(incoming), std::move(answer));
        answer(probe(incoming, {ready(), m_options, *m_figures}));
    }
    void reject(http::request incoming, http::rejection why, http::respond answer) override {
        if (const auto* what = m_routes.find(incoming.path))
            return m_dispatcher->reject(*what, std::move(incoming), word_of(why), std::move(answer));
        answer(probe(incoming, {ready(), m_options, *m_figures}));
    }
    const std::vector<route_info>& routes() const override { return m_list; }
    const registry& endpoints() const override { return m_routes; }
    bool ready() const override { return m_with.database.ready(); }

    void drain() override {
        m_dispatcher->house().stop_sweeping();
        if (m_timer) m_timer->stop();
        m_dispatcher->drain();
    }

private:
    defer own_timer() {
        m_timer.emplace();
        return [this](std::chrono::milliseconds delay, std::function<void()> task) {
            m_timer->after(delay, std::move(task));
        };
    }

    settings m_options;
    domain::count_cache m_counts;
    std::optional<scheduler> m_timer;
    std::optional<work_queue> m_hashing;
    std::optional<work_queue> m_pictures;
    services m_with;
    registry m_routes;
    std::vector<route_info> m_list;
    std::optional<metrics> m_figures;
    std::optional<dispatcher> m_dispatcher;
};

} // namespace

std::unique_ptr<service> service::make(store::database& where, settings options, clock_function clock,
                                       defer later) {
    return std::make_unique<whole_service>(where, std::move(options), std::move(clock), std::move(later));
}

} // namespace tavrok::api
