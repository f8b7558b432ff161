#include "model/ClickerStatus.h"

#include <gtest/gtest.h>

#include <string_view>
#include <vector>

namespace velloran {

namespace {

struct Row {
    ClickerStatus status;
    std::string_view rawValue;
    std::string_view headline;
    std::string_view accentColorName;
    bool isActive;
};

const std::vector<Row> vocabulary{
    {ClickerStatus::idle, "idle", "Ready", "statusIdle", false},
    {ClickerStatus::arming, "arming", "Armed", "statusArming", true},
    {ClickerStatus::delayed, "delayed", "Delayed Start", "statusDelayed", true},
    {ClickerStatus::running, "running", "Running", "statusRunning", true},
    {ClickerStatus::paused, "paused", "Paused", "statusPaused", true},
    {ClickerStatus::completed, "completed", "Completed", "statusCompleted", false},
    {ClickerStatus::error, "error", "Error", "statusError", false},
};

} // namespace

TEST(ClickerStatus, VocabularyIsCompleteAndInOrder) {
    ASSERT_EQ(allClickerStatuses.size(), vocabulary.size());
    for (std::size_t at = 0; at < vocabulary.size(); ++at) {
        EXPECT_EQ(allClickerStatuses[at], vocabulary[at].status) << at;
    }
}

TEST(ClickerStatus, EachHasItsWordsAndItsColour) {
    for (const Row& row : vocabulary) {
        EXPECT_EQ(rawValue(row.status), row.rawValue);
        EXPECT_EQ(headline(row.status), row.headline);
        EXPECT_EQ(accentColorName(row.status), row.accentColorName);
    }
}

TEST(ClickerStatus, ActiveAreThoseThatAStopCanEnd) {
    for (const Row& row : vocabulary) {
        EXPECT_EQ(isActive(row.status), row.isActive) << row.rawValue;
    }
}

TEST(ClickerStatus, IsReadFromItsStoredNameOnly) {
    for (const Row& row : vocabulary) {
        EXPECT_EQ(fromRawValue<ClickerStatus>(row.rawValue), row.status);
    }
    EXPECT_EQ(fromRawValue<ClickerStatus>("paused"), ClickerStatus::paused);
    for (const char* text : {"stopped", "", "Idle", "Ready", "running "}) {
        EXPECT_EQ(fromRawValue<ClickerStatus>(text), std::nullopt) << text;
    }
}

} // namespace velloran
