#include "ui/controls/NumberFieldBench.h"

#include <gtest/gtest.h>

namespace velloran::test {
namespace {

TEST(NumberField, ShowsAnIntegerInDigitsAndARealInItsShortestForm) {
    EXPECT_EQ(Integers(50, {1, 100, {}, {}}).field.text(), "50");
    EXPECT_EQ(Reals(1.0, {0, 10, {}, {}}).field.text(), "1.0");
    EXPECT_EQ(Reals(0.1 + 0.2, {0, 10, {}, {}}).field.text(), "0.30000000000000004");
    EXPECT_EQ(Reals(2.5, {0, 10, {}, decimals(2)}).field.text(), "2.50");
}

TEST(NumberField, ClampsWhatIsTypedAndAcknowledgesItFor1400Milliseconds) {
    Integers bench(50, {1, 100, {}, {}});
    bench.typeAndReturn("500");
    EXPECT_EQ(bench.stored, std::vector<std::int64_t>{100});
    EXPECT_EQ(bench.field.text(), "100");
    EXPECT_TRUE(bench.field.justUpdated());
    EXPECT_FALSE(bench.field.hasPendingChange());

    bench.loop.runDue();
    bench.loop.advanceNanoseconds(1'399'999'999);
    EXPECT_TRUE(bench.field.justUpdated());
    const int before = bench.changes;
    bench.loop.advanceNanoseconds(1);
    EXPECT_FALSE(bench.field.justUpdated());
    EXPECT_GT(bench.changes, before);
    EXPECT_EQ(bench.loop.pendingCalls(), 0U);
}

TEST(NumberField, TakesTheNearestBound) {
    Integers bench(50, {1, 100, {}, {}});
    bench.typeAndReturn("-3");
    EXPECT_EQ(bench.field.value(), 1);
    bench.typeAndReturn("101");
    EXPECT_EQ(bench.field.value(), 100);
    Reals reals(1, {0.01, 3600, {}, decimals(2)});
    reals.typeAndReturn("0");
    EXPECT_EQ(reals.field.value(), 0.01);
    reals.typeAndReturn("1e300");
    EXPECT_EQ(reals.field.value(), 3600);
}

TEST(NumberField, DoesNotMindBlanksAround) {
    Integers bench(42, {1, 100, {}, {}});
    for (const std::string text : {" 42 ", "\t42", "42\xc2\xa0",
                                   "\xe3\x80\x80"
                                   "42"}) {
        bench.type(text);
        EXPECT_FALSE(bench.field.hasPendingChange()) << text;
    }
    bench.typeAndReturn("  7\t");
    EXPECT_EQ(bench.field.value(), 7);
    EXPECT_EQ(bench.field.text(), "7");
}

TEST(NumberField, DoesNotStripLineBreaks) {
    Integers bench(42, {1, 100, {}, {}});
    bench.type("42\n");
    EXPECT_TRUE(bench.field.hasPendingChange());
    bench.field.commitWithFlash();
    EXPECT_TRUE(bench.stored.empty());
    EXPECT_EQ(bench.field.text(), "42");
}

TEST(NumberField, RevertsWhatIsNoNumberWithoutABadge) {
    Integers bench(50, {1, 100, {}, {}});
    for (const std::string text : {"abc", "4.5", "1e1", "0x10", "--4", "4 2", "99999999999999999999"}) {
        bench.typeAndLeave(text);
        EXPECT_EQ(bench.field.text(), "50") << text;
        EXPECT_FALSE(bench.field.justUpdated()) << text;
    }
    EXPECT_TRUE(bench.stored.empty());
    EXPECT_EQ(bench.loop.pendingCalls(), 0U);

    Reals reals(2.5, {0, 10, {}, {}});
    for (const std::string text : {"abc", "1,5", "nan", "inf", "1e999", "0x1p3"}) {
        reals.typeAndLeave(text);
        EXPECT_EQ(reals.field.text(), "2.5") << text;
    }
    EXPECT_TRUE(reals.stored.empty());
}

TEST(NumberField, RevertsAnEmptiedField) {
    Integers bench(50, {1, 100, {}, {}});
    bench.typeAndReturn("");
    EXPECT_EQ(bench.field.text(), "50");
    bench.typeAndReturn(" \t ");
    EXPECT_EQ(bench.field.text(), "50");
    EXPECT_TRUE(bench.stored.empty());
    EXPECT_FALSE(bench.field.justUpdated());
}

TEST(NumberField, RewritesAnEqualNumberWithoutABadge) {
    Reals bench(5.0, {0, 10, {}, {}});
    bench.type("5");
    EXPECT_TRUE(bench.field.hasPendingChange());
    bench.field.commitWithFlash();
    EXPECT_EQ(bench.stored, std::vector<double>{5.0});
    EXPECT_EQ(bench.field.text(), "5.0");
    EXPECT_FALSE(bench.field.justUpdated());
}

TEST(NumberField, IsPendingWhereTheTextDiffersAndTheNumberDoesNot) {
    Reals bench(7.0, {0, 10, {}, decimals(2)});
    bench.type("7");
    EXPECT_TRUE(bench.field.hasPendingChange());
    bench.type("7.00");
    EXPECT_FALSE(bench.field.hasPendingChange());
}

TEST(NumberField, ReadsTypedTextPlainlyAndNeverThroughTheForm) {
    Reals bench(1, {0, 100, {}, [](double value) { return fixedDecimal(value * 10, 0) + " %"; }});
    EXPECT_EQ(bench.field.text(), "10 %");
    bench.typeAndReturn("30 %");
    EXPECT_EQ(bench.field.value(), 1);
    bench.typeAndReturn("3");
    EXPECT_EQ(bench.field.value(), 3);
    EXPECT_EQ(bench.field.text(), "30 %");
}

TEST(NumberField, LeavingAnUntouchedFieldStoresTheTextItShows) {
    Reals bench(2.5, {0, 10, 1.0, decimals(0)});
    EXPECT_EQ(bench.field.text(), "2");
    bench.field.beginEditing();
    bench.field.endEditing();
    EXPECT_EQ(bench.stored, std::vector<double>{2.0});
    EXPECT_FALSE(bench.field.justUpdated());
}

TEST(NumberField, TakesOneLeadingPlusAndAnExponent) {
    Reals bench(1, {0, 1000, {}, {}});
    bench.typeAndReturn("+2.5");
    EXPECT_EQ(bench.field.value(), 2.5);
    bench.typeAndReturn("1e2");
    EXPECT_EQ(bench.field.value(), 100);
    bench.typeAndReturn("++3");
    EXPECT_EQ(bench.field.value(), 100);
}

TEST(NumberFieldDeathTest, ARangeUpsideDownIsAFault) {
    fakes::VirtualLoop loop;
    EXPECT_DEATH((NumberField<std::int64_t>(loop, 1, {10, 0, {}, {}}, {})), "Fatal error: The lower bound");
}

} // namespace
} // namespace velloran::test
