#include "DesktopBackend.h"

#include "platform/SessionKind.h"
#include "keys/DefaultKeyCharacters.h"
#include "platform/qt/monitors.h"
#include "platform/unavailable/UnavailablePlatform.h"
#include "platform/x11/X11KeyCharacters.h"
#include "platform/x11/X11Platform.h"

#include <string>
#include <utility>

namespace velloran {

namespace {

class X11Backend final : public DesktopBackend {
public:
    explicit X11Backend(std::unique_ptr<platform::x11::X11Platform> x11)
        : x11_(std::move(x11)), keyCharacters_(x11_->keyboard()) {}

    platform::PointerEvents& pointerEvents() override { return x11_->pointerEvents(); }

    platform::PointerPosition& pointerPosition() override { return x11_->pointerPosition(); }

    platform::InputTrust& inputTrust() override { return x11_->inputTrust(); }

    platform::HotKeys& hotKeys() override { return x11_->hotKeys(); }

    platform::KeyCharacters& keyCharacters() override { return keyCharacters_; }

    [[nodiscard]] DesktopLimits limits() const override { return {}; }

private:
    std::unique_ptr<platform::x11::X11Platform> x11_;
    platform::x11::X11KeyCharacters keyCharacters_;
};

class UnavailableBackend final : public DesktopBackend {
public:
    UnavailableBackend(platform::SystemLog& log, const std::string& reason)
        : unavailable_(log, reason),
          limits_{QString::fromStdString(reason), QStringLiteral("The global hotkey does not work here."),
                  QStringLiteral("The pointer's position is not known here, so the still-mouse rule never lets "
                                 "a click through.")} {}

    platform::PointerEvents& pointerEvents() override { return unavailable_.pointerEvents(); }

    platform::PointerPosition& pointerPosition() override { return unavailable_.pointerPosition(); }

    platform::InputTrust& inputTrust() override { return unavailable_.inputTrust(); }

    platform::HotKeys& hotKeys() override { return unavailable_.hotKeys(); }

    platform::KeyCharacters& keyCharacters() override { return keyCharacters_; }

    [[nodiscard]] DesktopLimits limits() const override { return limits_; }

private:
    platform::unavailable::UnavailablePlatform unavailable_;
    keys::DefaultKeyCharacters keyCharacters_;
    DesktopLimits limits_;
};

} // namespace

std::unique_ptr<DesktopBackend> makeDesktopBackend(EventLoop& loop, platform::SystemLog& log,
                                                   std::function<void()> onServerLost) {
    const platform::BackendChoice choice = platform::chooseBackend(platform::processEnvironment);
    if (choice.backend == platform::Backend::unavailable) {
        return std::make_unique<UnavailableBackend>(log, choice.reason);
    }
    auto x11 = platform::x11::X11Platform::connect(loop, std::move(onServerLost), [](platform::Point pixels) {
        return platform::qt::pointsFromPixels(pixels, platform::qt::currentMonitors());
    });
    if (!x11) {
        return std::make_unique<UnavailableBackend>(log, "Input cannot be posted: " + x11.error().message);
    }
    return std::make_unique<X11Backend>(std::move(x11).value());
}

} // namespace velloran
