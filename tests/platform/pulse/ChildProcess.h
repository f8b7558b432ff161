#pragma once

#include <sys/types.h>

#include <string>
#include <vector>

namespace velloran::tests {

/// A program that runs beside the test and ends with it, whatever happens to the test.
class ChildProcess {
public:
    /// Starts the program, with standard output and standard error going to these descriptors (-1: as the test's own).
    explicit ChildProcess(const std::vector<std::string>& commandLine, int output = -1, int error = -1);
    ChildProcess(const ChildProcess&) = delete;
    ChildProcess& operator=(const ChildProcess&) = delete;
    /// Kills it.
    ~ChildProcess();

    [[nodiscard]] pid_t id() const { return process_; }

    void signal(int number) const;

    /// Kills it and waits until it is gone.
    void kill();

private:
    pid_t process_;
};

} // namespace velloran::tests
