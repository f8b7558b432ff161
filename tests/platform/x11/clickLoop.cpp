// Clicks as fast as it can until it is killed.

#include "platform/qt/QtEventLoop.h"
#include "platform/x11/X11Server.h"

#include <QCoreApplication>

#include <iostream>

int main(int argc, char** argv) {
    using namespace velloran::platform;
    const QCoreApplication application(argc, argv);
    qt::QtEventLoop loop;
    const auto connected = x11::X11Server::connect(loop, {}, argc > 1 ? argv[1] : nullptr);
    if (!connected.ok()) {
        return 1;
    }
    const auto pointer = connected.value()->pointerEvents();
    const auto position = connected.value()->pointerPosition({});
    std::cout << "clicking" << std::endl;
    // Clicks wait for nothing; the answers keep the server from falling behind.
    while (const auto place = position->currentPosition()) {
        for (const MouseEventType type : {MouseEventType::leftMouseDown, MouseEventType::leftMouseUp}) {
            if (const auto event = pointer->makeMouseEvent(type, *place, EventButton::left)) {
                pointer->post(*event);
            }
        }
        pointer->flush();
    }
    return 0;
}
