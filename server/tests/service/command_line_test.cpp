#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

#include "app/config.h"
#include "running_service.h"
#include "support/scratch_database.h"

namespace tavrok::test {

namespace {

/** A TOML file and environment variables that go with the test. */
class configuration : public testing::Test {
protected:
    void TearDown() override {
        for (const std::string& name : m_set)
            ::unsetenv(name.c_str());
    }
    void set(const std::string& name, const std::string& value) {
        ::setenv(name.c_str(), value.c_str(), 1);
        m_set.push_back(name);
    }
    std::string file(const std::string& content) {
        const std::string path = m_scratch.folder() + "/tavrok.toml";
        std::ofstream(path) << content;
        return path;
    }
    app::parsed parsed(std::vector<std::string> words) {
        words.insert(words.begin(), "tavrok_wmsd");
        std::vector<const char*> pointers;
        for (const std::string& one : words)
            pointers.push_back(one.c_str());
        return app::parse(static_cast<int>(pointers.size()), pointers.data());
    }

private:
    scratch_database m_scratch{"sqlite"};
    std::vector<std::string> m_set;
};

} // namespace

TEST_F(configuration, has_defaults_that_serve_this_machine_only) {
    const auto got = parsed({"serve"});
    ASSERT_TRUE(got.runs);
    EXPECT_EQ(got.chosen.command, "serve");
    EXPECT_EQ(got.chosen.listen, std::vector<std::string>{"127.0.0.1"});
    EXPECT_EQ(got.chosen.port, 8443);
    EXPECT_EQ(got.chosen.oldest_accepted_version, 0);
    EXPECT_EQ(got.chosen.claim_lapse, 2 * 3600);
    EXPECT_FALSE(got.chosen.metrics_public);
    EXPECT_FALSE(got.chosen.own_certificate);
    EXPECT_EQ(parsed({"serve", "--database", "/data/wms.db"}).chosen.pepper_file, "/data/pepper");
    EXPECT_EQ(parsed({"serve", "--database", "postgresql:///x"}).chosen.certificate, "certificate.pem");
}

TEST_F(configuration, a_flag_beats_the_environment_beats_the_file_beats_the_default) {
    const std::string path = file(
        "port = 1111\nlog-level = \"error\"\nsession-idle = 60\nclaim-lapse = 90\nmetrics-public = true\n"
        "listen = [\"127.0.0.1\", \"::1\"]\n");
    set("TAVROK_PORT", "2222");
    set("TAVROK_LOG_LEVEL", "warning");
    const auto got = parsed({"serve", "--config", path, "--port", "3333"});
    ASSERT_TRUE(got.runs);
    EXPECT_EQ(got.chosen.port, 3333);
    EXPECT_EQ(got.chosen.log_level, "warning");
    EXPECT_EQ(got.chosen.session_idle, 60);
    EXPECT_EQ(got.chosen.claim_lapse, 90);
    EXPECT_TRUE(got.chosen.metrics_public);
    EXPECT_EQ(got.chosen.listen, (std::vector<std::string>{"127.0.0.1", "::1"}));
    EXPECT_EQ(got.chosen.session_total, 24 * 3600);
    EXPECT_EQ(parsed({"serve", "--config", path}).chosen.port, 2222);
    set("TAVROK_CLAIM_LAPSE", "120");
    EXPECT_EQ(parsed({"serve", "--config", path}).chosen.claim_lapse, 120);
    EXPECT_EQ(parsed({"serve", "--claim-lapse", "180"}).chosen.claim_lapse, 180);
}

TEST_F(configuration, the_file_itself_can_come_from_the_environment) {
    set("TAVROK_CONFIG", file("port = 1111\n"));
    EXPECT_EQ(parsed({"serve"}).chosen.port, 1111);
}

TEST_F(configuration, lists_in_the_environment_are_parted_by_commas) {
    set("TAVROK_TRUSTED_PROXY", "10.0.0.0/8,192.168.0.1");
    EXPECT_EQ(parsed({"serve"}).chosen.trusted_proxies,
              (std::vector<std::string>{"10.0.0.0/8", "192.168.0.1"}));
}

TEST_F(configuration, one_file_serves_every_command) {
    const std::string path = file("database = \"x.db\"\nport = 1111\ncompany = \"Works\"\n");
    EXPECT_EQ(parsed({"check", "--config", path}).chosen.database, "x.db");
    const auto got = parsed({"init", "--config", path, "--user", "boss"});
    ASSERT_TRUE(got.runs);
    EXPECT_EQ(got.chosen.company, "Works");
}

TEST_F(configuration, wrong_usage_is_told_with_2) {
    for (const std::vector<std::string>& words :
         std::vector<std::vector<std::string>>{{},
                                               {"fly"},
                                               {"serve", "--nonsense"},
                                               {"serve", "--port", "eighty"},
                                               {"serve", "--port", "70000"},
                                               {"serve", "--log-level", "loud"},
                                               {"serve", "--session-idle", "-1"},
                                               {"serve", "--claim-lapse", "0"},
                                               {"serve", "--network-threads", "0"},
                                               {"serve", "--certificate", "alone.pem"},
                                               {"init", "--user", "boss"},
                                               {"init", "--company", "Works"},
                                               {"check", "--port", "1"},
                                               {"serve", "--config", "/nowhere/tavrok.toml"},
                                               {"serve", "--config", file("prot = 1\n")},
                                               {"serve", "--config", file("[serve]\nport = 1\n")},
                                               {"serve", "--config", file("port = \"eighty\"\n")}}) {
        const auto got = parsed(words);
        EXPECT_FALSE(got.runs) << testing::PrintToString(words);
        EXPECT_EQ(got.exit_code, 2) << testing::PrintToString(words);
    }
}

TEST(program, helps_with_each_command) {
    const scratch_database scratch("sqlite");
    std::string told;
    EXPECT_EQ(run_command(scratch.folder(), {"--help"}, {}, "", &told), 0);
    for (const char* command : {"serve", "init", "demo", "check", "version"}) {
        EXPECT_NE(told.find(command), std::string::npos) << command;
        std::string more;
        EXPECT_EQ(run_command(scratch.folder(), {command, "--help"}, {}, "", &more), 0) << command;
        EXPECT_NE(more.find("Usage"), std::string::npos) << more;
    }
}

TEST(program, tells_its_version) {
    const scratch_database scratch("sqlite");
    std::string told;
    EXPECT_EQ(run_command(scratch.folder(), {"version"}, {}, "", &told), 0);
    EXPECT_EQ(told, std::string("tavrok_wmsd ") + TAVROK_VERSION + "\n");
}

TEST(program, tells_failure_and_wrong_usage_apart) {
    const scratch_database scratch("sqlite");
    const std::string& here = scratch.folder();
    std::string said;
    EXPECT_EQ(run_command(here, {"check", "--database", "none.db"}, {}, "", nullptr, &said), 1);
    EXPECT_NE(said.find("there is no database none.db"), std::string::npos) << said;
    EXPECT_FALSE(std::filesystem::exists(here + "/none.db")) << "a check makes nothing";
    EXPECT_EQ(
        run_command(here, {"serve", "--database", "x.db", "--certificate", "no.pem", "--private-key", "no"}),
        1);
    EXPECT_EQ(run_command(here, {"serve", "--database", "/nowhere/x.db"}), 1);
    EXPECT_EQ(run_command(here, {"serve", "--time-zone", "Nowhere/Land"}), 1);
    EXPECT_EQ(run_command(here, {"serve", "--database", "x.db", "--trusted-proxy", "proxy"}), 1);
    EXPECT_EQ(run_command(here, {"init", "--company", "Works", "--user", "boss"}, {}, "\n"), 1);
    EXPECT_EQ(run_command(here, {"serve", "--nonsense"}, {}, "", nullptr, &said), 2);
    EXPECT_NE(said.find("--nonsense"), std::string::npos);
    EXPECT_EQ(run_command(here, {}), 2);
}

TEST(program, follows_the_same_precedence) {
    const scratch_database scratch("sqlite");
    const std::string& here = scratch.folder();
    std::ofstream(here + "/tavrok.toml") << "database = \"file.db\"\nlog-level = \"off\"\n";
    const process::environment both{{"TAVROK_DATABASE", "environment.db"}, {"TAVROK_CONFIG", "tavrok.toml"}};
    const std::vector<std::string> init{"init", "--company", "Works", "--user", "boss", "--password", "x"};
    auto with_flag = init;
    with_flag.insert(with_flag.end(), {"--database", "flag.db"});
    const auto exists = [&](const char* name) { return std::filesystem::exists(here + "/" + name); };
    EXPECT_EQ(run_command(here, with_flag, both), 0);
    EXPECT_TRUE(exists("flag.db") && !exists("environment.db") && !exists("file.db"));
    EXPECT_EQ(run_command(here, init, both), 0);
    EXPECT_TRUE(exists("environment.db") && !exists("file.db"));
    EXPECT_EQ(run_command(here, init, {{"TAVROK_CONFIG", "tavrok.toml"}}), 0);
    EXPECT_TRUE(exists("file.db"));
}

} // namespace tavrok::test
