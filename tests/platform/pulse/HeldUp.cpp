#include "platform/pulse/HeldUp.h"

#include <cstdint>
#include <filesystem>
#include <fstream>
#include <string>
#include <system_error>

namespace velloran::tests {

std::chrono::nanoseconds heldUp(pid_t process) {
    std::chrono::nanoseconds sum{0};
    std::error_code error;
    const std::filesystem::directory_iterator threads("/proc/" + std::to_string(process) + "/task", error);
    for (const auto& thread : threads) {
        // Time on a processor, time waiting for one, number of times.
        std::ifstream statistics(thread.path() / "schedstat");
        std::int64_t running = 0;
        std::int64_t waiting = 0;
        if (statistics >> running >> waiting) {
            sum += std::chrono::nanoseconds(waiting);
        }
    }
    return sum;
}

} // namespace velloran::tests
