// Clicks as fast as it can until it is killed.

#include "platform/qt/QtEventLoop.h"
#include "platform/x11/X11Platform.h"

#include <QCoreApplication>

#include <iostream>

int main(int argc, char** argv) {
    using namespace velloran::platform;
    const QCoreApplication application(argc, argv);
    qt::QtEventLoop loop;
    const auto connected = x11::X11Platform::connect(loop, {}, {}, argc > 1 ? argv[1] : nullptr);
    if (!connected.ok()) {
        return 1;
    }
    PointerEvents& pointer = connected.value()->pointerEvents();
    std::cout << "clicking" << std::endl;
    // Clicks wait for nothing; the answers keep the server from falling behind.
    while (const auto position = connected.value()->pointerPosition().currentPosition()) {
        for (const MouseEventType type : {MouseEventType::leftMouseDown, MouseEventType::leftMouseUp}) {
            if (const auto event = pointer.makeMouseEvent(type, *position, EventButton::left)) {
                pointer.post(*event);
            }
        }
        pointer.flush();
    }
    return 0;
}
