#include "platform/waylandwindow/mouse.h"

#include <QCoreApplication>
#include <QGuiApplication>
#include <QPointingDevice>
#include <qpa/qwindowsysteminterface.h>

namespace velloran::platform::waylandwindow {

namespace {

/// As the toolkit numbers one that it makes itself.
constexpr qint64 systemId = 1;
constexpr int buttonCount = 3;

} // namespace

void ensureMouse() {
    using Device = QInputDevice::DeviceType;
    if (!QGuiApplication::platformName().startsWith(QLatin1String("wayland")) ||
        QPointingDevice::primaryPointingDevice()->type() == Device::Mouse) {
        return;
    }
    using Capability = QInputDevice::Capability;
    const QInputDevice::Capabilities capabilities = Capability::Position | Capability::Scroll | Capability::Hover;
    auto* const mouse =
        new QPointingDevice(QStringLiteral("mouse"), systemId, Device::Mouse, QPointingDevice::PointerType::Generic,
                            capabilities, 1, buttonCount, {}, {}, QCoreApplication::instance());
    QWindowSystemInterface::registerInputDevice(mouse);
}

} // namespace velloran::platform::waylandwindow
