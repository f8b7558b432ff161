#include "ui/window/WindowButtonLayout.h"

#include <gtest/gtest.h>

namespace velloran::tests {

namespace {

constexpr auto minimize = WindowButton::minimize;
constexpr auto maximize = WindowButton::maximize;
constexpr auto close = WindowButton::close;

} // namespace

TEST(WindowButtonLayoutTest, StandardIsOnTheRight) {
    EXPECT_EQ(WindowButtonLayout::standard(), (WindowButtonLayout{{}, {minimize, maximize, close}}));
}

TEST(WindowButtonLayoutTest, NamesOnBothSides) {
    EXPECT_EQ(WindowButtonLayout::fromNames("close,minimize:maximize"),
              (WindowButtonLayout{{close, minimize}, {maximize}}));
    EXPECT_EQ(WindowButtonLayout::fromNames("appmenu:minimize,maximize,close"), WindowButtonLayout::standard());
    EXPECT_EQ(WindowButtonLayout::fromNames("appmenu:close"), (WindowButtonLayout{{}, {close}}));
    EXPECT_EQ(WindowButtonLayout::fromNames(" close , maximize : minimize "),
              (WindowButtonLayout{{close, maximize}, {minimize}}));
}

TEST(WindowButtonLayoutTest, WithoutAColonAllStandOnTheLeft) {
    EXPECT_EQ(WindowButtonLayout::fromNames("close,minimize"), (WindowButtonLayout{{close, minimize}, {}}));
    EXPECT_EQ(WindowButtonLayout::fromNames(""), WindowButtonLayout{});
    EXPECT_EQ(WindowButtonLayout::fromNames(":"), WindowButtonLayout{});
}

TEST(WindowButtonLayoutTest, UnknownAndRepeatedNamesAreLeftOut) {
    EXPECT_EQ(WindowButtonLayout::fromNames("close,spacer,CLOSE:close,icon,minimize,minimize:maximize"),
              (WindowButtonLayout{{close}, {minimize}}));
}

TEST(WindowButtonLayoutTest, Letters) {
    EXPECT_EQ(WindowButtonLayout::fromLetters("MS", "HIAX"), WindowButtonLayout::standard());
    EXPECT_EQ(WindowButtonLayout::fromLetters("XIA", ""), (WindowButtonLayout{{close, minimize, maximize}, {}}));
    EXPECT_EQ(WindowButtonLayout::fromLetters("X", "X_I"), (WindowButtonLayout{{close}, {minimize}}));
}

} // namespace velloran::tests
