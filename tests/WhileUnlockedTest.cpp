#include "whileUnlocked.h"

#include "harness/FakeLock.h"
#include "harness/PrivateBus.h"

#include <QTest>

#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <string>

namespace velloran::tests {
namespace {

class AlwaysTrusted final : public platform::InputTrust {
public:
    bool isTrusted() override { return true; }

    bool requestPrompt(platform::PromptReason /*reason*/) override { return true; }

    void onChanged(std::function<void()> /*changed*/) override {}
};

class WhileUnlockedTest : public testing::Test {
protected:
    WhileUnlockedTest() { qputenv("DBUS_SYSTEM_BUS_ADDRESS", QByteArray::fromStdString(systemBus.address())); }

    ~WhileUnlockedTest() override { qunsetenv("DBUS_SYSTEM_BUS_ADDRESS"); }

    static bool becomes(platform::InputTrust& trust, bool isTrusted) {
        return QTest::qWaitFor([&] { return trust.isTrusted() == isTrusted; }, 10000);
    }

    PrivateBus systemBus;
    FakeLock login{systemBus.address(), QStringLiteral("org.freedesktop.login1"),
                   QStringLiteral("/org/freedesktop/login1/session/_31")};
};

TEST_F(WhileUnlockedTest, TheLoginManagerIsHeardWithASessionBusAndWithout) {
    const PrivateBus sessionBus;
    for (const std::string& session : {sessionBus.address(), std::string()}) {
        login.isLocked = true;
        const auto trust = whileUnlocked(std::make_shared<AlwaysTrusted>(), session);
        EXPECT_TRUE(trust->isTrusted()) << "nobody has said otherwise yet";
        EXPECT_TRUE(becomes(*trust, false)) << session;
        login.isLocked = false;
        login.tell(QStringLiteral("org.freedesktop.DBus.Properties"), QStringLiteral("PropertiesChanged"),
                   {"org.freedesktop.login1.Session", QVariantMap(), QStringList("LockedHint")});
        EXPECT_TRUE(becomes(*trust, true)) << session;
    }
}

TEST_F(WhileUnlockedTest, TheDesktopIsHeardOnTheSessionBus) {
    const PrivateBus sessionBus;
    FakeLock desktop(sessionBus.address(), QStringLiteral("org.gnome.ScreenSaver"),
                     QStringLiteral("/org/gnome/ScreenSaver"));
    desktop.isLocked = true;
    const auto trust = whileUnlocked(std::make_shared<AlwaysTrusted>(), sessionBus.address());
    EXPECT_TRUE(becomes(*trust, false));
}

} // namespace
} // namespace velloran::tests
