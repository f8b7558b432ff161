#include "platform/portal/remoteControl.h"

#include <utility>

namespace velloran::platform::portal {

namespace {

std::string limitOf(uint version, const QString& nameError) {
    if (version < firstThatRemembers) {
        return "This desktop remembers no permission to click: it may ask at every start.";
    }
    if (!nameError.isEmpty()) {
        return "This desktop does not know the program by its name, so it may ask for the permission to click at "
               "every start: " +
               nameError.toStdString();
    }
    return {};
}

} // namespace

Desktop withoutRemoteControl(const std::string& why) {
    Desktop desktop;
    desktop.clicks = {nullptr, why, why};
    desktop.trust.reason = "Nobody can be asked for the permission to click.";
    return desktop;
}

Desktop withRemoteControl(std::shared_ptr<PointerEvents> events, std::shared_ptr<InputTrust> trust, uint version,
                          const QString& nameError) {
    Desktop desktop;
    desktop.clicks = {std::move(events), "Input is posted through the desktop's portal.", limitOf(version, nameError)};
    desktop.trust = {std::move(trust), "The desktop asks its user for the permission to click.", {}};
    return desktop;
}

} // namespace velloran::platform::portal
