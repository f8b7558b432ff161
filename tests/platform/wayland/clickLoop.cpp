// Clicks in bursts at the compositor that is named, until somebody kills it. Without a pause the windows that are
// clicked would be thrown out: compositors do not wait for clients that read too slowly.

#include "platform/qt/QtEventLoop.h"
#include "platform/wayland/VirtualPointer.h"
#include "platform/wayland/clicks.h"

#include <QCoreApplication>

#include <functional>
#include <iostream>

int main(int argc, char** argv) {
    const QCoreApplication application(argc, argv);
    velloran::platform::qt::QtEventLoop loop;
    velloran::platform::wayland::VirtualPointer pointer(loop, argv[1]);
    const std::function<void()> clickOn = [&] {
        for (int i = 0; i < 20; ++i) {
            velloran::tests::click(pointer.pointerEvents());
        }
        loop.callAfter(velloran::nanosecondsPerSecond / 100, clickOn);
    };
    pointer.onChanged([&] {
        std::cout << "clicking" << std::endl;
        clickOn();
    });
    return QCoreApplication::exec();
}
