#pragma once

#include <sys/types.h>

#include <chrono>
#include <map>
#include <optional>
#include <string>
#include <vector>

namespace tavrok::test {

/** The program under test as a process of its own. It is killed with the object, if it still runs then. */
class process {
public:
    using environment = std::map<std::string, std::string>;
    /** Starts it in `folder`, where its stdout and stderr are kept as well. Nothing of TAVROK_... is
     * inherited. */
    process(const std::string& folder, const std::vector<std::string>& arguments,
            const environment& more = {}, const std::string& input = "");
    ~process();
    process(const process&) = delete;
    process& operator=(const process&) = delete;

    void signal(int number) const;
    /** The exit code; nothing where it does not end in time, 128 + n where signal n ended it. */
    std::optional<int> exit_code(std::chrono::milliseconds within);
    /** The content of a file as soon as it is there and not empty; "" where the process ends or time does. */
    std::string wait_for_file(const std::string& path, std::chrono::milliseconds within);
    /** True as soon as the text stands in what it said on stderr. */
    bool says(const std::string& text, std::chrono::milliseconds within);
    std::string said() const;
    std::string told() const; /**< what it wrote to stdout */
    long resident_kib() const;

private:
    bool ended(std::chrono::milliseconds within);

    std::string m_out;
    std::string m_err;
    pid_t m_id{-1};
    int m_handle{-1};
    std::optional<int> m_code;
};

} // namespace tavrok::test
