#include "base/StoredValue.h"

#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <cstring>
#include <limits>
#include <random>

namespace velloran {

namespace {

void expectSame(const StoredValue& value) {
    const std::string text = writeStoredValue(value);
    EXPECT_EQ(readStoredValue(text), value) << text;
    for (const char character : text) {
        EXPECT_TRUE(character >= ' ' && character <= '~') << text;
    }
}

void expectSameBits(double seconds) {
    const auto read = readStoredValue(writeStoredValue(Date(seconds)));
    ASSERT_TRUE(read) << seconds;
    ASSERT_TRUE(std::holds_alternative<Date>(*read)) << seconds;
    EXPECT_EQ(std::bit_cast<std::uint64_t>(std::get<Date>(*read).secondsSinceReference()),
              std::bit_cast<std::uint64_t>(seconds))
        << seconds;
}

} // namespace

TEST(StoredValue, KeepsEveryByte) {
    Bytes all;
    for (int code = 0; code < 256; ++code) {
        all += static_cast<char>(code);
    }
    expectSame(all);
    expectSame(Bytes());
    expectSame(Bytes("{\"name\":\"Steady \xe2\x80\x94 1, 2; 3\"}"));
    expectSame(Bytes(")"));
    expectSame(Bytes("\\\"\\\\"));
    // A digit behind an escape is not taken for a part of it.
    for (const char digit : {'0', '7', '9', 'a', 'F', 'g'}) {
        expectSame(Bytes(1, '\0') + digit);
        expectSame(Bytes("\x1f") + digit + digit);
    }
}

TEST(StoredValue, KeepsDatesToTheBit) {
    for (const double seconds : {0.0, -0.0, 0.1, 801234567.25, 801234567.123456789, -978307200.0, 1e300, -1e-300,
                                 std::numeric_limits<double>::denorm_min(), std::numeric_limits<double>::max()}) {
        expectSameBits(seconds);
    }
    std::mt19937_64 random(1); // NOLINT(cert-msc51-cpp): the same numbers in every run
    for (int count = 0; count < 10'000;) {
        const auto seconds = std::bit_cast<double>(random());
        if (std::isfinite(seconds)) {
            expectSameBits(seconds);
            ++count;
        }
    }
}

TEST(StoredValue, KeepsIntegersAndTruthValues) {
    for (const std::int64_t integer :
         {std::int64_t{0}, std::int64_t{1}, std::int64_t{-1}, std::numeric_limits<std::int64_t>::min(),
          std::numeric_limits<std::int64_t>::max()}) {
        expectSame(integer);
    }
    expectSame(true);
    expectSame(false);
}

TEST(StoredValue, TellsTheTypesApart) {
    EXPECT_EQ(readStoredValue("1"), StoredValue(std::int64_t{1}));
    EXPECT_EQ(readStoredValue("true"), StoredValue(true));
    EXPECT_EQ(readStoredValue("Date(1.0)"), StoredValue(Date(1.0)));
    EXPECT_EQ(readStoredValue("\"@ByteArray(1)\""), StoredValue(Bytes("1")));
}

TEST(StoredValue, ReadsOtherWaysOfWritingTheSame) {
    EXPECT_EQ(readStoredValue("@ByteArray(plain)"), StoredValue(Bytes("plain")));
    EXPECT_EQ(readStoredValue(R"-("@ByteArray(\a\b\f\n\r\t\v\"\?\'\\)")-"), StoredValue(Bytes("\a\b\f\n\r\t\v\"?'\\")));
    EXPECT_EQ(readStoredValue(R"-("@ByteArray(\0\101\x41)")-"), StoredValue(Bytes("\0AA", 3)));
    EXPECT_EQ(readStoredValue("\"@ByteArray(\xe2\x80\x94)\""), StoredValue(Bytes("\xe2\x80\x94")));
    EXPECT_EQ(readStoredValue("Date(5)"), StoredValue(Date(5.0)));
}

TEST(StoredValue, ReadsNothingFromAnythingElse) {
    for (const char* const text : {"",
                                   "text",
                                   "TRUE",
                                   "1.5",
                                   "1e3",
                                   "0x10",
                                   "9223372036854775808",
                                   "1, 2",
                                   "\"open",
                                   "\"@ByteArray(open\"",
                                   "@ByteArray(",
                                   "@ByteArray",
                                   ")",
                                   "Date()",
                                   "Date(now)",
                                   "Date(inf)",
                                   "Date(nan)",
                                   "Date(1.0",
                                   R"-("@ByteArray(\q)")-",
                                   R"-("@ByteArray(\x)")-",
                                   R"-("@ByteArray(\x100)")-",
                                   R"-("@ByteArray(\777)")-",
                                   "@ByteArray(a), @ByteArray(b)",
                                   "\\",
                                   "@Invalid()",
                                   "@Variant(\\0)"}) {
        EXPECT_EQ(readStoredValue(text), std::nullopt) << text;
    }
}

} // namespace velloran
