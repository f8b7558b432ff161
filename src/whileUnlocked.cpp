#include "whileUnlocked.h"

#include "platform/TrustWhileUnlocked.h"
#include "platform/bus/ScreenLock.h"
#include "platform/bus/SessionBus.h"

#include <utility>

namespace velloran {

namespace {

/// What the desktop and the login manager tell of the lock of the screen, heard on connections of its own. The login
/// manager needs no session bus, and there are sessions without one.
class LockWatch {
public:
    explicit LockWatch(const std::string& sessionBus)
        : session_({QByteArray::fromStdString(sessionBus), platform::bus::BusState::answers},
                   platform::bus::SessionBus::Start::inBackground),
          system_(platform::bus::ScreenLock::systemBus(), platform::bus::SessionBus::Start::inBackground),
          lock_(session_, system_) {
        QObject::connect(&lock_, &platform::bus::ScreenLock::changed, &lock_,
                         [this](bool isLocked) { isLocked_.set(isLocked); });
    }

    [[nodiscard]] const Published<bool>& isLocked() const { return isLocked_; }

private:
    Published<bool> isLocked_{false};
    platform::bus::SessionBus session_;
    platform::bus::SessionBus system_;
    platform::bus::ScreenLock lock_;
};

} // namespace

std::shared_ptr<platform::InputTrust> whileUnlocked(std::shared_ptr<platform::InputTrust> trust,
                                                    const std::string& sessionBus) {
    const auto watch = std::make_shared<const LockWatch>(sessionBus);
    const std::shared_ptr<const Published<bool>> isLocked(watch, &watch->isLocked());
    return std::make_shared<platform::TrustWhileUnlocked>(std::move(trust), isLocked);
}

} // namespace velloran
