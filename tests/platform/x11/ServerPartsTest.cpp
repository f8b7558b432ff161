#include "platform/x11/Desktop.h"

#include <memory>
#include <string>
#include <utility>

namespace velloran::tests {

using namespace platform;
using Kind = observer::InputEvent::Kind;

/// Parts of a server that nobody else holds.
class ServerPartsTest : public Desktop {
protected:
    std::shared_ptr<x11::X11Server> connect() {
        auto connected = x11::X11Server::connect(loop, {}, server.displayName().c_str());
        EXPECT_TRUE(connected.ok());
        watched = connected.value();
        return std::move(connected).value();
    }

    std::weak_ptr<x11::X11Server> watched;
};

TEST_F(ServerPartsTest, ClicksWorkAlone) {
    openWindow();
    auto clicks = connect()->pointerEvents();
    for (const MouseEventType type : {MouseEventType::leftMouseDown, MouseEventType::leftMouseUp}) {
        const auto event = clicks->makeMouseEvent(type, {}, EventButton::left);
        ASSERT_TRUE(event);
        clicks->post(*event);
    }
    clicks->flush();
    EXPECT_TRUE(until([this] { return count(Kind::buttonRelease) == 1; }));
    EXPECT_FALSE(watched.expired()) << "the part keeps its server";
    clicks.reset();
    EXPECT_TRUE(watched.expired());
}

TEST_F(ServerPartsTest, PermissionKeepsTheClicksItIsFor) {
    const auto own = connect();
    auto clicks = own->pointerEvents();
    const std::weak_ptr<x11::X11PointerEvents> kept = clicks;
    const auto trust = own->inputTrust(std::move(clicks));
    ASSERT_FALSE(kept.expired());
    EXPECT_TRUE(trust->isTrusted());
}

TEST_F(ServerPartsTest, PositionWorksAlone) {
    user->movePointer({321, 123});
    auto position = connect()->pointerPosition({});
    EXPECT_EQ(position->currentPosition(), (Point{321.0, 123.0}));
    EXPECT_FALSE(watched.expired());
    position.reset();
    EXPECT_TRUE(watched.expired());
}

TEST_F(ServerPartsTest, HotKeysWorkAlone) {
    auto hotKeys = connect()->hotKeys();
    int presses = 0;
    const Subscription handler = hotKeys->installHandler([&presses](const HotKeyEvent*) {
        ++presses;
        return noErr;
    });
    constexpr std::uint32_t f8 = 100;
    const Subscription hotKey = hotKeys->registerHotKey(
        f8, controlModifier, {}, [](const HotKeyAnswer& answer) { EXPECT_EQ(answer.status, noErr); });
    user->tap(f8Key, {controlKey});
    EXPECT_TRUE(until([&presses] { return presses == 1; }));
    EXPECT_FALSE(watched.expired());
    hotKeys.reset();
    EXPECT_TRUE(watched.expired());
}

TEST_F(ServerPartsTest, CharactersWorkAlone) {
    auto characters = connect()->keyCharacters();
    constexpr std::uint32_t letterS = 31;
    EXPECT_EQ(characters->charactersIgnoringModifiers(letterS, false), "s");
    EXPECT_FALSE(watched.expired());
    characters.reset();
    EXPECT_TRUE(watched.expired());
}

} // namespace velloran::tests
