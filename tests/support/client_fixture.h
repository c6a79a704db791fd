#pragma once
#include <gtest/gtest.h>

#include "support/scripted_server.h"

/** A test of the client against a scripted service: g_http is pointed at it, with nobody logged in. */
class client_test : public testing::Test {
protected:
    client_test();
    ~client_test() override;

    scripted_server server;

private:
    QString former_base_url;
};
