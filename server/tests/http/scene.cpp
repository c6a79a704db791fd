#include "scene.h"

#include <spdlog/sinks/base_sink.h>
#include <stdlib.h>

#include <filesystem>
#include <stdexcept>
#include <thread>

namespace tavrok::test {

namespace {

class list_sink : public spdlog::sinks::base_sink<std::mutex> {
public:
    explicit list_sink(std::shared_ptr<awaited<std::string>> where) : m_where(std::move(where)) {}

protected:
    void sink_it_(const spdlog::details::log_msg& message) override {
        m_where->put(std::string(message.payload.data(), message.payload.size()));
    }
    void flush_() override {}

private:
    std::shared_ptr<awaited<std::string>> m_where;
};

} // namespace

void echo_handler::handle(http::request incoming, http::respond answer) {
    const http::request copy = incoming;
    if (copy.path == "bound") copy.outcome->bind();
    if (copy.path == "hold" || copy.path == "bound") {
        m_held.put(answer);
    } else if (copy.path != "throw" && copy.path != "drop") {
        http::response given;
        given.body = copy.path + "|" + copy.body;
        if (copy.path == "login") given.set_cookie = "0123abcd";
        if (copy.path == "large") given.body = std::string(8000, 'x');
        given.unknown = copy.path == "unknown";
        given.on_sent = [this](bool whole) { sent.put(whole); };
        answer(std::move(given));
    }
    seen.put(std::move(incoming));
    if (copy.path == "throw") throw std::runtime_error("as asked for");
}

void echo_handler::reject(http::request incoming, http::rejection why, http::respond answer) {
    rejected.put(why);
    if (incoming.path == "throw") throw std::runtime_error("again");
    http::response given;
    given.body = std::string("0");
    answer(std::move(given));
}

void echo_handler::answer_held(std::size_t count, const std::string& body) {
    const auto held = m_held.wait(count);
    if (held.size() < count) throw std::runtime_error("no such request came");
    http::response given;
    given.body = body;
    given.on_sent = [this](bool whole) { sent.put(whole); };
    held.at(count - 1)(std::move(given));
}

scratch_directory::scratch_directory() : m_path(std::filesystem::temp_directory_path() / "wmsd_XXXXXX") {
    if (::mkdtemp(m_path.data()) == nullptr) throw std::runtime_error("no scratch directory");
}

scratch_directory::~scratch_directory() {
    std::error_code ignored;
    std::filesystem::remove_all(m_path, ignored);
}

scene::scene(const change& changed)
    : certificate{files.file("certificate.pem"), files.file("key.pem")},
      log(std::make_shared<awaited<std::string>>()),
      handler(std::make_shared<echo_handler>()) {
    http::make_certificate_if_absent(certificate);
    http::settings how;
    how.certificate = certificate;
    how.log = std::make_shared<spdlog::logger>("test", std::make_shared<list_sink>(log));
    how.bounds.requests_per_second = 0;
    how.bounds.connections_per_address = 1024;
    if (changed) changed(how);
    server = std::make_unique<http::server>(how, handler);
    server->start();
}

bool scene::reaches(const http::counters::count& figure, std::uint64_t least) const {
    const auto until = std::chrono::steady_clock::now() + patience;
    while (figure < least && std::chrono::steady_clock::now() < until)
        std::this_thread::yield();
    return figure >= least;
}

} // namespace tavrok::test
