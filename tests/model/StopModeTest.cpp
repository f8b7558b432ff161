#include "model/StopMode.h"

#include <gtest/gtest.h>

namespace velloran {

TEST(StopMode, HasStoredNames) {
    EXPECT_EQ(rawValue(StopMode::manual), "manual");
    EXPECT_EQ(rawValue(StopMode::after_clicks), "after_clicks");
}

TEST(StopMode, IsReadFromItsStoredNameOnly) {
    EXPECT_EQ(fromRawValue<StopMode>("manual"), StopMode::manual);
    EXPECT_EQ(fromRawValue<StopMode>("after_clicks"), StopMode::after_clicks);
    for (const char* text : {"", "after", "afterClicks", "Manual", "after_clicks "}) {
        EXPECT_EQ(fromRawValue<StopMode>(text), std::nullopt) << text;
    }
}

} // namespace velloran
