#include "platform/TrustWhileUnlocked.h"

#include <gtest/gtest.h>

#include <utility>

namespace velloran::platform {

namespace {

struct GivenTrust final : InputTrust {
    bool isTrusted() override { return isGiven; }

    bool requestPrompt(PromptReason reason) override {
        asked = reason;
        return isGiven;
    }

    void onChanged(std::function<void()> function) override { changed = std::move(function); }

    bool isGiven = true;
    PromptReason asked = PromptReason::automatic;
    std::function<void()> changed;
};

struct TrustWhileUnlockedTest : testing::Test {
    std::shared_ptr<GivenTrust> given = std::make_shared<GivenTrust>();
    std::shared_ptr<Published<bool>> isLocked = std::make_shared<Published<bool>>(false);
    TrustWhileUnlocked trust{given, isLocked};
    int told = 0;
};

} // namespace

TEST_F(TrustWhileUnlockedTest, RestsWhileTheScreenIsLocked) {
    EXPECT_TRUE(trust.isTrusted());
    isLocked->set(true);
    EXPECT_FALSE(trust.isTrusted());
    isLocked->set(false);
    EXPECT_TRUE(trust.isTrusted());
}

TEST_F(TrustWhileUnlockedTest, GivesNoMoreThanThereIs) {
    given->isGiven = false;
    EXPECT_FALSE(trust.isTrusted());
    EXPECT_FALSE(trust.requestPrompt(PromptReason::askedFor));
    EXPECT_EQ(given->asked, PromptReason::askedFor);
}

TEST_F(TrustWhileUnlockedTest, APromptGivesNoneWhileTheScreenIsLocked) {
    isLocked->set(true);
    EXPECT_FALSE(trust.requestPrompt(PromptReason::askedFor));
}

TEST_F(TrustWhileUnlockedTest, TellsOfTheLockAndOfThePermission) {
    trust.onChanged([this] { ++told; });
    EXPECT_EQ(told, 0) << "nothing has changed yet";
    isLocked->set(true);
    EXPECT_EQ(told, 1);
    given->changed();
    EXPECT_EQ(told, 2);
    trust.onChanged({});
    isLocked->set(false);
    EXPECT_EQ(told, 2);
    EXPECT_FALSE(given->changed);
}

} // namespace velloran::platform
