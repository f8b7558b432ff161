#include "platform/wayland/PointerGlobals.h"

#include "platform/wayland/VirtualPointerTest.h"

#include <atomic>
#include <chrono>
#include <future>

namespace velloran::tests {

class PointerGlobalsTest : public VirtualPointerTest {};

TEST_F(PointerGlobalsTest, IsTrustedOnceTheCompositorHasSaidSo) {
    compositor->offerPointers();
    compositor->addSeat("seat0", true);
    connect();
    EXPECT_EQ(pointer->offer(), Offer::unknown);
    EXPECT_FALSE(pointer->isTrusted());
    EXPECT_FALSE(click(pointer->pointerEvents()));
    ASSERT_TRUE(until([this] { return changes > 0; }));
    EXPECT_EQ(pointer->offer(), Offer::offered);
    EXPECT_TRUE(pointer->isTrusted());
    EXPECT_TRUE(pointer->requestPrompt(platform::PromptReason::askedFor));
    idle();
    EXPECT_EQ(changes, 1);
    EXPECT_TRUE(compositor->deeds.empty()) << "what could not be made is not made later";
}

TEST_F(PointerGlobalsTest, TheStartMayWaitForTheAnswer) {
    compositor->addSeat("seat0", true);
    compositor->pause();
    std::atomic<bool> isEnding = false;
    for (const Offer expected : {Offer::missing, Offer::offered}) {
        auto work = std::async(std::launch::async, [&] { compositor->workUntil(isEnding); });
        connect();
        pointer->waitForOffer(std::chrono::seconds(10));
        EXPECT_EQ(pointer->offer(), expected);
        EXPECT_EQ(pointer->isTrusted(), expected == Offer::offered);
        isEnding = true;
        work.get();
        isEnding = false;
        pointer.reset();
        if (expected == Offer::missing) {
            compositor->offerPointers();
        }
    }
}

TEST_F(PointerGlobalsTest, ACompositorThatDoesNotAnswerIsNotWaitedForLongAndFollowed) {
    compositor->offerPointers();
    compositor->addSeat("seat0", true);
    compositor->pause();
    connect();
    pointer->waitForOffer(std::chrono::milliseconds(20));
    EXPECT_EQ(pointer->offer(), Offer::unknown);
    compositor->goOn();
    EXPECT_TRUE(untilOffered());
}

TEST_F(PointerGlobalsTest, ACompositorThatMakesNoPointersIsMissing) {
    compositor->addSeat("seat0", true);
    connect();
    ASSERT_TRUE(until([this] { return changes > 0; }));
    EXPECT_EQ(pointer->offer(), Offer::missing);
    EXPECT_FALSE(pointer->isTrusted());
    EXPECT_FALSE(pointer->requestPrompt(platform::PromptReason::askedFor));
    EXPECT_FALSE(click(pointer->pointerEvents()));

    compositor->offerPointers();
    ASSERT_TRUE(untilOffered());
    EXPECT_TRUE(click(pointer->pointerEvents()));
    EXPECT_TRUE(untilDeeds(4));
}

TEST_F(PointerGlobalsTest, WhatIsTakenBackIsLostAndWhatIsGivenAgainIsUsed) {
    connectToUsualCompositor();
    EXPECT_TRUE(click(pointer->pointerEvents()));
    ASSERT_TRUE(untilDeeds(4));
    const int changesBefore = changes;
    compositor->withdrawPointers();
    ASSERT_TRUE(untilMissing());
    EXPECT_FALSE(pointer->isTrusted());
    EXPECT_FALSE(click(pointer->pointerEvents()));
    idle();
    EXPECT_EQ(changes, changesBefore + 1);
    EXPECT_EQ(compositor->pointers, 0);

    compositor->offerPointers();
    ASSERT_TRUE(untilOffered());
    EXPECT_TRUE(click(pointer->pointerEvents()));
    ASSERT_TRUE(untilDeeds(8));
    EXPECT_TRUE(areClicks(2));
    EXPECT_EQ(compositor->pointers, 1);
}

TEST_F(PointerGlobalsTest, TheFirstSeatWithAPointerIsTaken) {
    compositor->offerPointers();
    compositor->addSeat("keyboards", false);
    compositor->addSeat("mice", true);
    compositor->addSeat("more mice", true);
    connect();
    ASSERT_TRUE(untilOffered());
    EXPECT_TRUE(click(pointer->pointerEvents()));
    ASSERT_TRUE(untilDeeds(4));
    EXPECT_EQ(compositor->deeds, clickDeeds(left, "mice"));
}

TEST_F(PointerGlobalsTest, ASeatWithoutAPointerIsBetterThanNone) {
    compositor->offerPointers();
    connect();
    ASSERT_TRUE(untilMissing());
    compositor->addSeat("keyboards", false);
    ASSERT_TRUE(untilOffered());
    compositor->addSeat("mice", true);
    idle();
    // What is chosen is looked at again with everything that comes.
    compositor->addSeat("more mice", true);
    idle();
    EXPECT_TRUE(click(pointer->pointerEvents()));
    ASSERT_TRUE(untilDeeds(4));
    EXPECT_EQ(compositor->deeds, clickDeeds(left, "keyboards")) << "whatever comes, a pointer keeps its seat";
}

TEST_F(PointerGlobalsTest, AnotherSeatTakesThePlaceOfOneThatGoes) {
    compositor->offerPointers();
    compositor->addSeat("first", true);
    compositor->addSeat("second", true);
    connect();
    ASSERT_TRUE(untilOffered());
    compositor->removeSeat("first");
    ASSERT_TRUE(until([this] { return changes > 1; }));
    EXPECT_TRUE(pointer->isTrusted());
    EXPECT_TRUE(click(pointer->pointerEvents()));
    ASSERT_TRUE(untilDeeds(4));
    EXPECT_EQ(compositor->deeds, clickDeeds(left, "second"));
    EXPECT_EQ(compositor->pointers, 1);
    compositor->removeSeat("second");
    ASSERT_TRUE(untilMissing());
    EXPECT_FALSE(click(pointer->pointerEvents()));
}

} // namespace velloran::tests
