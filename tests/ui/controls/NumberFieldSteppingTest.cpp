#include "ui/controls/NumberFieldBench.h"

#include <gtest/gtest.h>

#include <limits>

namespace velloran::test {
namespace {

TEST(NumberField, ComparesWhatIsShownForTheBadge) {
    Reals bench(1.00, {0, 10, {}, decimals(2)});
    bench.typeAndReturn("1.004");
    EXPECT_EQ(bench.field.value(), 1.004);
    EXPECT_EQ(bench.field.text(), "1.00");
    EXPECT_FALSE(bench.field.justUpdated());
    bench.typeAndReturn("1.006");
    EXPECT_EQ(bench.field.text(), "1.01");
    EXPECT_TRUE(bench.field.justUpdated());
}

TEST(NumberField, ASecondChangeKeepsTheBadgeForItsOwnTime) {
    Integers bench(50, {1, 100, {}, {}});
    bench.typeAndReturn("60");
    bench.loop.runDue();
    bench.loop.advance(1.0);
    bench.typeAndReturn("70");
    bench.loop.runDue();
    // The first one's time is over.
    bench.loop.advance(0.4);
    EXPECT_TRUE(bench.field.justUpdated());
    bench.loop.advanceNanoseconds(999'999'999);
    EXPECT_TRUE(bench.field.justUpdated());
    bench.loop.advanceNanoseconds(1);
    EXPECT_FALSE(bench.field.justUpdated());
}

TEST(NumberField, ACommitWithoutAChangeLeavesARunningBadgeAlone) {
    Integers bench(50, {1, 100, {}, {}});
    bench.typeAndReturn("60");
    bench.loop.runDue();
    bench.loop.advance(1.0);
    bench.field.endEditing();
    EXPECT_TRUE(bench.field.justUpdated());
    bench.loop.advance(0.4);
    EXPECT_FALSE(bench.field.justUpdated());
}

TEST(NumberField, TheBadgeRunsOnUnderAPendingChange) {
    Integers bench(50, {1, 100, {}, {}});
    bench.typeAndReturn("60");
    bench.loop.runDue();
    bench.loop.advance(1.0);
    bench.field.type("61");
    EXPECT_TRUE(bench.field.hasPendingChange());
    EXPECT_TRUE(bench.field.justUpdated());
    bench.loop.advance(0.4);
    EXPECT_TRUE(bench.field.hasPendingChange());
    EXPECT_FALSE(bench.field.justUpdated());
}

TEST(NumberField, FocusIsGoneBeforeTheCommitThatItsLossBrings) {
    fakes::VirtualLoop loop;
    bool wasFocused = true;
    NumberField<std::int64_t>* field = nullptr;
    NumberField<std::int64_t> real(loop, 1, {0, 10, {}, {}},
                                   {.store = [&](std::int64_t) { wasFocused = field->isFocused(); }, .changed = {}});
    field = &real;
    real.beginEditing();
    real.type("2");
    real.endEditing();
    EXPECT_FALSE(wasFocused);
}

TEST(NumberField, StepsByPlainAdditionAndThenClamps) {
    Reals bench(0.1, {0.01, 1, 0.05, decimals(2)});
    bench.field.stepUp();
    EXPECT_EQ(bench.field.value(), 0.1 + 0.05);
    bench.field.stepDown();
    EXPECT_EQ(bench.field.value(), 0.1 + 0.05 + (0 - 0.05));
    EXPECT_FALSE(bench.field.justUpdated());
    bench.field.stepDown();
    bench.field.stepDown();
    EXPECT_EQ(bench.field.value(), 0.01);
    EXPECT_EQ(bench.field.text(), "0.01");
}

TEST(NumberField, StaysOnABoundAndStoresItAgain) {
    Integers bench(100, {1, 100, 10, {}});
    bench.field.stepUp();
    EXPECT_EQ(bench.field.value(), 100);
    EXPECT_EQ(bench.stored, std::vector<std::int64_t>{100});
    bench.field.stepDown();
    EXPECT_EQ(bench.field.value(), 90);
    Integers low(5, {1, 100, 10, {}});
    low.field.stepDown();
    EXPECT_EQ(low.field.value(), 1);
}

TEST(NumberField, SteppingDropsWhatWasTyped) {
    Integers bench(50, {1, 100, 10, {}});
    bench.type("77");
    bench.field.stepUp();
    EXPECT_EQ(bench.stored, std::vector<std::int64_t>{60});
    EXPECT_EQ(bench.field.text(), "60");
    EXPECT_FALSE(bench.field.hasPendingChange());
    EXPECT_FALSE(bench.field.justUpdated());
}

TEST(NumberField, WithoutAStepThereIsNoStepping) {
    Integers bench(50, {1, 100, {}, {}});
    bench.type("77");
    bench.field.stepUp();
    bench.field.stepDown();
    EXPECT_TRUE(bench.stored.empty());
    EXPECT_EQ(bench.field.text(), "77");
}

TEST(NumberField, FollowsAChangeFromOutsideUnlessItIsBeingEdited) {
    Integers bench(50, {1, 100, {}, {}});
    bench.field.valueChanged(60);
    EXPECT_EQ(bench.field.text(), "60");
    EXPECT_TRUE(bench.stored.empty());

    bench.type("77");
    bench.field.valueChanged(80);
    EXPECT_EQ(bench.field.text(), "77");
    EXPECT_TRUE(bench.field.hasPendingChange());
    bench.field.endEditing();
    EXPECT_EQ(bench.stored, std::vector<std::int64_t>{77});
    EXPECT_TRUE(bench.field.justUpdated());
}

TEST(NumberField, ShowsAnOutsideValueBeyondItsBoundsAsItIs) {
    Integers bench(50, {1, 100, 10, {}});
    bench.field.valueChanged(500);
    EXPECT_EQ(bench.field.text(), "500");
    bench.field.stepUp();
    EXPECT_EQ(bench.field.value(), 100);
}

TEST(NumberField, NewSettingsReshapeTheTextThatIsNotPending) {
    Reals bench(2.5, {0, 10, {}, decimals(2)});
    bench.field.setSettings({0, 10, {}, decimals(1)});
    EXPECT_EQ(bench.field.text(), "2.5");
    bench.type("3");
    bench.field.setSettings({0, 10, {}, decimals(2)});
    EXPECT_EQ(bench.field.text(), "3");
    EXPECT_EQ(bench.field.value(), 2.5);
}

TEST(NumberField, TheBadgeEndsWithTheField) {
    fakes::VirtualLoop loop;
    {
        NumberField<std::int64_t> field(loop, 1, {0, 10, {}, {}}, {});
        field.type("2");
        field.commitWithFlash();
        EXPECT_TRUE(field.justUpdated());
        EXPECT_EQ(loop.pendingCalls(), 1U);
    }
    EXPECT_EQ(loop.pendingCalls(), 0U);
}

TEST(NumberField, TheSameNumberFromItsOwnerWhileStoringChangesNothing) {
    fakes::VirtualLoop loop;
    NumberField<double>* field = nullptr;
    NumberField<double> real(loop, 1, {0, 10, {}, {}},
                             {.store = [&](double number) { field->valueChanged(number); }, .changed = {}});
    field = &real;
    real.type("2");
    real.commitWithFlash();
    EXPECT_EQ(real.value(), 2);
    EXPECT_EQ(real.text(), "2.0");
    EXPECT_TRUE(real.justUpdated());
}

TEST(NumberField, SteppingAtTheEndOfTheNumbersStaysThere) {
    constexpr std::int64_t most = std::numeric_limits<std::int64_t>::max();
    constexpr std::int64_t least = std::numeric_limits<std::int64_t>::min();
    Integers above(most, {least, most, 10, {}});
    above.field.stepUp();
    EXPECT_EQ(above.field.value(), most);
    above.field.stepDown();
    EXPECT_EQ(above.field.value(), most - 10);
    Integers below(least + 3, {least, most, 10, {}});
    below.field.stepDown();
    EXPECT_EQ(below.field.value(), least);
    Integers back(least, {least, most, least, {}});
    back.field.stepDown();
    EXPECT_EQ(back.field.value(), -1);

    // What comes from a file may lie far outside.
    Integers limited(most, {1, 10'000'000, 10, {}});
    limited.field.stepUp();
    EXPECT_EQ(limited.field.value(), 10'000'000);
    limited.field.valueChanged(least);
    limited.field.stepDown();
    EXPECT_EQ(limited.field.value(), 1);
}

TEST(NumberField, RealsStayFiniteHoweverFarTheyAreStepped) {
    constexpr double most = std::numeric_limits<double>::max();
    Reals above(most, {-most, most, most, {}});
    above.field.stepUp();
    EXPECT_EQ(above.field.value(), most);
    Reals below(-most, {-most, most, most, {}});
    below.field.stepDown();
    EXPECT_EQ(below.field.value(), -most);
}

TEST(NumberField, ShowsEveryWholeNumberToItsLastDigit) {
    constexpr std::int64_t most = std::numeric_limits<std::int64_t>::max();
    Integers bench(most, {1, most, {}, {}});
    EXPECT_EQ(bench.field.text(), "9223372036854775807");
    EXPECT_FALSE(bench.field.hasPendingChange());
    bench.typeAndReturn("9007199254740993");
    EXPECT_EQ(bench.stored, std::vector<std::int64_t>{9'007'199'254'740'993});
    bench.field.valueChanged(std::numeric_limits<std::int64_t>::min());
    bench.field.endEditing();
    bench.field.valueChanged(std::numeric_limits<std::int64_t>::min());
    EXPECT_EQ(bench.field.text(), "-9223372036854775808");
}

} // namespace
} // namespace velloran::test
