#include "ui/theme/DesktopAppearance.h"

#include "harness/FakePortal.h"
#include "platform/portal/PortalSettings.h"

#include <QSignalSpy>
#include <QTest>

#include <gtest/gtest.h>

#include <limits>
#include <optional>

namespace velloran::tests {
namespace {

const auto appearanceGroup = QStringLiteral("org.freedesktop.appearance");
const auto gnomeGroup = QStringLiteral("org.gnome.desktop.interface");
const auto accessGroup = QStringLiteral("org.gnome.desktop.a11y.interface");
const auto plasmaGroup = QStringLiteral("org.kde.kdeglobals.KDE");

struct Shown {
    bool reducedMotion = false;
    bool highContrast = false;
    qreal textScale = 1;

    bool operator==(const Shown&) const = default;
};

class DesktopAppearanceTest : public testing::Test {
protected:
    /// Asks a portal with these settings and waits for its answer, which changes something.
    void askPortalWith(const SettingGroups& settings) {
        portal_.emplace(busAddress(), settings);
        ask();
        ASSERT_TRUE(waitForChange());
    }

    /// Changes a setting that changes what is shown.
    void change(const QString& group, const QString& key, const QVariant& value) {
        QSignalSpy changes(&*appearance_, &DesktopAppearance::changed);
        portal_->change(group, key, value);
        ASSERT_TRUE(changes.wait());
    }

    bool waitForChange() {
        QSignalSpy changes(&*appearance_, &DesktopAppearance::changed);
        return changes.wait();
    }

    [[nodiscard]] Shown shown() const {
        return {appearance_->reducedMotion(), appearance_->highContrast(), appearance_->textScale()};
    }

    [[nodiscard]] static std::string busAddress() { return qgetenv("DBUS_SESSION_BUS_ADDRESS").toStdString(); }

    void ask() {
        settings_.emplace(connection_);
        appearance_.emplace(settings_->wishes());
    }

    platform::bus::SessionBus session_{platform::bus::findSessionBus()};
    platform::portal::Portal connection_{session_};
    std::optional<FakePortal> portal_;
    std::optional<platform::portal::PortalSettings> settings_;
    std::optional<DesktopAppearance> appearance_;
};

TEST_F(DesktopAppearanceTest, StartsPlainAndTakesOverTheAnswer) {
    portal_.emplace(busAddress(), SettingGroups{{appearanceGroup, {{"reduced-motion", 1U}, {"contrast", 1U}}},
                                                {gnomeGroup, {{"text-scaling-factor", 1.25}}}});
    ask();
    EXPECT_EQ(shown(), Shown());
    ASSERT_TRUE(waitForChange());
    EXPECT_EQ(shown(), (Shown{true, true, 1.25}));
}

TEST_F(DesktopAppearanceTest, FollowsChanges) {
    askPortalWith({{appearanceGroup, {{"reduced-motion", 1U}}}});
    change(appearanceGroup, "reduced-motion", 0U);
    EXPECT_EQ(shown(), Shown());
    change(appearanceGroup, "contrast", 1U);
    EXPECT_EQ(shown(), (Shown{false, true, 1}));
    change(gnomeGroup, "text-scaling-factor", 1.5);
    EXPECT_EQ(shown(), (Shown{false, true, 1.5}));
    change(appearanceGroup, "contrast", 0U);
    EXPECT_EQ(shown(), (Shown{false, false, 1.5}));
}

TEST_F(DesktopAppearanceTest, KnowsTheSettingsOfOlderDesktops) {
    askPortalWith({{gnomeGroup, {{"enable-animations", false}}}, {accessGroup, {{"high-contrast", true}}}});
    EXPECT_EQ(shown(), (Shown{true, true, 1}));
    change(gnomeGroup, "enable-animations", true);
    EXPECT_EQ(shown(), (Shown{false, true, 1}));
    change(accessGroup, "high-contrast", false);
    change(plasmaGroup, "AnimationDurationFactor", "0");
    EXPECT_EQ(shown(), (Shown{true, false, 1}));
    change(plasmaGroup, "AnimationDurationFactor", "0.5");
    EXPECT_EQ(shown(), Shown());
}

TEST_F(DesktopAppearanceTest, UnwrapsWhatIsWrappedTwice) {
    askPortalWith({{appearanceGroup, {{"contrast", QVariant::fromValue(QDBusVariant(1U))}}}});
    EXPECT_EQ(shown(), (Shown{false, true, 1}));
}

TEST_F(DesktopAppearanceTest, TakesNoValueOfAnotherKind) {
    askPortalWith({{appearanceGroup, {{"contrast", 1U}, {"reduced-motion", "1"}}},
                   {gnomeGroup, {{"enable-animations", 0U}, {"text-scaling-factor", "2"}}}});
    EXPECT_EQ(shown(), (Shown{false, true, 1}));
}

TEST_F(DesktopAppearanceTest, KeepsTheTextReadable) {
    askPortalWith({{gnomeGroup, {{"text-scaling-factor", 100.0}}}});
    EXPECT_EQ(shown().textScale, 3);
    change(gnomeGroup, "text-scaling-factor", 0.0);
    EXPECT_EQ(shown().textScale, 0.5);
    change(gnomeGroup, "text-scaling-factor", 1.0);
    change(gnomeGroup, "text-scaling-factor", std::numeric_limits<double>::quiet_NaN());
    EXPECT_EQ(shown().textScale, 0.5);
}

TEST_F(DesktopAppearanceTest, AsksAPortalThatComesLater) {
    ask();
    // The bus is asked before the portal is there.
    portal_.emplace(busAddress(), SettingGroups{{appearanceGroup, {{"contrast", 1U}}}});
    ASSERT_TRUE(waitForChange());
    EXPECT_EQ(shown(), (Shown{false, true, 1}));
}

TEST_F(DesktopAppearanceTest, ASilentPortalHoldsNothingUp) {
    portal_.emplace(busAddress(), SettingGroups{{appearanceGroup, {{"contrast", 1U}}}},
                    FakePortal::Manner::staysSilent);
    ask();
    ASSERT_TRUE(QTest::qWaitFor([this] { return portal_->calls.contains("ReadAll"); }));
    EXPECT_EQ(shown(), Shown());
    // Changes are heard all the same.
    change(appearanceGroup, "reduced-motion", 1U);
    EXPECT_EQ(shown(), (Shown{true, false, 1}));
}

} // namespace
} // namespace velloran::tests
