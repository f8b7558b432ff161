#include "fakes/VirtualLoop.h"
#include "ui/controls/NumberFieldLogic.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <vector>

namespace velloran::ui {
namespace {

/// A field and what it has told its surroundings.
template<typename T>
struct Bench {
    using Field = NumberField<T>;

    Bench(T value, typename Field::Settings settings)
        : field(loop, value, std::move(settings),
                {.store = [this](T number) { stored.push_back(number); }, .changed = [this] { ++changes; }}) {}

    /// Types into the focused field.
    void type(const std::string& text) {
        field.beginEditing();
        field.type(text);
    }

    void typeAndReturn(const std::string& text) {
        type(text);
        field.commitWithFlash();
    }

    void typeAndLeave(const std::string& text) {
        type(text);
        field.endEditing();
    }

    fakes::VirtualLoop loop;
    std::vector<T> stored;
    int changes = 0;
    Field field;
};

using Integers = Bench<std::int64_t>;
using Reals = Bench<double>;

std::function<std::string(double)> decimals(int digits) {
    return [digits](double value) { return fixedDecimal(value, digits); };
}

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

TEST(NumberField, TakesOneLeadingPlusAndAnExponent) {
    Reals bench(1, {0, 1000, {}, {}});
    bench.typeAndReturn("+2.5");
    EXPECT_EQ(bench.field.value(), 2.5);
    bench.typeAndReturn("1e2");
    EXPECT_EQ(bench.field.value(), 100);
    bench.typeAndReturn("++3");
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

TEST(NumberField, TheBadgesTaskOutlivesTheField) {
    fakes::VirtualLoop loop;
    {
        NumberField<std::int64_t> field(loop, 1, {0, 10, {}, {}}, {});
        field.type("2");
        field.commitWithFlash();
        EXPECT_TRUE(field.justUpdated());
    }
    loop.runDue();
    loop.advance(2);
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

TEST(NumberFieldDeathTest, ARangeUpsideDownIsAFault) {
    fakes::VirtualLoop loop;
    EXPECT_DEATH((NumberField<std::int64_t>(loop, 1, {10, 0, {}, {}}, {})), "Fatal error: The lower bound");
}

TEST(NumberFieldDeathTest, SteppingOutOfTheTypeIsAFault) {
    constexpr std::int64_t most = std::numeric_limits<std::int64_t>::max();
    EXPECT_DEATH(
        {
            fakes::VirtualLoop loop;
            NumberField<std::int64_t> field(loop, most, {0, most, 1, {}}, {});
            field.stepUp();
        },
        "Fatal error: Arithmetic overflow");
}

} // namespace
} // namespace velloran::ui
