#include "base/Uuid.h"

#include <gtest/gtest.h>

namespace velloran {

TEST(Uuid, WritesUpperCaseAndReadsEitherCase) {
    const auto upper = Uuid::fromText("6BA7B810-9DAD-11D1-80B4-00C04FD430C8");
    const auto lower = Uuid::fromText("6ba7b810-9dad-11d1-80b4-00c04fd430c8");
    ASSERT_TRUE(upper && lower);
    EXPECT_EQ(*upper, *lower);
    EXPECT_EQ(lower->text(), "6BA7B810-9DAD-11D1-80B4-00C04FD430C8");
}

TEST(Uuid, ReadsNothingElse) {
    for (const char* text : {"", "6BA7B810", "6BA7B810-9DAD-11D1-80B4-00C04FD430C", "6BA7B8109DAD11D180B400C04FD430C8",
                             "{6BA7B810-9DAD-11D1-80B4-00C04FD430C8}", "6BA7B810-9DAD-11D1-80B4-00C04FD430CG",
                             "6BA7B810-9DAD-11D1-80B4-00C04FD430C8 "}) {
        EXPECT_FALSE(Uuid::fromText(text)) << text;
    }
}

TEST(Uuid, RandomOnesDiffer) {
    const Uuid one = Uuid::random();
    EXPECT_NE(one, Uuid::random());
    EXPECT_EQ(Uuid::fromText(one.text()), one);
    EXPECT_EQ(one.text()[14], '4');
}

} // namespace velloran
