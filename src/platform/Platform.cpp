#include "platform/Platform.h"

#include "base/fatal.h"

namespace velloran::platform {

namespace {

const Platform* installed = nullptr;

} // namespace

const Platform& Platform::current() {
    if (installed == nullptr) {
        fatalError("No platform is installed");
    }
    return *installed;
}

PlatformInstallation::PlatformInstallation(const Platform& platform) : platform_(platform) {
    if (installed != nullptr) {
        fatalError("A platform is installed already");
    }
    installed = &platform_;
}

PlatformInstallation::~PlatformInstallation() {
    installed = nullptr;
}

} // namespace velloran::platform
