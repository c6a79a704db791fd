#include "support/client_fixture.h"

#include "net/http.h"

client_test::client_test() : former_base_url(g_http.base_url) {
    g_http.base_url = server.base_url();
    g_http.permissions.clear();
    g_http.rights.clear();
    g_http.current_user = struct_user();
}

client_test::~client_test() {
    g_http.base_url = former_base_url;
}
