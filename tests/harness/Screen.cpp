#include "harness/Screen.h"

#include "base/fatal.h"

#include <QByteArray>

namespace velloran::tests {

namespace {

Screen* theScreen = nullptr;

} // namespace

Screen::Screen() : bus_({"dbus-daemon", "--config-file=" BUS_CONFIGURATION, "--nofork", "--print-address=1"}, false) {
    if (!server_.isUp()) {
        fatalError("The X server or its window manager does not start");
    }
    const auto address = bus_.readLine();
    if (!address) {
        fatalError("The message bus does not start");
    }
    busAddress_ = *address;
    other_ = observer::Server::connect(server_.displayName());
    if (!other_) {
        fatalError("The X server takes no second program");
    }
    user_ = std::make_unique<observer::InputSender>(*other_);
    qputenv("DISPLAY", QByteArray::fromStdString(server_.displayName()));
    qputenv("DBUS_SESSION_BUS_ADDRESS", QByteArray::fromStdString(busAddress_));
    theScreen = this;
}

Screen::~Screen() {
    theScreen = nullptr;
}

Screen& Screen::current() {
    return *theScreen;
}

void Screen::setLayout(const std::string& layout) const {
    if (runProgram({"setxkbmap", "-display", server_.displayName(), layout}) != 0) {
        fatalError("The server takes no layout " + layout);
    }
}

} // namespace velloran::tests
