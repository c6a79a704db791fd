#pragma once

#include <optional>
#include <string>
#include <vector>

namespace bench {

enum class relation { at_least, at_most };

struct limit {
    relation side;
    double value;
};

/** One line of the table: what was measured, out of how many samples, beside its limit if it has one. */
struct figure {
    std::string what;
    double measured{};
    std::string unit;
    std::size_t samples{};
    std::optional<limit> bound;
    std::string remark;

    bool kept() const;
};

/** Collects the figures of one program and tells each on the error stream as it comes. */
class figures {
public:
    void add(figure measured);
    /** Writes them as a JSON array. Throws when the file cannot be written. */
    void write(const std::string& path) const;

private:
    std::vector<figure> m_all;
};

/** Reads what figures::write wrote. */
std::vector<figure> read_figures(const std::string& path);

/** The JSON array of these figures, one a line. */
std::string to_json(const std::vector<figure>& all);

/** "12,345 /s", "1.84 ms": as many places as the size of the number asks for. */
std::string readable(double number, const std::string& unit);

} // namespace bench
