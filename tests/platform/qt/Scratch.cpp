#include "platform/qt/Scratch.h"

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>

namespace velloran::tests {

Scratch::Scratch(bool isInMemory) {
    const char* const memory = "/dev/shm";
    const std::filesystem::path parent =
        isInMemory && access(memory, W_OK) == 0 ? memory : std::filesystem::temp_directory_path();
    std::string name = (parent / "velloran-test-XXXXXX").string();
    folder_ = mkdtemp(name.data());
    chmod(folder_.c_str(), 0777);
}

Scratch::~Scratch() {
    std::error_code ignored;
    std::filesystem::remove_all(folder_, ignored);
}

std::string Scratch::file(const std::string& name) const {
    return folder_ + '/' + name;
}

std::string readFile(const std::string& path) {
    std::ifstream stream(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>()};
}

void writeFile(const std::string& path, const std::string& content) {
    std::ofstream(path, std::ios::binary) << content;
}

void inOrdinaryProcess(const std::function<void()>& work) {
    constexpr uid_t nobody = 65534;
    std::fflush(stdout);
    const pid_t child = fork();
    if (child == 0) {
        if (getuid() == 0 && (setgid(nobody) != 0 || setuid(nobody) != 0)) {
            _exit(2);
        }
        work();
        std::fflush(stdout);
        _exit(testing::Test::HasFailure() ? 1 : 0);
    }
    int status = 0;
    waitpid(child, &status, 0);
    EXPECT_EQ(status, 0);
}

} // namespace velloran::tests
