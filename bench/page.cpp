#include "page.h"

#include <fstream>
#include <sstream>
#include <stdexcept>

namespace bench {
namespace {

const std::string begin_mark = "<!-- figures -->\n";
const std::string end_mark = "<!-- end of figures -->\n";

std::string content_of(const std::string& path) {
    std::ifstream file(path);
    if (!file) throw std::runtime_error("cannot read " + path);
    std::ostringstream text;
    text << file.rdbuf();
    return text.str();
}

class bounds {
public:
    explicit bounds(const std::string& path) {
        std::istringstream lines(content_of(path));
        for (std::string line; std::getline(lines, line);) {
            const auto bar = line.find(" | ");
            if (line.empty() || line.front() == '#' || bar == std::string::npos) continue;
            m_known.emplace_back(line.substr(0, bar), line.substr(bar + 3));
        }
    }

    const std::string& of(const std::string& what) const {
        for (const auto& [words, sentence] : m_known)
            if (what.find(words) != std::string::npos) return sentence;
        throw std::runtime_error("the file of bounds does not say what bounds: " + what);
    }

private:
    std::vector<std::pair<std::string, std::string>> m_known;
};

/** A figure of one database or of none, beside the same of the other one. */
struct line {
    std::string what;
    const figure* first{};      /**< SQLite's, or the only one */
    const figure* postgresql{}; /**< none where it was not measured there */
};

std::string value_of(const figure* one) {
    if (one == nullptr) return "";
    return readable(one->measured, one->unit) + (one->kept() ? "" : " **over**");
}

std::string limit_of(const figure& one) {
    if (!one.bound) return "";
    return (one.bound->side == relation::at_least ? "at least " : "at most ") +
           readable(one.bound->value, one.unit);
}

std::vector<line> lines_of(const std::vector<figure>& all) {
    const std::string ours = "SQLite: ";
    const std::string theirs = "PostgreSQL: ";
    std::vector<line> lines;
    for (const figure& one : all) {
        if (one.what.rfind(theirs, 0) != 0) {
            const bool prefixed = one.what.rfind(ours, 0) == 0;
            lines.push_back({prefixed ? one.what.substr(ours.size()) : one.what, &one, nullptr});
            continue;
        }
        const std::string name = one.what.substr(theirs.size());
        auto at = lines.begin();
        while (at != lines.end() && at->what != name)
            ++at;
        if (at == lines.end()) throw std::runtime_error("measured on PostgreSQL alone: " + name);
        at->postgresql = &one;
    }
    return lines;
}

} // namespace

std::string markdown(const std::vector<figure>& all, const std::string& bounds_path) {
    const bounds known(bounds_path);
    std::string text =
        "| what | measured, SQLite | PostgreSQL | limit | remark | what bounds it |\n"
        "| --- | --- | --- | --- | --- | --- |\n";
    for (const line& one : lines_of(all)) {
        text += "| " + one.what + " | " + value_of(one.first) + " | " + value_of(one.postgresql) + " | ";
        text += limit_of(*one.first) + " | " + one.first->remark + " | " + known.of(one.first->what) + " |\n";
    }
    return text;
}

void replace_figures(const std::string& page_path, const std::string& text) {
    std::string page = content_of(page_path);
    const auto begin = page.find(begin_mark);
    const auto end = page.find(end_mark);
    if (begin == std::string::npos || end == std::string::npos || end < begin)
        throw std::runtime_error(page_path + " has no place for the figures");
    page.replace(begin + begin_mark.size(), end - begin - begin_mark.size(), "\n" + text + "\n");
    std::ofstream file(page_path);
    file << page;
    file.flush();
    if (!file) throw std::runtime_error("cannot write " + page_path);
}

} // namespace bench
