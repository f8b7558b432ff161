#include "hotkeys/HotkeyRecording.h"

#include <gtest/gtest.h>

#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace velloran {

namespace {

constexpr std::uint64_t control = 0x40000;
constexpr std::uint64_t option = 0x80000;
constexpr std::uint64_t shift = 0x20000;
constexpr std::uint64_t command = 0x100000;

/// Stands for the keyboard: hands presses to the handler that is installed, if one is.
class FakeMonitor final : public KeyMonitor {
public:
    Subscription installKeyDownMonitor(Handler handler) override {
        ++installations;
        handler_ = std::move(handler);
        return Subscription([this] { handler_ = nullptr; });
    }

    [[nodiscard]] bool isInstalled() const { return handler_ != nullptr; }

    /// False when nobody swallowed the press.
    bool press(std::uint64_t flags, std::uint16_t keyCode, std::optional<std::string> characters) {
        if (!handler_) {
            return false;
        }
        const Handler handler = handler_; // the call may remove it
        handler(KeyEvent{flags, keyCode, std::move(characters)});
        return true;
    }

    int installations = 0;

private:
    Handler handler_;
};

class HotkeyRecordingTest : public testing::Test {
protected:
    FakeMonitor monitor;
    std::vector<HotkeyCombo> recorded;
    std::vector<std::string> order;
    HotkeyRecording recording{monitor,
                              [this](const HotkeyCombo& combo) {
                                  recorded.push_back(combo);
                                  order.emplace_back("recorded");
                              },
                              [this] { order.emplace_back(recording.isRecording() ? "began" : "ended"); }};
};

} // namespace

TEST_F(HotkeyRecordingTest, StartsIdleWithoutAMonitor) {
    EXPECT_FALSE(recording.isRecording());
    EXPECT_FALSE(monitor.isInstalled());
    EXPECT_TRUE(order.empty());
}

TEST_F(HotkeyRecordingTest, RecordsControlOptionS) {
    recording.toggleRecording();
    EXPECT_TRUE(recording.isRecording());
    EXPECT_TRUE(monitor.press(control | option, 1, "s"));
    EXPECT_FALSE(recording.isRecording());
    EXPECT_FALSE(monitor.isInstalled());
    const std::vector<HotkeyCombo> expected{{control | option, 1, "⌃⌥S"}};
    EXPECT_EQ(recorded, expected);
    EXPECT_EQ(order, (std::vector<std::string>{"began", "recorded", "ended"}));
}

TEST_F(HotkeyRecordingTest, SwallowsAPlainKeyAndGoesOn) {
    recording.toggleRecording();
    EXPECT_TRUE(monitor.press(0, 0, "a"));
    EXPECT_TRUE(recording.isRecording());
    EXPECT_TRUE(monitor.isInstalled());
    EXPECT_TRUE(recorded.empty());
    EXPECT_TRUE(monitor.press(shift, 0, "A"));
    EXPECT_EQ(recorded.at(0).display, "⇧A");
}

TEST_F(HotkeyRecordingTest, SwallowsAKeyWithoutCharactersAndGoesOn) {
    recording.toggleRecording();
    EXPECT_TRUE(monitor.press(control, 33, std::nullopt));
    EXPECT_TRUE(monitor.press(control, 33, ""));
    EXPECT_TRUE(recording.isRecording());
    EXPECT_TRUE(recorded.empty());
}

TEST_F(HotkeyRecordingTest, EscapeCancelsWithAndWithoutModifiers) {
    for (const std::uint64_t flags : {std::uint64_t{0}, control, control | option | shift | command}) {
        recording.toggleRecording();
        EXPECT_TRUE(monitor.press(flags, 53, "\x1b"));
        EXPECT_FALSE(recording.isRecording());
        EXPECT_FALSE(monitor.isInstalled());
    }
    EXPECT_TRUE(recorded.empty());
}

TEST_F(HotkeyRecordingTest, TogglingAgainEndsWithoutRecording) {
    recording.toggleRecording();
    recording.toggleRecording();
    EXPECT_FALSE(recording.isRecording());
    EXPECT_FALSE(monitor.press(control, 1, "s"));
    EXPECT_TRUE(recorded.empty());
    EXPECT_EQ(order, (std::vector<std::string>{"began", "ended"}));
}

TEST_F(HotkeyRecordingTest, LeavingTheScreenRemovesTheMonitorAndKeepsTheState) {
    recording.toggleRecording();
    recording.stopMonitor();
    EXPECT_FALSE(monitor.isInstalled());
    EXPECT_TRUE(recording.isRecording());
    EXPECT_FALSE(monitor.press(control, 1, "s"));
    EXPECT_TRUE(recorded.empty());

    recording.toggleRecording();
    EXPECT_FALSE(recording.isRecording());
    recording.toggleRecording();
    EXPECT_TRUE(monitor.isInstalled());
    EXPECT_EQ(monitor.installations, 2);
}

TEST_F(HotkeyRecordingTest, StoppingTheMonitorWhileIdleDoesNothing) {
    recording.stopMonitor();
    EXPECT_FALSE(recording.isRecording());
    EXPECT_TRUE(order.empty());
}

TEST_F(HotkeyRecordingTest, TheEndOfTheRecorderIsTheEndOfTheMonitor) {
    {
        HotkeyRecording shortLived(
            monitor, [](const HotkeyCombo&) { FAIL(); }, [] {});
        shortLived.toggleRecording();
        EXPECT_TRUE(monitor.isInstalled());
    }
    EXPECT_FALSE(monitor.isInstalled());
}

TEST_F(HotkeyRecordingTest, OtherModifierBitsThatCameWithTheEventAreKept) {
    recording.toggleRecording();
    EXPECT_TRUE(monitor.press(control | 0x800000 | 0x101, 100, "F8"));
    const std::vector<HotkeyCombo> expected{{control | 0x800000, 100, "⌃F8"}};
    EXPECT_EQ(recorded, expected);
}

TEST(HotkeyRecording, ReceiverMayEndTheRecordingItself) {
    FakeMonitor monitor;
    int changes = 0;
    std::optional<HotkeyRecording> recording;
    recording.emplace(
        monitor, [&](const HotkeyCombo&) { recording->toggleRecording(); }, [&] { ++changes; });
    recording->toggleRecording();
    EXPECT_EQ(changes, 1);
    EXPECT_TRUE(monitor.press(control, 1, "s"));
    EXPECT_FALSE(recording->isRecording());
    EXPECT_FALSE(monitor.isInstalled());
    EXPECT_EQ(changes, 2) << "it ended once";
}

} // namespace velloran
