#include "platform/hyprland/HyprlandPointer.h"

#include "fakes/VirtualLoop.h"
#include "platform/hyprland/FakeHyprland.h"

#include <gtest/gtest.h>

#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <functional>
#include <memory>
#include <string>
#include <thread>

namespace velloran::tests {

using namespace std::chrono_literals;
using platform::Point;
using platform::hyprland::HyprlandPointer;
using Place = std::optional<Point>;

namespace {

std::string placeText(int x, int y) {
    return "{\n    \"x\": " + std::to_string(x) + ",\n    \"y\": " + std::to_string(y) + "\n}";
}

} // namespace

class HyprlandPointerTest : public testing::Test {
protected:
    HyprlandPointerTest() { begin(); }

    ~HyprlandPointerTest() override {
        hyprland.reset();
        std::filesystem::remove_all(folder_);
    }

    void begin() { hyprland = std::make_unique<FakeHyprland>(socket()); }

    [[nodiscard]] std::string socket() const { return folder_ + "/socket"; }

    [[nodiscard]] std::string limit() const { return pointer.parts().get().pointer.limit; }

    /// Asks until the condition holds: on a busy machine an answer may be late once. The question itself waits for its
    /// answer. False when it does not in ten seconds.
    bool until(const std::function<bool()>& condition) {
        for (const auto end = std::chrono::steady_clock::now() + 10s; !condition();) {
            if (std::chrono::steady_clock::now() > end) {
                return false;
            }
            std::this_thread::yield();
        }
        return true;
    }

    bool untilAt(const Point& place) {
        return until([&] { return pointer.currentPosition() == place; });
    }

    fakes::VirtualLoop loop;
    std::unique_ptr<FakeHyprland> hyprland;

private:
    static std::string makeFolder() {
        std::string name = testing::TempDir() + "velloran-hyprland-XXXXXX";
        return mkdtemp(name.data());
    }

    const std::string folder_ = makeFolder();

protected:
    HyprlandPointer pointer{loop, socket()};
};

TEST_F(HyprlandPointerTest, TellsThePlaceOfEachMoment) {
    hyprland->answerWith({placeText(640, 400)});
    ASSERT_TRUE(untilAt({640, 400}));
    EXPECT_EQ(hyprland->requests().back(), "j/cursorpos");
    hyprland->answerWith({placeText(-5, 7)});
    ASSERT_TRUE(untilAt({-5, 7}));
    // A late answer has to be told of.
    loop.runDue();
    EXPECT_EQ(loop.pendingCalls(), 0U) << "nothing is left to be done between two questions";
}

TEST_F(HyprlandPointerTest, EachQuestionIsAConnectionOfItsOwn) {
    hyprland->answerWith({placeText(1, 2)});
    ASSERT_TRUE(untilAt({1, 2}));
    const auto before = hyprland->requests().size();
    EXPECT_TRUE(hyprland->awaitRequests(before));
    pointer.currentPosition();
    ASSERT_TRUE(hyprland->awaitRequests(before + 1));
    EXPECT_EQ(hyprland->requests().size(), before + 1);
}

TEST_F(HyprlandPointerTest, AnswersInPiecesArePutTogether) {
    hyprland->answerWith({"{\"x\": 1", "2, \"y\"", ": 3", "4}"});
    EXPECT_TRUE(untilAt({12, 34}));
}

TEST_F(HyprlandPointerTest, LateAnswersAreNoPlace) {
    hyprland->holdAnswers();
    EXPECT_EQ(pointer.currentPosition(), std::nullopt);
    ASSERT_TRUE(hyprland->awaitRequests(1));
    hyprland->answerWith({placeText(2, 2)});
    hyprland->answerHeld(placeText(1, 1));
    Place told;
    ASSERT_TRUE(until([&] {
        told = pointer.currentPosition();
        return told.has_value();
    }));
    EXPECT_EQ(told, (Point{2, 2})) << "where it was before may hide a motion";
}

TEST_F(HyprlandPointerTest, WhileAnAnswerIsOwedNobodyWaitsAndNothingIsAsked) {
    hyprland->holdAnswers();
    EXPECT_EQ(pointer.currentPosition(), std::nullopt);
    ASSERT_TRUE(hyprland->awaitRequests(1));
    constexpr int questions = 200;
    const auto begin = std::chrono::steady_clock::now();
    for (int i = 0; i < questions; ++i) {
        EXPECT_EQ(pointer.currentPosition(), std::nullopt);
    }
    EXPECT_LT(std::chrono::steady_clock::now() - begin, questions * HyprlandPointer::longestWait / 4);
    EXPECT_EQ(hyprland->requests().size(), 1U);
}

TEST_F(HyprlandPointerTest, AQuestionThatIsNeverAnsweredIsGivenUp) {
    hyprland->holdAnswers();
    EXPECT_EQ(pointer.currentPosition(), std::nullopt);
    ASSERT_TRUE(hyprland->awaitRequests(1));
    loop.advance(0.9);
    EXPECT_EQ(pointer.currentPosition(), std::nullopt);
    EXPECT_EQ(hyprland->requests().size(), 1U);
    loop.advance(0.2);
    EXPECT_EQ(pointer.currentPosition(), std::nullopt);
    EXPECT_TRUE(hyprland->awaitRequests(2));
    hyprland->answerWith({placeText(8, 9)});
    loop.advance(1.1);
    EXPECT_TRUE(untilAt({8, 9}));
}

TEST_F(HyprlandPointerTest, NonsenseIsNoPlaceAndIsSaidToBeSo) {
    hyprland->answerWith({placeText(1, 2)});
    ASSERT_TRUE(untilAt({1, 2}));
    for (const std::string& nonsense : {std::string("unknown request"), std::string("{\"x\": 1, \"y\""),
                                        std::string(100'000, ' ') + placeText(3, 4), std::string()}) {
        hyprland->answerWith({nonsense});
        // One question may still have been answered as before.
        EXPECT_TRUE(until([&] { return pointer.currentPosition() == std::nullopt; })) << nonsense;
        EXPECT_EQ(pointer.currentPosition(), std::nullopt) << nonsense;
    }
    loop.runDue();
    EXPECT_EQ(
        limit(),
        "Hyprland does not say at the moment where the pointer is, so the still-mouse rule lets no click through.");
    hyprland->answerWith({placeText(5, 6)});
    EXPECT_TRUE(untilAt({5, 6}));
    loop.runDue();
    EXPECT_EQ(limit(), "");
}

TEST_F(HyprlandPointerTest, OneThatGoesAndComesBackIsFollowed) {
    hyprland->answerWith({placeText(1, 2)});
    ASSERT_TRUE(untilAt({1, 2}));
    hyprland.reset();
    EXPECT_EQ(pointer.currentPosition(), std::nullopt);
    EXPECT_EQ(limit(), "") << "told in a turn of the loop only";
    loop.runDue();
    EXPECT_NE(limit(), "");
    begin();
    hyprland->answerWith({placeText(3, 4)});
    EXPECT_TRUE(untilAt({3, 4}));
    loop.runDue();
    EXPECT_EQ(limit(), "");
}

TEST_F(HyprlandPointerTest, OneThatEndsInTheMiddleOfAnAnswerIsNoPlace) {
    hyprland->holdAnswers();
    EXPECT_EQ(pointer.currentPosition(), std::nullopt);
    ASSERT_TRUE(hyprland->awaitRequests(1));
    hyprland.reset();
    EXPECT_EQ(pointer.currentPosition(), std::nullopt);
    begin();
    hyprland->answerWith({placeText(3, 4)});
    EXPECT_TRUE(untilAt({3, 4})) << "the question that was open has ended";
}

TEST_F(HyprlandPointerTest, TheFirstAnswerTellsWhetherThereIsAny) {
    EXPECT_FALSE(HyprlandPointer(loop, socket() + "-of-nobody").waitForAnswer(10ms));
    EXPECT_FALSE(HyprlandPointer(loop, std::string(200, 'x')).waitForAnswer(10ms));
    hyprland->answerWith({placeText(1, 2)});
    EXPECT_TRUE(pointer.waitForAnswer(10s));
    EXPECT_EQ(limit(), "");
    EXPECT_EQ(pointer.parts().get().pointer.part.get(), &pointer);
    EXPECT_EQ(pointer.parts().get().pointer.reason, "Hyprland is asked over its socket where the pointer is.");
    hyprland->answerWith({"unknown request"});
    EXPECT_TRUE(pointer.waitForAnswer(10s));
    EXPECT_NE(limit(), "") << "nothing pretends";
    hyprland->holdAnswers();
    HyprlandPointer another(loop, socket());
    EXPECT_TRUE(another.waitForAnswer(10ms)) << "it may still answer";
    EXPECT_NE(another.parts().get().pointer.limit, "");
}

TEST_F(HyprlandPointerTest, EndsWithAQuestionOpen) {
    hyprland->holdAnswers();
    {
        HyprlandPointer another(loop, socket());
        EXPECT_EQ(another.currentPosition(), std::nullopt);
    }
    loop.advance(2);
    hyprland->answerHeld(placeText(1, 1));
}

} // namespace velloran::tests
