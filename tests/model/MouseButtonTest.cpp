#include "model/MouseButton.h"

#include <gtest/gtest.h>

namespace velloran {

TEST(MouseButton, OffersLeftRightMiddleInThisOrder) {
    EXPECT_EQ(allMouseButtons, (std::array{MouseButton::left, MouseButton::right, MouseButton::middle}));
}

TEST(MouseButton, HasStoredAndShownNames) {
    EXPECT_EQ(rawValue(MouseButton::left), "left");
    EXPECT_EQ(rawValue(MouseButton::right), "right");
    EXPECT_EQ(rawValue(MouseButton::middle), "middle");
    EXPECT_EQ(displayName(MouseButton::left), "Left Click");
    EXPECT_EQ(displayName(MouseButton::right), "Right Click");
    EXPECT_EQ(displayName(MouseButton::middle), "Middle Click");
}

TEST(MouseButton, IsReadFromItsStoredNameOnly) {
    for (const MouseButton button : allMouseButtons) {
        EXPECT_EQ(fromRawValue<MouseButton>(rawValue(button)), button);
    }
    for (const char* text : {"", "Left", "LEFT", "left ", "lef", "Left Click", "center"}) {
        EXPECT_EQ(fromRawValue<MouseButton>(text), std::nullopt) << text;
    }
}

} // namespace velloran
