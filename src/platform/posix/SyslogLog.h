#pragma once

#include "platform/SystemLog.h"

namespace velloran::platform::posix {

/// Writes to the system's log, under the name "velloran", and to standard error. A line break inside a line becomes a
/// blank. Where the system has no log, standard error alone gets the line.
class SyslogLog final : public SystemLog {
public:
    SyslogLog();
    SyslogLog(const SyslogLog&) = delete;
    SyslogLog& operator=(const SyslogLog&) = delete;
    ~SyslogLog() override;

    void write(std::string_view line) override;
};

} // namespace velloran::platform::posix
