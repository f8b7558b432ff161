#pragma once

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
};

} // namespace velloran::platform
