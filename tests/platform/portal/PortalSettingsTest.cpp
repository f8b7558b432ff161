#include "platform/portal/PortalSettings.h"

#include "platform/portal/PortalBench.h"

#include <QDBusVariant>

namespace velloran::tests {
namespace {

using namespace platform::portal;

const auto appearance = QStringLiteral("org.freedesktop.appearance");
const auto windows = QStringLiteral("org.gnome.desktop.wm.preferences");

class PortalSettingsTest : public PortalBench {
protected:
    [[nodiscard]] const platform::DesktopWishes& wishes() const { return settings.wishes().get(); }

    PortalSettings settings{portal};
};

TEST_F(PortalSettingsTest, TellsNothingWithoutAPortal) {
    EXPECT_EQ(wishes(), platform::DesktopWishes());
}

TEST_F(PortalSettingsTest, TellsWhereTheWindowButtonsAre) {
    bringPortal({{windows, {{"button-layout", "close:"}}}});
    ASSERT_TRUE(until([&] { return wishes().windowButtons == "close:"; }));
    fake->change(windows, "button-layout", "");
    ASSERT_TRUE(until([&] { return wishes().windowButtons == ""; }));
    fake->change(windows, "button-layout", 7);
    EXPECT_TRUE(until([&] { return !wishes().windowButtons; }));
}

TEST_F(PortalSettingsTest, TheNextPortalIsAskedAndFollowed) {
    bringPortal({{appearance, {{"contrast", 1U}}}});
    ASSERT_TRUE(until([&] { return wishes().highContrast; }));
    fake.reset();
    bringPortal({{appearance, {{"contrast", 0U}}}});
    ASSERT_TRUE(until([&] { return !wishes().highContrast; }));
    int changes = 0;
    const Subscription counting = settings.wishes().observeWillChange([&] { ++changes; });
    fake->change(appearance, "reduced-motion", 1U);
    ASSERT_TRUE(until([&] { return wishes().reducedMotion; }));
    settle();
    EXPECT_EQ(changes, 1);
}

TEST_F(PortalSettingsTest, TheNextBusIsFollowed) {
    bringPortal();
    bus.end();
    fake.reset();
    bus.start();
    bringPortal({{appearance, {{"contrast", 1U}}}});
    ASSERT_TRUE(until([&] { return wishes().highContrast; }));
    fake->change(appearance, "reduced-motion", 1U);
    EXPECT_TRUE(until([&] { return wishes().reducedMotion; }));
}

TEST_F(PortalSettingsTest, EachAnswerIsAskedForOnce) {
    bringPortal();
    settle();
    EXPECT_EQ(fake->calls.count("ReadAll"), 1);
}

TEST_F(PortalSettingsTest, NobodyElseIsBelieved) {
    bringPortal();
    settle();
    QDBusMessage lie = QDBusMessage::createSignal("/org/freedesktop/portal/desktop", "org.freedesktop.portal.Settings",
                                                  "SettingChanged");
    lie << appearance << "contrast" << QVariant::fromValue(QDBusVariant(1U));
    sendFromElsewhere(lie);
    EXPECT_FALSE(wishes().highContrast);
}

TEST_F(PortalSettingsTest, WhatComesInOtherTypesIsNotHeard) {
    bringPortal();
    settle();
    const auto told = [](const QVariantList& arguments) {
        QDBusMessage signal = QDBusMessage::createSignal("/org/freedesktop/portal/desktop",
                                                         "org.freedesktop.portal.Settings", "SettingChanged");
        signal.setArguments(arguments);
        return signal;
    };
    sendFromElsewhere(told({QStringList{"a"}, QVariantMap{{"contrast", 1U}}, 1U}));
    sendFromElsewhere(told({appearance, "contrast", QVariantMap{{"contrast", 1U}}}));
    EXPECT_FALSE(wishes().highContrast);
}

} // namespace
} // namespace velloran::tests
