#include "platform/portal/PortalHotKeys.h"
#include "platform/portal/ShortcutsBench.h"

namespace velloran::tests {
namespace {

using platform::portal::Portal;
using platform::portal::PortalHotKeys;

/// What becomes of the name by which the portal is to know the program.
using PortalHotKeysNameTest = ShortcutsBench;

TEST_F(PortalHotKeysNameTest, RefusedItIsTold) {
    Portal named(session, "app.velloran.Velloran");
    const PortalHotKeys ofNamed(loop, named, {}, nullptr);
    fake.emplace(bus.address(), SettingGroups(), FakePortal::Manner::refuses);
    ASSERT_TRUE(until([&] { return ofNamed.part().get().part != nullptr; }));
    EXPECT_EQ(ofNamed.part().get().limit,
              "This desktop does not know the program by its name, so it may refuse the hotkey: not for you");
    fake->vanish();
    ASSERT_TRUE(until([&] { return ofNamed.part().get().part == nullptr; }));
    fake.emplace(bus.address());
    ASSERT_TRUE(until([&] { return ofNamed.part().get().part != nullptr; }));
    EXPECT_EQ(ofNamed.part().get().limit, "") << "the next one takes it";
}

TEST_F(PortalHotKeysNameTest, APortalOfOldNeedsNone) {
    Portal named(session, "app.velloran.Velloran");
    const PortalHotKeys ofNamed(loop, named, {}, nullptr);
    fake.emplace(bus.address());
    fake->takesNames = false;
    ASSERT_TRUE(until([&] { return ofNamed.part().get().part != nullptr; }));
    EXPECT_EQ(named.nameError(), "no such interface");
    EXPECT_EQ(ofNamed.part().get().limit, "");
}

} // namespace
} // namespace velloran::tests
