#include "platform/qt/FailingDisk.h"

#include <dlfcn.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <cerrno>

namespace velloran::tests {

namespace {

std::atomic<int> errorNow{0};
std::atomic<std::int64_t> roomNow{FailingDisk::everything};

bool isFile(int descriptor) {
    struct stat status {};

    return fstat(descriptor, &status) == 0 && S_ISREG(status.st_mode);
}

/// How many of the bytes are taken; -1 for none, with the reason in `errno`.
std::int64_t taken(int descriptor, std::int64_t size) {
    if (roomNow == FailingDisk::everything || !isFile(descriptor)) {
        return size;
    }
    const std::int64_t room = roomNow;
    if (room == 0 && size > 0) {
        errno = errorNow;
        return -1;
    }
    const std::int64_t fitting = std::min(size, room);
    roomNow = room - fitting;
    return fitting;
}

} // namespace

FailingDisk::FailingDisk(int error, std::int64_t room) {
    errorNow = error;
    roomNow = room;
}

FailingDisk::~FailingDisk() {
    errorNow = 0;
    roomNow = everything;
}

bool FailingDisk::keeps() {
    if (errorNow == 0 || roomNow != everything) {
        return true;
    }
    errno = errorNow;
    return false;
}

} // namespace velloran::tests

// The name is the system's.
extern "C" ssize_t write(int descriptor, const void* bytes, size_t size) {
    static const auto real = reinterpret_cast<ssize_t (*)(int, const void*, size_t)>(dlsym(RTLD_NEXT, "write"));
    const std::int64_t fitting = velloran::tests::taken(descriptor, static_cast<std::int64_t>(size));
    return fitting < 0 ? -1 : real(descriptor, bytes, static_cast<size_t>(fitting));
}
