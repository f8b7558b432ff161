#include "platform/unavailable/UnavailablePlatform.h"

#include <gtest/gtest.h>

#include <vector>

namespace velloran::platform::unavailable {

namespace {

class ListedLog final : public SystemLog {
public:
    void write(std::string_view line) override { lines.emplace_back(line); }

    std::vector<std::string> lines;
};

class UnavailablePlatformTest : public testing::Test {
protected:
    ListedLog log;
    UnavailablePlatform unavailable{log, "No way to post input here"};
};

} // namespace

TEST_F(UnavailablePlatformTest, HasNoTrustAndTellsTheReasonOnce) {
    EXPECT_TRUE(log.lines.empty());
    EXPECT_FALSE(unavailable.inputTrust().isTrusted());
    EXPECT_EQ(log.lines, std::vector<std::string>{"No way to post input here"});
    EXPECT_FALSE(unavailable.inputTrust().requestPrompt(PromptReason::automatic));
    EXPECT_FALSE(unavailable.inputTrust().isTrusted());
    EXPECT_EQ(log.lines.size(), 1U);
}

TEST_F(UnavailablePlatformTest, TellsTheReasonWhenAskedToPromptFirst) {
    EXPECT_FALSE(unavailable.inputTrust().requestPrompt(PromptReason::automatic));
    EXPECT_EQ(log.lines, std::vector<std::string>{"No way to post input here"});
}

TEST_F(UnavailablePlatformTest, NeverReportsAChangeOfTrust) {
    bool isCalled = false;
    unavailable.inputTrust().onChanged([&isCalled] { isCalled = true; });
    unavailable.inputTrust().requestPrompt(PromptReason::askedFor);
    EXPECT_FALSE(unavailable.inputTrust().isTrusted());
    EXPECT_FALSE(isCalled);
}

TEST_F(UnavailablePlatformTest, KnowsNoPointerAndMakesNoEvents) {
    EXPECT_EQ(unavailable.pointerPosition().currentPosition(), std::nullopt);
    EXPECT_EQ(unavailable.pointerEvents().location(), std::nullopt);
    for (const MouseEventType type :
         {MouseEventType::leftMouseDown, MouseEventType::rightMouseUp, MouseEventType::otherMouseDown}) {
        EXPECT_EQ(unavailable.pointerEvents().makeMouseEvent(type, {1.0, 2.0}, EventButton::left), std::nullopt);
    }
}

TEST_F(UnavailablePlatformTest, RegistersNoHotKey) {
    int calls = 0;
    std::vector<HotKeyAnswer> answers;
    const Subscription handler = unavailable.hotKeys().installHandler([&calls](const HotKeyEvent*) {
        ++calls;
        return noErr;
    });
    const Subscription hotKey = unavailable.hotKeys().registerHotKey(
        0, commandModifier, {1, 2}, [&answers](const HotKeyAnswer& answer) { answers.push_back(answer); });
    EXPECT_EQ(answers, (std::vector<HotKeyAnswer>{{hotKeyInvalidError, {}}}));
    EXPECT_EQ(calls, 0);
}

} // namespace velloran::platform::unavailable
