#pragma once

#include <sys/types.h>

#include <optional>
#include <string>
#include <vector>

namespace velloran::tests {

/// A program that a test runs beside itself. It does not outlive the test, whatever happens to that.
class ChildProcess {
public:
    /// Starts it at once. What it writes to standard output can be read here; its errors go where the test's go, or
    /// nowhere when `isSilent`. A program that cannot be started ends with status 127.
    explicit ChildProcess(std::vector<std::string> command, bool isSilent = true);
    ChildProcess(const ChildProcess&) = delete;
    ChildProcess& operator=(const ChildProcess&) = delete;
    ~ChildProcess();

    [[nodiscard]] pid_t pid() const { return pid_; }

    /// The next line of its output; nothing when it ends, or does not come within ten seconds.
    std::optional<std::string> readLine();

    /// Where its output can be read by other means.
    [[nodiscard]] int output() const { return output_; }

    /// Hands it a line on its standard input.
    void writeLine(const std::string& line) const;

    void sendSignal(int number) const;

    /// Waits for its end: the exit status, or minus the signal that ended it.
    int wait();

private:
    pid_t pid_ = -1;
    int input_ = -1;
    int output_ = -1;
    std::string unread_;
    std::optional<int> status_;
};

/// Runs a program to its end and returns its status as above.
int runProgram(std::vector<std::string> command);

} // namespace velloran::tests
