#include "domain/stock_scene.h"

#include "domain/check.h"

namespace tavrok::test {

using domain::document_module;

namespace {

constexpr std::int64_t g_other_in = 7;
constexpr std::int64_t g_other_out = 6;

} // namespace

stock_scene::stock_scene(const std::string& engine) : staff_scene(engine) {
    handler = std::to_string(hire(chief, some_employee("H1", "裴云舟")));
    warehouse = open(chief, some_warehouse("一号仓"), handler);
    product = new_product("栖枬漆面护理剂", "QN-01", "500ml");
}

domain::principal stock_scene::clerk(const std::string& name, std::int64_t now) {
    return log_in(user(company, name, 1), now);
}

std::int64_t stock_scene::new_product(const std::string& name, const std::string& code,
                                      const std::string& spec) {
    return write([&](store::connection& with) {
        return domain::add_product(with, chief, {.name = name, .code = code, .spec = spec}, g_now).id;
    });
}

domain::document_line stock_scene::line_in(std::int64_t amount, std::int64_t price) const {
    domain::document_line made;
    made.product = product;
    made.price = price;
    made.amount = amount;
    made.total = amount * price;
    made.warehouse = warehouse;
    made.place = "A-01";
    return made;
}

domain::document_line stock_scene::line_out(std::int64_t stock, std::int64_t amount,
                                            const std::string& token) {
    const auto from = row(stock);
    auto made = line_in(amount, 300);
    made.product = from.product;
    made.warehouse = from.warehouse;
    made.stock = stock;
    made.token = token;
    return made;
}

std::int64_t total_of(const std::vector<domain::document_line>& lines) {
    std::int64_t sum = 0;
    for (const auto& one : lines)
        sum += one.total;
    return sum;
}

std::int64_t stock_scene::draft(const domain::principal& who, document_module module,
                                const std::vector<domain::document_line>& lines, std::int64_t now) {
    const bool inbound = module == document_module::inbound;
    return write([&](store::connection& with) {
        domain::document_header header;
        header.type = inbound ? g_other_in : g_other_out;
        header.operater = handler;
        const auto id = domain::open_draft(with, who, module, header, now).id;
        for (const auto& one : lines) {
            domain::add_line(with, who, module, id, one);
            if (inbound) domain::announce_stock(with, who, one);
        }
        return id;
    });
}

std::string stock_scene::close(const domain::principal& who, document_module module, std::int64_t draft,
                               std::int64_t total, std::int64_t now) {
    return write(
        [&](store::connection& with) { return domain::close_draft(with, who, module, draft, total, now); });
}

std::string stock_scene::take_out(const domain::principal& who,
                                  const std::vector<domain::document_line>& lines, std::int64_t now) {
    const auto id = draft(who, document_module::outbound, lines, now);
    return close(who, document_module::outbound, id, total_of(lines), now);
}

std::int64_t stock_scene::bring_in(const domain::document_line& line, std::int64_t now) {
    const auto id = draft(chief, document_module::inbound, {line}, now);
    EXPECT_EQ(close(chief, document_module::inbound, id, line.total, now), "");
    return number("SELECT max(id) FROM stock");
}

std::string stock_scene::claim(const domain::principal& who, domain::claim_use use, std::int64_t stock,
                               std::int64_t amount, std::int64_t now) {
    return write([&](store::connection& with) {
        return domain::take_claim(with, who, {use, stock, amount}, now);
    });
}

void stock_scene::give_back(const domain::principal& who, const std::string& token, std::int64_t now) {
    write([&](store::connection& with) { domain::give_back_claim(with, who, token, now); });
}

domain::principal stock_scene::again(const domain::principal& who) {
    auto made = who;
    made.last_used = number("SELECT last_used_at FROM session WHERE id = " + std::to_string(who.session));
    return made;
}

void stock_scene::remove_document(const domain::principal& who, document_module module, std::int64_t id) {
    write([&](store::connection& with) { domain::remove_document(with, who, module, id, g_now); });
}

void stock_scene::remove_product(std::int64_t id) {
    write([&](store::connection& with) { domain::remove_product(with, chief, id, g_now); });
}

store::stock_record stock_scene::row(std::int64_t stock) {
    return read([&](store::connection& with) { return store::read_stock(with, company, stock).value(); });
}

std::int64_t stock_scene::claims_in(store::claim_state state) {
    return number("SELECT count(*) FROM claim WHERE state = " + std::to_string(static_cast<int>(state)));
}

domain::list_page<domain::stock_item> stock_scene::stock(const domain::principal& who,
                                                         const domain::stock_search& search, std::int64_t num,
                                                         std::int64_t size) {
    return read([&](store::connection& with) {
        return domain::list_stock(with, who, search, {num, size}, counts);
    });
}

void stock_scene::sound() {
    const std::string active = "FROM claim c WHERE c.company = s.company AND c.stock = s.id AND c.state = 1";
    EXPECT_EQ(number("SELECT count(*) FROM stock s WHERE on_hand <> (SELECT coalesce(sum(m.amount), 0) FROM "
                     "movement m WHERE m.company = s.company AND m.stock = s.id)"),
              0);
    EXPECT_EQ(number("SELECT count(*) FROM stock s WHERE claimed <> (SELECT coalesce(sum(c.amount), 0) " +
                     active + ")"),
              0);
    EXPECT_EQ(
        number("SELECT count(*) FROM stock s WHERE holds <> (SELECT count(*) " + active + " AND c.use = 2)"),
        0);
    EXPECT_EQ(number("SELECT count(*) FROM stock s WHERE holder <> 0 AND EXISTS (SELECT 1 " + active +
                     " AND c.user_id <> s.holder)"),
              0);
    for (const auto& found : read([](store::connection& with) { return domain::check(with); }))
        ADD_FAILURE() << found.rule << ": " << found.text;
}

} // namespace tavrok::test
