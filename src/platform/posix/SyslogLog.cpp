#include "platform/posix/SyslogLog.h"

#include <syslog.h>
#include <unistd.h>

#include <algorithm>
#include <string>

namespace velloran::platform::posix {

SyslogLog::SyslogLog() {
    openlog("velloran", LOG_PID, LOG_USER);
}

SyslogLog::~SyslogLog() {
    closelog();
}

void SyslogLog::write(std::string_view line) {
    std::string text(line);
    std::replace(text.begin(), text.end(), '\n', ' ');
    syslog(LOG_NOTICE, "%s", text.c_str());
    text += '\n';
    // In one piece, so that lines of other processes on the same terminal do not mix with it. There is nobody left to
    // tell of a failure.
    [[maybe_unused]] const ssize_t written = ::write(STDERR_FILENO, text.data(), text.size());
}

} // namespace velloran::platform::posix
