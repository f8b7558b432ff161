#pragma once

#include <set>
#include <string>
#include <string_view>

namespace velloran::platform {

/// The system's log. Main thread.
class SystemLog {
public:
    SystemLog() = default;
    SystemLog(const SystemLog&) = delete;
    SystemLog& operator=(const SystemLog&) = delete;
    virtual ~SystemLog() = default;

    /// Writes one line.
    virtual void write(std::string_view line) = 0;

    /// Writes one line, unless this has written it before.
    void writeOnce(const std::string& line) {
        if (once_.insert(line).second) {
            write(line);
        }
    }

private:
    std::set<std::string> once_;
};

} // namespace velloran::platform
