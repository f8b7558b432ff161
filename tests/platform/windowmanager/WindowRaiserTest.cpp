#include "platform/windowmanager/WindowRaiser.h"

#include <QGuiApplication>
#include <QWindow>

#include <gtest/gtest.h>

namespace velloran::tests {

using platform::windowmanager::raiseWindow;

/// The window system here takes no tokens, as some compositors do not.
TEST(WindowRaiserTest, NothingStartedLaterFindsTheToken) {
    QWindow window;
    platform::bus::ActivationToken token;
    token.wayland = "of-the-launcher";
    raiseWindow(window, token);
    EXPECT_TRUE(window.isVisible());
    EXPECT_FALSE(qEnvironmentVariableIsSet("XDG_ACTIVATION_TOKEN"));
    raiseWindow(window, {});
    EXPECT_FALSE(qEnvironmentVariableIsSet("XDG_ACTIVATION_TOKEN"));
}

} // namespace velloran::tests

int main(int argc, char** argv) {
    testing::InitGoogleTest(&argc, argv);
    qputenv("QT_QPA_PLATFORM", "minimal");
    const QGuiApplication application(argc, argv);
    return RUN_ALL_TESTS();
}
