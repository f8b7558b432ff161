#include "platform/wayland/AbilitiesQuestion.h"

#include "platform/wayland/FakeShell.h"
#include "platform/wayland/LoopTest.h"

#include <xdg-shell-server-protocol.h>

#include <atomic>
#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <future>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace velloran::tests {

using platform::WindowAbilities;
using platform::wayland::AbilitiesQuestion;

namespace {

constexpr WindowAbilities all{true, true, true};
constexpr int newVersion = XDG_TOPLEVEL_WM_CAPABILITIES_SINCE_VERSION;

} // namespace

class AbilitiesQuestionTest : public LoopTest {
protected:
    void SetUp() override {
        std::string folderName = testing::TempDir() + "velloran-abilities-XXXXXX";
        folder_ = mkdtemp(folderName.data());
        compositor = std::make_unique<FakeCompositor>(loop, path());
    }

    void TearDown() override {
        shell.reset();
        compositor.reset();
        std::filesystem::remove_all(folder_);
    }

    [[nodiscard]] std::string path() const { return folder_ + "/socket"; }

    void offer(int version, std::optional<std::vector<std::uint32_t>> abilities) {
        shell = std::make_unique<FakeShell>(*compositor, version, std::move(abilities));
    }

    /// What is told in the end, which leaves nothing behind.
    WindowAbilities ask() {
        AbilitiesQuestion question(loop, path());
        EXPECT_EQ(question.answer().get(), all) << "nobody has told anything yet";
        EXPECT_TRUE(until([&] { return question.isOver(); }));
        EXPECT_TRUE(until([this] { return !shell || shell->windows == 0; }));
        EXPECT_EQ(compositor->errors, 0) << "it was thrown out";
        return question.answer().get();
    }

    std::unique_ptr<FakeCompositor> compositor;
    std::unique_ptr<FakeShell> shell;

private:
    std::string folder_;
};

TEST_F(AbilitiesQuestionTest, TellsEachThingThatTheCompositorDoes) {
    const std::vector<std::pair<std::vector<std::uint32_t>, WindowAbilities>> cases{
        {{}, {false, false, false}},
        {{XDG_TOPLEVEL_WM_CAPABILITIES_FULLSCREEN}, {false, false, false}},
        {{XDG_TOPLEVEL_WM_CAPABILITIES_WINDOW_MENU}, {true, false, false}},
        {{XDG_TOPLEVEL_WM_CAPABILITIES_MAXIMIZE}, {false, true, false}},
        {{XDG_TOPLEVEL_WM_CAPABILITIES_MINIMIZE}, {false, false, true}},
        {{XDG_TOPLEVEL_WM_CAPABILITIES_WINDOW_MENU, XDG_TOPLEVEL_WM_CAPABILITIES_MAXIMIZE,
          XDG_TOPLEVEL_WM_CAPABILITIES_FULLSCREEN, XDG_TOPLEVEL_WM_CAPABILITIES_MINIMIZE},
         all},
        // What later versions may bring.
        {{99, XDG_TOPLEVEL_WM_CAPABILITIES_MINIMIZE}, {false, false, true}},
    };
    for (const auto& [told, expected] : cases) {
        offer(newVersion, told);
        EXPECT_EQ(ask(), expected) << testing::PrintToString(told);
        EXPECT_EQ(shell->begun, 1);
        EXPECT_EQ(shell->pictures, 0) << "the window shows";
    }
}

TEST_F(AbilitiesQuestionTest, OneThatSaysNothingCanDoEverything) {
    offer(newVersion, std::nullopt);
    EXPECT_EQ(ask(), all);
    EXPECT_EQ(shell->begun, 1);
}

TEST_F(AbilitiesQuestionTest, OneThatIsTooOldToTellIsShownNoWindow) {
    offer(newVersion - 1, std::vector<std::uint32_t>{});
    EXPECT_EQ(ask(), all);
    EXPECT_EQ(shell->begun, 0);
}

TEST_F(AbilitiesQuestionTest, OneWithoutWindowsCanDoEverything) {
    EXPECT_EQ(ask(), all);
}

TEST_F(AbilitiesQuestionTest, WhoeverFollowsIsTold) {
    offer(newVersion, std::vector<std::uint32_t>{});
    const AbilitiesQuestion question(loop, path());
    WindowAbilities last;
    const Subscription following =
        question.answer().stream().subscribe([&last](const WindowAbilities& now) { last = now; });
    EXPECT_TRUE(until([&last] { return last == WindowAbilities{false, false, false}; }));
}

TEST_F(AbilitiesQuestionTest, TheStartMayWaitForTheAnswerButNotForLong) {
    offer(newVersion, std::vector<std::uint32_t>{});
    compositor->pause();
    AbilitiesQuestion question(loop, path());
    question.waitForAnswer(std::chrono::milliseconds(20));
    EXPECT_EQ(question.answer().get(), all);
    std::atomic<bool> isEnding = false;
    auto work = std::async(std::launch::async, [&] { compositor->workUntil(isEnding); });
    question.waitForAnswer(std::chrono::seconds(10));
    isEnding = true;
    work.get();
    EXPECT_EQ(question.answer().get(), (WindowAbilities{false, false, false}));
    compositor->goOn();
    EXPECT_TRUE(until([&] { return question.isOver() && shell->windows == 0; }));
}

TEST_F(AbilitiesQuestionTest, NothingIsTheAnswerOfNobody) {
    AbilitiesQuestion ofNobody(loop, std::nullopt);
    EXPECT_TRUE(ofNobody.isOver());
    AbilitiesQuestion ofNoCompositor(loop, path() + "-of-none");
    EXPECT_TRUE(ofNoCompositor.isOver());
    const auto start = std::chrono::steady_clock::now();
    ofNoCompositor.waitForAnswer(std::chrono::seconds(10));
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(10));
    EXPECT_EQ(ofNoCompositor.answer().get(), all);
}

TEST_F(AbilitiesQuestionTest, OneThatEndsMeanwhileIsNotWaitedFor) {
    compositor->pause();
    AbilitiesQuestion question(loop, path());
    compositor.reset();
    EXPECT_TRUE(until([&] { return question.isOver(); }));
    EXPECT_EQ(question.answer().get(), all);
}

} // namespace velloran::tests
