#include "platform/qt/HeldDisk.h"

#include "platform/qt/FailingDisk.h"

#include <sys/stat.h>
#include <unistd.h>

#include <chrono>
#include <condition_variable>
#include <filesystem>
#include <mutex>
#include <string>

namespace velloran::tests {

namespace {

/// Nobody waits that long but in a test that fails.
constexpr std::chrono::seconds forEver{20};

struct Disk {
    std::mutex mutex;
    std::condition_variable changed;
    bool isHeld = false;
    bool gaveUp = false;
    int waiting = 0;
    int writes = 0;
    /// The file that it was asked to keep last: asked again it is still one. The next one is made while this one is
    /// there.
    ino_t last = 0;
};

Disk& disk() {
    static Disk disk;
    return disk;
}

int keep(int descriptor) {
    const auto name = std::filesystem::read_symlink("/proc/self/fd/" + std::to_string(descriptor)).string();

    struct stat file {};

    fstat(descriptor, &file);
    std::unique_lock lock(disk().mutex);
    if (!name.ends_with(".lock") && file.st_ino != disk().last) {
        disk().last = file.st_ino;
        ++disk().writes;
    }
    ++disk().waiting;
    disk().changed.notify_all();
    if (!disk().changed.wait_for(lock, forEver, [] { return !disk().isHeld; })) {
        disk().gaveUp = true;
        disk().isHeld = false;
    }
    --disk().waiting;
    return FailingDisk::keeps() ? 0 : -1;
}

} // namespace

HeldDisk::HeldDisk() {
    const std::lock_guard lock(disk().mutex);
    disk().isHeld = true;
    disk().gaveUp = false;
    disk().writes = 0;
    disk().last = 0;
}

HeldDisk::~HeldDisk() {
    release();
}

// A member, because it ends what the object began.
// NOLINTNEXTLINE(readability-convert-member-functions-to-static)
void HeldDisk::release() {
    const std::lock_guard lock(disk().mutex);
    disk().isHeld = false;
    disk().changed.notify_all();
}

// NOLINTNEXTLINE(readability-convert-member-functions-to-static)
bool HeldDisk::waitUntilAsked() {
    std::unique_lock lock(disk().mutex);
    return disk().changed.wait_for(lock, forEver, [] { return disk().waiting > 0; });
}

// NOLINTNEXTLINE(readability-convert-member-functions-to-static)
bool HeldDisk::holds() const {
    const std::lock_guard lock(disk().mutex);
    return !disk().gaveUp;
}

// NOLINTNEXTLINE(readability-convert-member-functions-to-static)
int HeldDisk::writes() const {
    const std::lock_guard lock(disk().mutex);
    return disk().writes;
}

} // namespace velloran::tests

// The names are the system's.
extern "C" {
int fdatasync(int descriptor) {
    return velloran::tests::keep(descriptor);
}

int fsync(int descriptor) {
    return velloran::tests::keep(descriptor);
}
}
