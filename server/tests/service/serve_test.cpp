#include <gtest/gtest.h>
#include <sys/stat.h>

#include <algorithm>
#include <csignal>
#include <filesystem>
#include <fstream>

#include "domain/accounts.h"
#include "http/certificate.h"
#include "running_service.h"
#include "support/scratch_database.h"

namespace tavrok::test {

namespace {

class serve : public testing::TestWithParam<std::string> {
protected:
    void SetUp() override {
        SKIP_WITHOUT(GetParam());
        m_scratch = std::make_unique<scratch_database>(GetParam());
    }
    const std::string& folder() const { return m_scratch->folder(); }
    const std::string& database() const { return m_scratch->options().location; }
    int command(std::vector<std::string> arguments, const std::string& input = "",
                std::string* told = nullptr, std::string* said = nullptr) {
        arguments.insert(arguments.end(), {"--database", database(), "--pepper-file", folder() + "/pepper"});
        return run_command(folder(), arguments, {}, input, told, said);
    }
    std::unique_ptr<running_service> start(std::vector<std::string> more = {}) {
        return std::make_unique<running_service>(folder(), database(), std::move(more));
    }

private:
    std::unique_ptr<scratch_database> m_scratch;
};

/** The MD5 of "secret", as the client sends it. */
const std::string g_login = "username=boss&password=5ebe2294ecd0e0f08eab7690d2a6ee69";

std::string cookie_of(const reply& answer) {
    const std::string field = answer.field("Set-Cookie");
    return "Cookie: " + field.substr(0, field.find(';')) + "\r\n";
}

} // namespace

TEST_P(serve, a_body_over_the_limit_is_refused_in_the_form_of_its_endpoint) {
    const auto service = start();
    tls_client client(service->port());
    ASSERT_TRUE(client.connected());
    const std::string body = "type=1&name=" + std::string(70'000, 'x');
    EXPECT_EQ(client.ask(post("wms_company/do_add", body))->body, R"({"http_state":0})");
    EXPECT_EQ(client.ask(post("wms_company/do_edit", body))->body, "0");
    EXPECT_EQ(client.ask(post("wms_menu/get_menu", body))->body, "[]");
    EXPECT_EQ(service->stop(), 0);
}

TEST_P(serve, answers_the_probes_and_the_protocol) {
    const auto service = start();
    tls_client client(service->port());
    ASSERT_TRUE(client.connected());
    EXPECT_EQ(client.ask(get("healthz"))->status, 200u);
    EXPECT_EQ(client.ask(get("readyz"))->status, 200u);
    EXPECT_EQ(client.ask(get("nothing/here"))->status, 404u);
    EXPECT_EQ(client.ask(post("wms_company/get_page", "page_num=1&page_size=20"))->body, "7");
    const auto metrics = client.ask(get("metrics"));
    ASSERT_TRUE(metrics);
    EXPECT_NE(metrics->body.find("tavrok_http_requests_total 4\n"), std::string::npos) << metrics->body;
    EXPECT_NE(metrics->body.find("tavrok_store_commits_total "), std::string::npos);
    EXPECT_EQ(service->stop(), 0);
    EXPECT_NE(service->program().said().find(" POST wms_company/get_page 200 "), std::string::npos);
}

TEST_P(serve, init_makes_the_account_that_logs_in) {
    std::string told;
    ASSERT_EQ(command({"init", "--company", "Works", "--user", "boss"}, "secret\n", &told), 0);
    EXPECT_NE(told.find("boss"), std::string::npos);
    EXPECT_EQ(command({"check"}, "", &told), 0);
    EXPECT_NE(told.find("everything holds"), std::string::npos);
    std::string said;
    EXPECT_EQ(command({"init", "--company", "Other", "--user", "other"}, "secret\n", nullptr, &said), 1);
    EXPECT_NE(said.find("has a company that runs the service already"), std::string::npos) << said;

    const auto service = start();
    tls_client client(service->port());
    const auto login = client.ask(post("login/check_login", g_login));
    ASSERT_TRUE(login);
    EXPECT_NE(login->body.find("\"username\":\"boss\""), std::string::npos) << login->body;
    const auto page = client.ask(post("wms_company/get_page", "page_num=1&page_size=20", cookie_of(*login)));
    ASSERT_TRUE(page);
    EXPECT_NE(page->body, "7");
    const auto wrong = client.ask(post("login/check_login", "username=boss&password=0"));
    EXPECT_EQ(wrong->field("Set-Cookie"), "");
    EXPECT_EQ(service->stop(), 0);
    const std::string log = service->program().said();
    for (const char* secret : {"5ebe2294ecd0e0f0", "tavrok_session"}) {
        EXPECT_EQ(log.find(secret), std::string::npos) << log;
    }
}

TEST_P(serve, init_makes_the_operator_also_after_a_customer_has_signed_up) {
    const auto create = [this](bool operator_company, const std::string& name) {
        const auto opened = store::open({.location = database()});
        store::write_now(*opened, [&](store::connection& with) {
            const auto id = domain::create_company(with, name, operator_company, 1);
            domain::create_user(with, {id, name, "", "hash", 1, "", ""}, 1);
        });
    };
    create(false, "customer");
    ASSERT_EQ(command({"demo"}), 1) << "demo data go into an empty database only";
    ASSERT_EQ(command({"init", "--company", "Works", "--user", "boss"}, "secret\n"), 0);
    EXPECT_EQ(command({"init", "--company", "Other", "--user", "other"}, "secret\n"), 1);
    std::string told;
    EXPECT_EQ(command({"check"}, "", &told), 0) << told;
}

TEST_P(serve, names_of_old_rows_are_folded_when_the_database_is_opened) {
    ASSERT_EQ(command({"init", "--company", "Works", "--user", "boss"}, "secret\n"), 0);
    const auto count = [this](const std::string& what) {
        const auto opened = store::open({.location = database()});
        std::int64_t found = -1;
        store::write_now(*opened, [&](store::connection& with) {
            with.query({"", "SELECT count(*) FROM company WHERE name_folded = 'works'"}, {},
                       [&](const store::row& one) { found = one.integer(0); });
            if (!what.empty()) with.execute({"", what}, {});
        });
        return found;
    };
    const std::string unfold = "UPDATE company SET name_folded = ''";
    count(unfold);
    std::string told;
    EXPECT_EQ(command({"check"}, "", &told), 0) << told;
    EXPECT_EQ(count(unfold), 1);
    EXPECT_EQ(start()->stop(), 0);
    EXPECT_EQ(count(unfold), 1);
    EXPECT_EQ(command({"demo"}), 1);
    EXPECT_EQ(count(unfold), 1);
    EXPECT_EQ(command({"init", "--company", "Other", "--user", "other"}, "secret\n"), 1);
    EXPECT_EQ(count({}), 1);
}

TEST_P(serve, demo_makes_accounts_once) {
    std::string told;
    ASSERT_EQ(command({"demo"}, "", &told), 0);
    EXPECT_GE(std::count(told.begin(), told.end(), '\n'), 3);
    EXPECT_EQ(command({"check"}, "", &told), 0) << told;
    EXPECT_EQ(command({"demo"}), 1);
}

TEST_P(serve, a_request_under_way_is_answered_before_the_end) {
    ASSERT_EQ(command({"init", "--company", "Works", "--user", "boss"}, "secret\n"), 0);
    // One thread, so that whatever came before an answered probe has been looked at.
    const auto service = start({"--network-threads", "1"});
    tls_client login(service->port());
    tls_client half(service->port());
    tls_client idle(service->port());
    ASSERT_TRUE(idle.ask(get("healthz")));
    const std::string request = post("wms_company/get_page", "page_num=1&page_size=20");
    // In one piece with a probe: when that was answered, the service has what came behind it.
    ASSERT_TRUE(half.send(get("healthz") + request.substr(0, request.size() - 3)));
    ASSERT_TRUE(half.read());
    ASSERT_TRUE(login.send(get("healthz") + post("login/check_login", g_login)));
    ASSERT_TRUE(login.read());
    ASSERT_TRUE(idle.ask(get("healthz")));
    service->program().signal(SIGTERM);
    EXPECT_TRUE(idle.closed_within(patience));
    const auto rest = half.ask(request.substr(request.size() - 3));
    ASSERT_TRUE(rest);
    EXPECT_EQ(rest->body, "7");
    const auto answer = login.read();
    ASSERT_TRUE(answer) << "a request that was taken must be answered";
    EXPECT_NE(answer->body.find("\"username\":\"boss\""), std::string::npos);
    EXPECT_EQ(service->program().exit_code(patience), 0);
    EXPECT_THROW(tcp_client(service->port()), std::runtime_error);
}

TEST_P(serve, comes_back_on_its_database) {
    ASSERT_EQ(command({"init", "--company", "Works", "--user", "boss"}, "secret\n"), 0);
    std::string cookie;
    {
        const auto service = start();
        tls_client client(service->port());
        cookie = cookie_of(*client.ask(post("login/check_login", g_login)));
        EXPECT_EQ(service->stop(), 0);
    }
    const auto again = start();
    tls_client client(again->port());
    EXPECT_NE(client.ask(post("wms_company/get_page", "page_num=1&page_size=20", cookie))->body, "7");
}

TEST(serve_sqlite, a_second_service_on_the_same_file_is_refused) {
    scratch_database scratch("sqlite");
    running_service first(scratch.folder(), scratch.options().location);
    std::string said;
    EXPECT_EQ(
        run_command(scratch.folder(), {"serve", "--database", scratch.options().location, "--port", "0"}, {},
                    "", nullptr, &said),
        1);
    EXPECT_NE(said.find("another server has the database open"), std::string::npos) << said;
    EXPECT_EQ(tls_client(first.port()).ask(get("readyz"))->status, 200u);
}

TEST(serve_postgresql, two_services_on_one_database_are_one) {
    SKIP_WITHOUT("postgresql");
    scratch_database scratch("postgresql");
    const std::string& database = scratch.options().location;
    ASSERT_EQ(run_command(scratch.folder(),
                          {"init", "--database", database, "--pepper-file", scratch.folder() + "/pepper",
                           "--company", "Works", "--user", "boss", "--password", "secret"}),
              0);
    running_service one(scratch.folder(), database);
    running_service other(scratch.folder(), database);
    const auto login = tls_client(one.port()).ask(post("login/check_login", g_login));
    ASSERT_TRUE(login);
    const auto page = tls_client(other.port())
                          .ask(post("wms_company/get_page", "page_num=1&page_size=20", cookie_of(*login)));
    ASSERT_TRUE(page);
    EXPECT_NE(page->body, "7");
}

TEST(serve_files, secrets_are_made_for_their_owner_only) {
    scratch_database scratch("sqlite");
    running_service service(scratch.folder(), scratch.options().location);
    for (const char* name : {"/pepper", "/private_key.pem"}) {
        struct stat about {};
        ASSERT_EQ(::stat((scratch.folder() + name).c_str(), &about), 0) << name;
        EXPECT_EQ(about.st_mode & 0777, 0600u) << name;
    }
    EXPECT_EQ(service.stop(), 0);
    ASSERT_EQ(::chmod((scratch.folder() + "/pepper").c_str(), 0644), 0);
    EXPECT_THROW(running_service(scratch.folder(), scratch.options().location), std::runtime_error);
}

TEST(serve_files, the_port_file_goes_with_the_service) {
    scratch_database scratch("sqlite");
    const std::string path = scratch.folder() + "/the_port";
    process service(scratch.folder(),
                    {"serve", "--database", scratch.options().location, "--port", "0", "--port-file", path});
    EXPECT_FALSE(service.wait_for_file(path, patience).empty()) << service.said();
    service.signal(SIGINT);
    EXPECT_EQ(service.exit_code(patience), 0);
    EXPECT_FALSE(std::filesystem::exists(path));
}

TEST(serve_files, a_hangup_reloads_the_certificate) {
    scratch_database scratch("sqlite");
    running_service service(scratch.folder(), scratch.options().location);
    tls_client before(service.port());
    const std::string certificate = scratch.folder() + "/certificate.pem";
    const std::string key = scratch.folder() + "/private_key.pem";
    std::filesystem::remove(certificate);
    std::filesystem::remove(key);
    ASSERT_TRUE(http::make_certificate_if_absent({certificate, key}));
    service.program().signal(SIGHUP);
    ASSERT_TRUE(service.program().says("reloaded", patience));
    EXPECT_NE(tls_client(service.port()).serial(), before.serial());
    EXPECT_EQ(before.ask(get("healthz"))->status, 200u);

    std::ofstream(certificate) << "nothing of the kind";
    service.program().signal(SIGHUP);
    ASSERT_TRUE(service.program().says("the former certificate stays in use", patience));
    EXPECT_TRUE(tls_client(service.port()).connected());
}

INSTANTIATE_TEST_SUITE_P(engine, serve, testing::ValuesIn(engines()),
                         [](const auto& chosen) { return chosen.param; });

} // namespace tavrok::test
