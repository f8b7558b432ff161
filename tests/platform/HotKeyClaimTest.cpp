#include "platform/HotKeyClaim.h"

#include <gtest/gtest.h>

#include <memory>
#include <vector>

namespace velloran::platform {

class HotKeyClaimTest : public testing::Test {
protected:
    struct Registration {
        explicit Registration(HotKeys::AnswerReceiver receiver) : claim({7, 3}, std::move(receiver)) {}

        HotKeyClaim claim;
    };

    std::vector<HotKeyAnswer> told;
    std::shared_ptr<Registration> registration =
        std::make_shared<Registration>([this](const HotKeyAnswer& answer) { told.push_back(answer); });
    const HotKeyAnswer granted{};
    const HotKeyAnswer other{noErr, "Super+B"};
    const HotKeyAnswer lost{hotKeyInvalidError, {}};
};

TEST_F(HotKeyClaimTest, APressIsItsOwners) {
    EXPECT_EQ(registration->claim.press().hotKeyId, (HotKeyId{7, 3}));
}

TEST_F(HotKeyClaimTest, OnlyNewsIsTold) {
    EXPECT_FALSE(registration->claim.isAnswered());
    for (const auto& answer : {granted, granted, other, other, granted}) {
        registration->claim.answer(answer);
    }
    EXPECT_TRUE(registration->claim.isAnswered());
    EXPECT_EQ(told, (std::vector{granted, other, granted}));
}

TEST_F(HotKeyClaimTest, ALossIsNewsToWhoeverWasAnswered) {
    registration->claim.lose();
    EXPECT_FALSE(registration->claim.isAnswered());
    registration->claim.answer(granted);
    registration->claim.lose();
    registration->claim.lose();
    const HotKeyAnswer why{.status = hotKeyInvalidError, .otherTrigger = {}, .reason = "It has gone."};
    registration->claim.lose(why);
    EXPECT_EQ(told, (std::vector{granted, lost, why}));
}

TEST_F(HotKeyClaimTest, WhoeverIsToldMayEndIt) {
    std::vector<HotKeyAnswer> answers;
    auto ending = std::make_shared<Registration>([&](const HotKeyAnswer& answer) {
        registration.reset();
        answers.push_back(answer);
    });
    registration.swap(ending);
    ending.reset();
    registration->claim.answer(other);
    EXPECT_EQ(registration, nullptr);
    EXPECT_EQ(answers, std::vector{other});
}

TEST_F(HotKeyClaimTest, OnlyTheLastQuestionIsStillAsked) {
    const HotKeyQuestion first(registration);
    EXPECT_EQ(first.stillAsked(), registration);
    const HotKeyQuestion second(registration);
    EXPECT_EQ(first.stillAsked(), nullptr) << "its answer comes late";
    EXPECT_EQ(second.stillAsked(), registration);
    registration->claim.dropQuestion();
    EXPECT_EQ(second.stillAsked(), nullptr);
}

TEST_F(HotKeyClaimTest, AQuestionKeepsNothingAlive) {
    const HotKeyQuestion question(registration);
    registration.reset();
    EXPECT_EQ(question.stillAsked(), nullptr);
}

TEST_F(HotKeyClaimTest, ItsEndIsToldWhileThereIsSomethingToEnd) {
    std::vector<std::shared_ptr<Registration>> ended;
    const auto end = [&](const std::shared_ptr<Registration>& ending) { ended.push_back(ending); };
    Subscription held = registeredUntil(registration, end);
    EXPECT_TRUE(ended.empty());
    EXPECT_EQ(registration.use_count(), 1) << "it is not kept alive";
    held.cancel();
    EXPECT_EQ(ended, std::vector{registration});
    ended.clear();
    Subscription late = registeredUntil(registration, end);
    registration.reset();
    late.cancel();
    EXPECT_TRUE(ended.empty());
}

} // namespace velloran::platform
