#include "model/durations.h"

#include <gtest/gtest.h>

#include <clocale>
#include <locale>

namespace velloran {

TEST(Durations, SecondsWithoutAFractionHaveNoDecimals) {
    EXPECT_EQ(formatSeconds(0), "0");
    EXPECT_EQ(formatSeconds(5), "5");
    EXPECT_EQ(formatSeconds(3600), "3600");
    EXPECT_EQ(formatSeconds(10'000'000), "10000000");
}

TEST(Durations, SecondsWithAFractionHaveTwoDecimals) {
    EXPECT_EQ(formatSeconds(0.1), "0.10");
    EXPECT_EQ(formatSeconds(0.5), "0.50");
    EXPECT_EQ(formatSeconds(2.25), "2.25");
    EXPECT_EQ(formatSeconds(1.999), "2.00");
    EXPECT_EQ(formatSeconds(0.001), "0.00");
    EXPECT_EQ(formatSeconds(-0.5), "-0.50");
}

TEST(Durations, TiesGoToTheEvenDigitAsTheBinaryNumberSays) {
    EXPECT_EQ(formatSeconds(0.125), "0.12");
    EXPECT_EQ(formatSeconds(0.375), "0.38");
    EXPECT_EQ(formatSeconds(1.005), "1.00"); // a hair below as a binary number
}

TEST(Durations, IntervalIsASentence) {
    EXPECT_EQ(formatInterval(7), "1 click every 7.00 seconds");
    EXPECT_EQ(formatInterval(2), "1 click every 2.00 seconds");
    EXPECT_EQ(formatInterval(0.1), "1 click every 0.10 seconds");
    EXPECT_EQ(formatInterval(0), "1 click every 0.00 seconds");
    EXPECT_EQ(formatInterval(3600), "1 click every 3600.00 seconds");
}

TEST(Durations, IntervalIsSingularWithinTheTolerance) {
    EXPECT_EQ(formatInterval(1.0), "1 click every 1.00 second");
    EXPECT_EQ(formatInterval(1.004), "1 click every 1.00 second");
    EXPECT_EQ(formatInterval(0.996), "1 click every 1.00 second");
    EXPECT_EQ(formatInterval(1.006), "1 click every 1.01 seconds");
    EXPECT_EQ(formatInterval(0.994), "1 click every 0.99 seconds");
}

TEST(Durations, ToleranceDecidesAtTheEdgeNotTheText) {
    EXPECT_EQ(formatInterval(0.995), "1 click every 0.99 seconds");
    // 1.005 lies a hair below as well: it shows as 1.00, and its distance from 1 is a hair below the tolerance.
    EXPECT_EQ(formatInterval(1.005), "1 click every 1.00 second");
}

namespace {

/// Makes the C++ library write 1234.5 as "1.234,5".
class CommaPunctuation final : public std::numpunct<char> {
    char do_decimal_point() const override { return ','; }

    char do_thousands_sep() const override { return '.'; }

    std::string do_grouping() const override { return "\3"; }
};

} // namespace

TEST(Durations, FullStopInEveryLocale) {
    const std::locale before = std::locale::global(std::locale(std::locale::classic(), new CommaPunctuation));
    const std::string cBefore = std::setlocale(LC_ALL, nullptr);
    // Set only where it is installed; the one above needs nothing.
    std::setlocale(LC_ALL, "de_DE.UTF-8");
    const std::string seconds = formatSeconds(1234.5);
    const std::string interval = formatInterval(1234.5);
    std::locale::global(before);
    std::setlocale(LC_ALL, cBefore.c_str());
    EXPECT_EQ(seconds, "1234.50");
    EXPECT_EQ(interval, "1 click every 1234.50 seconds");
}

} // namespace velloran
