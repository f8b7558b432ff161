#include "keys/CurrentLayout.h"

#include <gtest/gtest.h>
#include <linux/input-event-codes.h>

#include <string>

namespace velloran::keys {

namespace {

std::string nameOfY(const KeyboardLayout& layout) {
    return layout.symbolName(KEY_Y);
}

} // namespace

TEST(CurrentLayout, IsTheOneThatIsKnown) {
    const auto german = KeyboardLayout::fromNames({"evdev", "pc105", "de", "", ""});
    ASSERT_TRUE(german);
    EXPECT_EQ(fromLayout([&] { return &german.value(); }, nameOfY), "z");
}

TEST(CurrentLayout, IsTheSystemsWhereNoneIsKnown) {
    EXPECT_EQ(fromLayout({}, nameOfY), "y");
    EXPECT_EQ(fromLayout([] { return nullptr; }, nameOfY), "y");
}

} // namespace velloran::keys
