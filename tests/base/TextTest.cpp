#include "base/text.h"

#include <gtest/gtest.h>

#include <clocale>
#include <limits>

namespace velloran {

TEST(Text, TrimsTabsAndEverySpaceSeparator) {
    EXPECT_EQ(trimmed("  \tWork\t "), "Work");
    EXPECT_EQ(trimmed("\u00A0\u2003\u3000Work at home\u202F\u1680"), "Work at home");
    EXPECT_EQ(trimmed(" \t\u3000 "), "");
    EXPECT_EQ(trimmed(""), "");
}

TEST(Text, KeepsLineBreaksAndOtherInvisibles) {
    EXPECT_EQ(trimmed(" \nWork\r\n "), "\nWork\r\n");
    EXPECT_EQ(trimmed("\u2028x\u2029"), "\u2028x\u2029");
    EXPECT_EQ(trimmed("\u200Bx"), "\u200Bx");
}

TEST(Text, TrimsNothingOffTextThatIsNotWellFormed) {
    EXPECT_EQ(trimmed("\xA0x\xA0"), "\xA0x\xA0");
    EXPECT_EQ(trimmed(" \xE3\x80 "), "\xE3\x80");
}

TEST(Text, UpperCasesByUnicodeInEveryLocale) {
    EXPECT_EQ(upperCased("i"), "I");
    EXPECT_EQ(upperCased("ß"), "SS");
    EXPECT_EQ(upperCased("éя"), "ÉЯ");
    EXPECT_EQ(upperCased("1;"), "1;");
    EXPECT_EQ(upperCased(""), "");
}

TEST(Text, KnowsWellFormedUtf8) {
    EXPECT_TRUE(isValidUtf8("Steady — ⌃⌥S"));
    EXPECT_TRUE(isValidUtf8(""));
    EXPECT_FALSE(isValidUtf8("\xC3"));
    EXPECT_FALSE(isValidUtf8("\xED\xA0\x80"));
    EXPECT_FALSE(isValidUtf8("a\xFF"));
}

TEST(Text, WritesShortestDecimalsWithAFraction) {
    EXPECT_EQ(shortestDecimal(3600.0), "3600.0");
    EXPECT_EQ(shortestDecimal(0.01), "0.01");
    EXPECT_EQ(shortestDecimal(-2.0), "-2.0");
    EXPECT_EQ(shortestDecimal(0.1 + 0.2), "0.30000000000000004");
    EXPECT_EQ(shortestDecimal(1e300), "1e+300");
}

TEST(Text, WritesFixedDecimals) {
    EXPECT_EQ(fixedDecimal(1.999, 2), "2.00");
    EXPECT_EQ(fixedDecimal(0.125, 2), "0.12");
    EXPECT_EQ(fixedDecimal(2.5, 0), "2");
    EXPECT_EQ(fixedDecimal(std::numeric_limits<double>::max(), 2).size(), 312U);
}

TEST(Text, WritesPlainIntegers) {
    EXPECT_EQ(decimal(10'000'000), "10000000");
    EXPECT_EQ(decimal(-1), "-1");
}

TEST(Text, ReadsReals) {
    EXPECT_EQ(parseReal("42"), 42.0);
    EXPECT_EQ(parseReal("+2.5"), 2.5);
    EXPECT_EQ(parseReal("-1e-3"), -0.001);
    EXPECT_EQ(parseReal(".5"), 0.5);
    EXPECT_EQ(parseReal("5."), 5.0);
}

TEST(Text, ReadsNothingElseAsAReal) {
    for (const char* text : {"", "+", "abc", "1,5", "0x10", "++1", "+-1", "1 2", "inf", "nan", "1e999", "1.5s", " 1"}) {
        EXPECT_EQ(parseReal(text), std::nullopt) << text;
    }
}

TEST(Text, ReadsIntegers) {
    EXPECT_EQ(parseInteger("42"), 42);
    EXPECT_EQ(parseInteger("+7"), 7);
    EXPECT_EQ(parseInteger("-9223372036854775808"), std::numeric_limits<std::int64_t>::min());
    for (const char* text : {"", "1.0", "1e3", "9223372036854775808", "+-1", "abc", "0x1"}) {
        EXPECT_EQ(parseInteger(text), std::nullopt) << text;
    }
}

} // namespace velloran
