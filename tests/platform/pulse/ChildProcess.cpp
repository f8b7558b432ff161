#include "platform/pulse/ChildProcess.h"

#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <cstdlib>

namespace velloran::tests {

ChildProcess::ChildProcess(const std::vector<std::string>& commandLine, int output, int error) : process_(-1) {
    std::vector<char*> arguments;
    for (const std::string& argument : commandLine) {
        arguments.push_back(const_cast<char*>(argument.c_str()));
    }
    arguments.push_back(nullptr);
    process_ = fork();
    if (process_ == 0) {
        // The test may have other threads: nothing but system calls from here on.
        prctl(PR_SET_PDEATHSIG, SIGKILL);
        if (output >= 0) {
            dup2(output, STDOUT_FILENO);
        }
        if (error >= 0) {
            dup2(error, STDERR_FILENO);
        }
        execvp(arguments.front(), arguments.data());
        _exit(127);
    }
    if (process_ < 0) {
        std::abort();
    }
}

ChildProcess::~ChildProcess() {
    kill();
}

void ChildProcess::signal(int number) const {
    ::kill(process_, number);
}

void ChildProcess::kill() {
    if (process_ > 0) {
        signal(SIGKILL);
        waitpid(process_, nullptr, 0);
        process_ = -1;
    }
}

} // namespace velloran::tests
