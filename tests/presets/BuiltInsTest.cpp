#include "presets/Preset.h"

#include "fakes/RecordingPlatform.h"
#include "hotkeys/HotkeyPreset.h"

#include <gtest/gtest.h>

#include <unistd.h>

#include <cstdio>
#include <ostream>
#include <set>
#include <sstream>
#include <string>
#include <vector>

// What comes with the program is built once in a process, so each run here is a process of its own.

namespace velloran {

namespace {

/// Keeps the text that it is asked about.
class Keeper final : public testing::MatcherInterface<const std::string&> {
public:
    explicit Keeper(std::string& text) : text_(text) {}

    bool MatchAndExplain(const std::string& text, testing::MatchResultListener*) const override {
        text_ = text;
        return !text.empty();
    }

    void DescribeTo(std::ostream* out) const override { *out << "says something"; }

private:
    std::string& text_;
};

testing::Matcher<const std::string&> keepIn(std::string& text) {
    return testing::MakeMatcher(new Keeper(text));
}

std::vector<std::string> lines(const std::string& text) {
    std::vector<std::string> found;
    std::istringstream stream(text);
    for (std::string line; std::getline(stream, line);) {
        found.push_back(line);
    }
    return found;
}

[[noreturn]] void endRun() {
    _exit(0);
}

void tellBuiltIns() {
    fakes::RecordingPlatform platform;
    platform.loop.advance(5.0);
    const Date firstUse = platform.loop.now();
    Preset::builtIns();
    platform.loop.advance(5.0);
    for (const Preset& preset : Preset::builtIns()) {
        std::fprintf(stderr, "%s\n%s\n", preset.id.text().c_str(),
                     preset.createdAt == firstUse ? "made at the first use" : "made at another time");
    }
    endRun();
}

void tellHotkeyChoices() {
    for (const HotkeyPreset& preset : HotkeyPreset::all()) {
        std::fprintf(stderr, "%s\n", preset.id.text().c_str());
    }
    endRun();
}

/// What `tell` wrote to the error output of a process that had done nothing else before.
std::vector<std::string> runOf(void (*tell)()) {
    std::string text;
    EXPECT_EXIT(tell(), testing::ExitedWithCode(0), keepIn(text));
    return lines(text);
}

class BuiltInsDeathTest : public testing::Test {
protected:
    // The program is started afresh for each of them.
    BuiltInsDeathTest() { testing::FLAGS_gtest_death_test_style = "threadsafe"; }
};

} // namespace

TEST_F(BuiltInsDeathTest, TwoRunsGiveDifferentIdentifiers) {
    const std::vector<std::string> first = runOf(tellBuiltIns);
    const std::vector<std::string> second = runOf(tellBuiltIns);
    ASSERT_EQ(first.size(), 6U);
    ASSERT_EQ(second.size(), 6U);
    std::set<std::string> identifiers;
    for (std::size_t place = 0; place < first.size(); place += 2) {
        for (const std::vector<std::string>& run : {first, second}) {
            EXPECT_TRUE(Uuid::fromText(run[place])) << run[place];
            identifiers.insert(run[place]);
            EXPECT_EQ(run[place + 1], "made at the first use");
        }
    }
    EXPECT_EQ(identifiers.size(), 6U);
}

TEST_F(BuiltInsDeathTest, TwoRunsGiveHotkeyChoicesDifferentIdentifiers) {
    const std::vector<std::string> first = runOf(tellHotkeyChoices);
    const std::vector<std::string> second = runOf(tellHotkeyChoices);
    std::set<std::string> identifiers(first.begin(), first.end());
    identifiers.insert(second.begin(), second.end());
    EXPECT_EQ(identifiers.size(), 16U);
}

} // namespace velloran
