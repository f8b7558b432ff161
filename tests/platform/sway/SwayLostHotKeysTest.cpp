#include "platform/sway/SwayHotKeysTest.h"

#include "platform/sway/SocketProxy.h"

#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <cerrno>
#include <memory>
#include <optional>
#include <vector>

namespace velloran::tests {

/// A sway that lives on while the connections to it do not.
class SwayLostHotKeysTest : public SwayHotKeysTest {
protected:
    void SetUp() override {
        SwayHotKeysTest::SetUp();
        proxy = std::make_unique<SocketProxy>(ownSway->commandSocket());
        connect(proxy->path());
    }

    void TearDown() override {
        hotKeys.reset();
        proxy.reset();
    }

    /// Types the key until it fires again.
    bool untilItFires() {
        const std::size_t before = fired.size();
        return until([&] {
            witness->tap(f8.code, controlBit);
            return fired.size() > before;
        });
    }

    std::unique_ptr<SocketProxy> proxy;
};

TEST_F(SwayLostHotKeysTest, ALostConnectionIsMadeAgainAndTheHotKeyWithIt) {
    const Subscription hotKey = registered(f8, controlModifier);
    proxy->cut(true);
    ASSERT_TRUE(until([this] { return answers.size() >= 3; }));
    EXPECT_EQ(answers, (std::vector<Status>{noErr, hotKeyInvalidError, noErr})) << "taken back, and given back";
    EXPECT_TRUE(untilItFires());
    EXPECT_EQ(witness->keyPresses(), 0U);
}

TEST_F(SwayLostHotKeysTest, ItIsTriedAgainUntilItCanBeHad) {
    Subscription hotKey = registered(f8, controlModifier);
    proxy->cut(false);
    ASSERT_TRUE(until([this] { return answers.size() == 2; }));
    const Subscription other = hotKeys->registerHotKey(
        f9.number, controlModifier, {1, 2}, [this](const HotKeyAnswer& answer) { answers.push_back(answer.status); });
    EXPECT_LT(turnsDuring(2.2), 30) << "it is not tried all the time";
    EXPECT_EQ(answers.size(), 2U) << "one that is asked for meanwhile waits";
    EXPECT_FALSE(hotKeys->isConnected());
    proxy->open();
    ASSERT_TRUE(until([this] { return answers.size() == 4; }));
    EXPECT_EQ(answers.back(), noErr);
    EXPECT_TRUE(untilItFires());
    witness->tap(f9.code, controlBit);
    EXPECT_TRUE(until([this] { return fired.back() == HotKeyId{1, 2}; }));
}

TEST_F(SwayLostHotKeysTest, WhatIsGivenUpMeanwhileIsGivenBack) {
    Subscription hotKey = registered(f8, controlModifier);
    proxy->cut(false);
    ASSERT_TRUE(until([this] { return answers.size() == 2; }));
    hotKey.cancel();
    proxy->open();
    EXPECT_TRUE(untilWindowGets(f8, controlBit));
}

TEST_F(SwayLostHotKeysTest, WhatIsGivenUpBeforeTheLossIsHeardOfIsGivenBack) {
    Subscription hotKey = registered(f8, controlModifier);
    proxy->cut(true);
    hotKey.cancel();
    EXPECT_TRUE(untilWindowGets(f8, controlBit));
}

TEST_F(SwayLostHotKeysTest, WhatSwayDidNotAnswerAnyMoreIsGivenBack) {
    Subscription hotKey = registered(f8, controlModifier);
    ownSway->pause();
    hotKey.cancel();
    proxy->cut(true);
    ownSway->goOn();
    EXPECT_TRUE(untilWindowGets(f8, controlBit));
}

TEST_F(SwayLostHotKeysTest, WhatTheUserHasBoundMeanwhileStaysTheUsers) {
    Subscription hotKey = registered(f8, controlModifier);
    proxy->cut(false);
    ASSERT_TRUE(until([this] { return answers.size() == 2; }));
    hotKey.cancel();
    ownSway->configure(otherMode + "bindcode Control+74 mode other\n");
    ASSERT_TRUE(ownSway->command("reload"));
    proxy->open();
    const Subscription other = registered(f9, controlModifier);
    EXPECT_EQ(answers, std::vector<Status>{noErr}) << "it is asked for after that";
    EXPECT_TRUE(isUsers(f8, controlBit));
}

TEST_F(SwayLostHotKeysTest, WhatIsWantedAgainMeanwhileIsBoundAgain) {
    Subscription hotKey = registered(f8, controlModifier);
    proxy->cut(false);
    ASSERT_TRUE(until([this] { return answers.size() == 2; }));
    hotKey.cancel();
    proxy->open();
    hotKey = registered(f8, controlModifier);
    EXPECT_EQ(answers, std::vector<Status>{noErr});
    EXPECT_TRUE(untilItFires());
    EXPECT_EQ(witness->keyPresses(), 0U);
}

TEST_F(SwayLostHotKeysTest, AnEndWithoutAConnectionGivesTheKeyBackToo) {
    const Subscription hotKey = registered(f8, controlModifier);
    proxy->cut(false);
    ASSERT_TRUE(until([this] { return answers.size() == 2; }));
    proxy->open();
    hotKeys.reset();
    EXPECT_TRUE(untilWindowGets(f8, controlBit));
}

TEST_F(SwayLostHotKeysTest, OneThatHasNoTimeAtTheStartIsWaitedFor) {
    // A queue of clients that is full.
    const std::string path = proxy->path() + "-busy";
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    path.copy(address.sun_path, sizeof address.sun_path - 1);
    const int listener = socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
    ASSERT_EQ(bind(listener, reinterpret_cast<const sockaddr*>(&address), sizeof address), 0);
    ASSERT_EQ(listen(listener, 0), 0);
    std::vector<int> waiting;
    do {
        waiting.push_back(socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0));
    } while (::connect(waiting.back(), reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0);
    ASSERT_EQ(errno, EAGAIN);
    connect(path);
    EXPECT_TRUE(hotKeys->isFound());
    EXPECT_FALSE(hotKeys->isConnected());
    const Subscription hotKey = hotKeys->registerHotKey(
        f8.number, controlModifier, ourId, [this](const HotKeyAnswer& answer) { answers.push_back(answer.status); });
    EXPECT_TRUE(answers.empty());
    for (const int one : waiting) {
        close(one);
    }
    close(listener);
    unlink(path.c_str());
    std::filesystem::create_symlink(ownSway->commandSocket(), path);
    ASSERT_TRUE(until([this] { return !answers.empty(); }));
    EXPECT_EQ(answers, std::vector<Status>{noErr});
    EXPECT_TRUE(untilItFires());
}

} // namespace velloran::tests
