#include <memory>

#include "api/modules/modules.h"
#include "domain/accounts.h"

namespace tavrok::api {

namespace {

/** The quiet second login of a client whose session has ended. It looks at the cookie alone, not at the body.
 */
void log_in_again(const services& with, const std::shared_ptr<staged_request>& one) {
    auto result = std::make_shared<domain::relogin_result>();
    with.database.write(
        [&with, one, result](store::connection& db) {
            *result = domain::relogin(db, std::string(one->values.text("username")),
                                      std::string(one->values.text("password")), one->origin.peer,
                                      with.clock(), with.options.sessions);
        },
        [one, result](std::exception_ptr failure) {
            const bool accepted = !failure && result->accepted;
            one->finish({accepted ? "1" : "0", accepted ? result->token : std::string(),
                         accepted  ? ""
                         : failure ? "the database failed"
                                   : "no such secret"});
        });
}

} // namespace

void add_wms(registry& to, const services& with) {
    to.add({.module = "wms",
            .action = "check_login",
            .keys = {text_key("username", presence::always), text_key("password", presence::always)},
            .answer = form::none,
            .allowed = {.needs = access::who::open},
            .work = staged_work{
                [&with](const std::shared_ptr<staged_request>& one) { log_in_again(with, one); }}});
}

} // namespace tavrok::api
