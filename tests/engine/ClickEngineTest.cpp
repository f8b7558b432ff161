#include "engine/ClickEngine.h"

#include "fakes/RecordingPlatform.h"

#include <gtest/gtest.h>

#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace velloran {

namespace {

using Journal = std::vector<std::string>;

/// Clicks of a desktop that may be slow.
struct WaitedForEvents final : platform::PointerEvents {
    std::optional<platform::Point> location() override { return std::nullopt; }

    std::optional<platform::MouseEvent> makeMouseEvent(platform::MouseEventType, platform::Point,
                                                       platform::EventButton) override {
        return std::nullopt;
    }

    [[nodiscard]] bool waitsForDesktop() const override { return waits; }

    [[nodiscard]] bool isKeeping() const override { return keeps; }

    void post(const platform::MouseEvent&) override {}

    void flush() override {}

    bool waits = false;
    bool keeps = false;
};

class ClickEngineTest : public testing::Test {
protected:
    const Journal& posted(ClickEngine::Button button) {
        platform.journal.clear();
        engine.post(button);
        return platform.journal;
    }

    fakes::RecordingPlatform platform;
    const ClickEngine engine{platform.desktop.get().clicks.part};
};

} // namespace

TEST_F(ClickEngineTest, LeftClickIsAPressAndAReleaseSentTogether) {
    EXPECT_EQ(posted(ClickEngine::Button::left),
              (Journal{"read location", "post 1 button 0 at 300.0,200.0", "post 2 button 0 at 300.0,200.0", "flush"}));
}

TEST_F(ClickEngineTest, RightClickAtThePointer) {
    EXPECT_EQ(posted(ClickEngine::Button::right),
              (Journal{"read location", "post 3 button 1 at 300.0,200.0", "post 4 button 1 at 300.0,200.0", "flush"}));
}

TEST_F(ClickEngineTest, MiddleClickUsesTheOtherEventsWithTheCentreButton) {
    EXPECT_EQ(posted(ClickEngine::Button::middle), (Journal{"read location", "post 25 button 2 at 300.0,200.0",
                                                            "post 26 button 2 at 300.0,200.0", "flush"}));
}

TEST_F(ClickEngineTest, FollowsThePointer) {
    platform.pointer = platform::Point{-1280.5, 7.25};
    EXPECT_EQ(posted(ClickEngine::Button::left).at(1), "post 1 button 0 at -1280.5,7.25");
}

TEST_F(ClickEngineTest, UnknownLocationIsTheOrigin) {
    platform.canReadLocation = false;
    EXPECT_EQ(posted(ClickEngine::Button::right),
              (Journal{"read location", "post 3 button 1 at 0.0,0.0", "post 4 button 1 at 0.0,0.0", "flush"}));
}

TEST_F(ClickEngineTest, HalfThatCannotBeMadeIsLeftOutAndTheOtherIsSent) {
    platform.unmakeableEvents = {platform::MouseEventType::leftMouseDown};
    EXPECT_EQ(posted(ClickEngine::Button::left), (Journal{"read location", "post 2 button 0 at 300.0,200.0", "flush"}));
    platform.unmakeableEvents = {platform::MouseEventType::leftMouseUp};
    EXPECT_EQ(posted(ClickEngine::Button::left), (Journal{"read location", "post 1 button 0 at 300.0,200.0", "flush"}));
    platform.unmakeableEvents = {platform::MouseEventType::leftMouseDown, platform::MouseEventType::leftMouseUp};
    EXPECT_EQ(posted(ClickEngine::Button::left), (Journal{"read location", "flush"}));
}

TEST_F(ClickEngineTest, NothingToClickWithIsNoClick) {
    ClickEngine(nullptr).post(ClickEngine::Button::left);
    EXPECT_TRUE(platform.journal.empty());
}

TEST_F(ClickEngineTest, IsBehindWhereAnotherClickWouldPileUp) {
    const auto events = std::make_shared<WaitedForEvents>();
    ClickEngine slow(events);
    const Moment due = later(Moment(), nanosecondsPerSecond);
    const Moment before = later(Moment(), nanosecondsPerSecond - 1);
    const Moment behind = later(Moment(), nanosecondsPerSecond + 1);
    EXPECT_FALSE(slow.isBehind(behind)) << "there is nothing to wait for";
    slow.noteHandedOver(due);
    EXPECT_FALSE(slow.isBehind(before));
    EXPECT_FALSE(slow.isBehind(due)) << "it may be posted this very moment";
    EXPECT_TRUE(slow.isBehind(behind)) << "it should have been posted";
    events->waits = true;
    EXPECT_TRUE(slow.isBehind(before)) << "the desktop has yet to take it";
    slow.notePosted();
    EXPECT_FALSE(slow.isBehind(behind));
    events->keeps = true;
    EXPECT_TRUE(slow.isBehind(before));
    EXPECT_FALSE(ClickEngine(nullptr).isBehind(behind));
}

TEST_F(ClickEngineTest, ConfiguredButtonsMapToThoseOfTheSameName) {
    EXPECT_EQ(engineButton(MouseButton::left), ClickEngine::Button::left);
    EXPECT_EQ(engineButton(MouseButton::right), ClickEngine::Button::right);
    EXPECT_EQ(engineButton(MouseButton::middle), ClickEngine::Button::middle);
}

} // namespace velloran
