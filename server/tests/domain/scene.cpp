#include "domain/scene.h"

namespace tavrok::test {

scene::scene(const std::string& engine) : m_database(engine) {
    company = write(
        [](store::connection& with) { return domain::create_company(with, "澜杉测试公司", true, g_now); });
    boss = user(company, "boss", 1);
    hand = user(company, "hand", 2);
}

domain::user_key scene::user(std::int64_t of, const std::string& name, int type) {
    return write([&](store::connection& with) {
        return domain::user_key{
            of, domain::create_user(with, {of, name, "某人", "hash of " + name, type, "", ""}, g_now)};
    });
}

domain::principal scene::log_in(const domain::user_key& whom, std::int64_t now) {
    const auto token = write([&](store::connection& with) {
        return domain::open_session(with, whom.company, whom.user, "192.0.2.1", now);
    });
    return read([&](store::connection& with) { return domain::resume(with, token, now); }).value();
}

std::int64_t scene::number(const std::string& sql) {
    return read([&](store::connection& with) {
        std::int64_t result = -1;
        with.query({"test " + sql, sql}, {}, [&](const store::row& one) { result = one.integer(0); });
        return result;
    });
}

domain::partner some_partner(int type, const std::string& name) {
    domain::partner made;
    made.type = type;
    made.name = name;
    made.phone = "0193-5550001";
    made.linkman = "沈砚舟";
    made.mobile = "15400001234";
    made.fax = "0193-5560001";
    made.address = "澜杉市栖枬路9号";
    made.account = "0000193000000001";
    made.bank = "澜杉商贸银行";
    made.remark = "月结30天";
    return made;
}

std::int64_t rows_seen(store::connection& with, const store::listing& list, std::int64_t company,
                       std::int64_t id) {
    std::int64_t count = 0;
    store::each_listed_id(with, list, {company, {}}, [&](std::int64_t) { ++count; });
    store::each_listed_of(with, list, company, {id}, [&](const store::row&) { ++count; });
    return count;
}

} // namespace tavrok::test
