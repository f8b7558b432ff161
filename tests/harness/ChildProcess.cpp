#include "harness/ChildProcess.h"

#include <fcntl.h>
#include <poll.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <csignal>
#include <utility>

namespace velloran::tests {

namespace {

constexpr int patienceInMilliseconds = 10'000;
constexpr int cannotStart = 127;

struct Pipe {
    int readEnd = -1;
    int writeEnd = -1;
};

Pipe makePipe() {
    std::array<int, 2> ends{-1, -1};
    // A pipe that cannot be made shows as a child that says nothing.
    [[maybe_unused]] const int made = pipe2(ends.data(), O_CLOEXEC);
    return {ends[0], ends[1]};
}

} // namespace

ChildProcess::ChildProcess(std::vector<std::string> command, bool isSilent) {
    const Pipe in = makePipe();
    const Pipe out = makePipe();
    std::vector<char*> arguments;
    for (std::string& argument : command) {
        arguments.push_back(argument.data());
    }
    arguments.push_back(nullptr);
    const pid_t parent = getpid();
    pid_ = fork();
    if (pid_ == 0) {
        prctl(PR_SET_PDEATHSIG, SIGKILL);
        if (getppid() != parent) {
            _exit(cannotStart);
        }
        std::signal(SIGPIPE, SIG_DFL);
        dup2(in.readEnd, STDIN_FILENO);
        dup2(out.writeEnd, STDOUT_FILENO);
        if (isSilent) {
            dup2(open("/dev/null", O_WRONLY | O_CLOEXEC), STDERR_FILENO);
        }
        execvp(arguments.front(), arguments.data());
        _exit(cannotStart);
    }
    close(in.readEnd);
    close(out.writeEnd);
    input_ = in.writeEnd;
    output_ = out.readEnd;
}

ChildProcess::~ChildProcess() {
    if (!status_) {
        sendSignal(SIGKILL);
        wait();
    }
    close(input_);
    close(output_);
}

std::optional<std::string> ChildProcess::readLine() {
    while (true) {
        if (const std::size_t end = unread_.find('\n'); end != std::string::npos) {
            std::string line = unread_.substr(0, end);
            unread_.erase(0, end + 1);
            return line;
        }
        pollfd descriptor{output_, POLLIN, 0};
        std::array<char, 4096> bytes{};
        const bool canRead = poll(&descriptor, 1, patienceInMilliseconds) > 0;
        const ssize_t count = canRead ? read(output_, bytes.data(), bytes.size()) : 0;
        if (count <= 0) {
            return std::nullopt;
        }
        unread_.append(bytes.data(), static_cast<std::size_t>(count));
    }
}

void ChildProcess::writeLine(const std::string& line) const {
    const std::string text = line + '\n';
    [[maybe_unused]] const ssize_t count = write(input_, text.data(), text.size());
}

void ChildProcess::sendSignal(int number) const {
    if (pid_ > 0 && !status_) {
        kill(pid_, number);
    }
}

int ChildProcess::wait() {
    if (!status_) {
        int status = 0;
        if (waitpid(pid_, &status, 0) != pid_) {
            status_ = cannotStart;
        } else {
            status_ = WIFEXITED(status) ? WEXITSTATUS(status) : -WTERMSIG(status);
        }
    }
    return *status_;
}

int runProgram(std::vector<std::string> command) {
    return ChildProcess(std::move(command)).wait();
}

} // namespace velloran::tests
