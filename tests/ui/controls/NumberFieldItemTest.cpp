#include "ui/controls/NumberFieldStage.h"

#include <QAccessible>
#include <QTest>

#include <gtest/gtest.h>

namespace velloran::test {
namespace {

/// A field that edits a number of its own, and a button beside it.
QByteArray field(const QByteArray& model, const QByteArray& view = {}) {
    return "property real number: 50\n"
           "NumberField { objectName: \"field\"; x: 20; y: 20; width: 240; label: \"Clicks\";\n" +
           view +
           "\nmodel: RealFieldModel { value: stage.number; from: 1; to: 100;"
           "onStored: number => { stage.note(number); stage.number = number; }\n" +
           model +
           "} }\n"
           "PrimaryActionButton { objectName: \"start\"; x: 20; y: 120; width: 200; title: \"Start\"; systemImage: "
           "\"play.fill\";"
           "onTriggered: stage.note(\"start\") }";
}

TEST(NumberFieldItem, StoresOnReturnAndShowsTheBadge) {
    Stage stage(field("decimals: 0"));
    retype(stage, "500");
    EXPECT_TRUE(stage.shows("Update"));
    EXPECT_TRUE(stage.takeLog().isEmpty());
    stage.key(Qt::Key_Return);
    EXPECT_EQ(stage.takeLog(), QStringList("100"));
    EXPECT_EQ(shownText(stage), "100");
    EXPECT_FALSE(stage.shows("Update"));
    EXPECT_TRUE(stage.shows("Updated"));
    stage.platform.loop.runDue();
    stage.platform.loop.advance(1.4);
    EXPECT_FALSE(stage.shows("Updated"));
}

TEST(NumberFieldItem, UpdateStoresAndLeavesTheFocusWhereItIs) {
    Stage stage(field("decimals: 0"));
    retype(stage, "60");
    stage.click(stage.showing("Update"));
    EXPECT_EQ(stage.takeLog(), QStringList("60"));
    EXPECT_TRUE(stage.item("NumberInput").hasActiveFocus());
    EXPECT_TRUE(stage.shows("Updated"));
}

TEST(NumberFieldItem, SteppingDropsWhatWasTypedAndTakesNoFocus) {
    Stage stage(field("decimals: 0; step: 10"));
    retype(stage, "77");
    stage.click(*stage.itemsOf("StepperButton").at(0));
    EXPECT_EQ(stage.takeLog(), QStringList("60"));
    EXPECT_EQ(shownText(stage), "60");
    EXPECT_TRUE(stage.item("NumberInput").hasActiveFocus());
    EXPECT_FALSE(stage.shows("Updated"));
    stage.click(*stage.itemsOf("StepperButton").at(1));
    EXPECT_EQ(stage.takeLog(), QStringList("50"));
}

TEST(NumberFieldItem, SteppingDoesNotGiveTheFieldTheFocus) {
    Stage stage(field("decimals: 0; step: 10"));
    stage.click(*stage.itemsOf("StepperButton").at(0));
    EXPECT_EQ(stage.takeLog(), QStringList("60"));
    EXPECT_FALSE(stage.item("NumberInput").hasActiveFocus());
}

TEST(NumberFieldItem, LeavingStoresBeforeAnotherButtonActs) {
    Stage stage(field("decimals: 0"));
    retype(stage, "33");
    stage.click(stage.item("start"));
    EXPECT_EQ(stage.takeLog(), (QStringList{"33", "start"}));
}

TEST(NumberFieldItem, LeavingAnUntouchedFieldStoresWhatItShows) {
    Stage stage(field("decimals: 0"));
    stage.root->setProperty("number", 2.5);
    EXPECT_EQ(shownText(stage), "2");
    stage.key(Qt::Key_Tab);
    EXPECT_TRUE(stage.item("NumberInput").hasActiveFocus());
    stage.key(Qt::Key_Tab);
    EXPECT_EQ(stage.takeLog(), QStringList("2"));
    EXPECT_FALSE(stage.shows("Updated"));
}

TEST(NumberFieldItem, TellsEqualNumbersToo) {
    Stage stage(field("decimals: 0"));
    retype(stage, "50");
    stage.key(Qt::Key_Return);
    stage.key(Qt::Key_Enter);
    EXPECT_EQ(stage.takeLog(), (QStringList{"50", "50"}));
    EXPECT_FALSE(stage.shows("Updated"));
}

TEST(NumberFieldItem, RevertsWhatIsNoNumber) {
    Stage stage(field("decimals: 0"));
    for (const char* text : {"abc", "4,5", ""}) {
        retype(stage, text);
        stage.key(Qt::Key_Return);
        EXPECT_EQ(shownText(stage), "50") << text;
        EXPECT_TRUE(stage.takeLog().isEmpty()) << text;
        EXPECT_FALSE(stage.shows("Updated")) << text;
    }
}

TEST(NumberFieldItem, BlanksAroundAreNoChange) {
    Stage stage(field("decimals: 0"));
    retype(stage, " 50 ");
    EXPECT_FALSE(stage.shows("Update"));
    stage.key(Qt::Key_Return);
    EXPECT_EQ(shownText(stage), "50");
}

TEST(NumberFieldItem, AnOutsideChangeWaitsForTheFocusToGo) {
    Stage stage(field("decimals: 0"));
    retype(stage, "77");
    stage.root->setProperty("number", 20);
    EXPECT_EQ(shownText(stage), "77");
    stage.key(Qt::Key_Tab);
    EXPECT_EQ(stage.takeLog(), QStringList("77"));
    stage.root->setProperty("number", 20);
    EXPECT_EQ(shownText(stage), "20");
}

TEST(NumberFieldItem, TheArrowKeysStep) {
    Stage stage(field("step: 0.5; decimals: 1"));
    stage.key(Qt::Key_Tab);
    stage.key(Qt::Key_Up);
    stage.key(Qt::Key_Down);
    EXPECT_EQ(stage.takeLog(), (QStringList{"50.5", "50"}));
    EXPECT_EQ(shownText(stage), "50.0");
}

TEST(NumberFieldItem, ShowsWhatItIsToldTo) {
    Stage stage("NumberField { objectName: \"real\"; label: \"A\"; placeholder: \"none\"; model: RealFieldModel { "
                "value: 1; from: 0; to: 9 } }"
                "NumberField { objectName: \"unit\"; y: 60; label: \"B\"; suffix: \"seconds\";"
                "model: RealFieldModel { value: 1; from: 0; to: 9; decimals: 2; step: 1 } }");
    const auto text = [&](const char* name) {
        return Stage::itemsOf("NumberInput", stage.item(name)).at(0)->property("text").toString();
    };
    EXPECT_EQ(text("real"), "1.0");
    EXPECT_EQ(text("unit"), "1.00");
    EXPECT_TRUE(stage.shows("seconds"));
    const auto steppers = [&](const char* name) { return Stage::itemsOf("StepperButton", stage.item(name)); };
    EXPECT_FALSE(steppers("real").at(0)->isVisible());
    EXPECT_TRUE(steppers("unit").at(0)->isVisible());
    EXPECT_FALSE(stage.shows("none"));
    retype(stage, "");
    EXPECT_TRUE(stage.shows("none"));
}

TEST(NumberFieldItem, IsInertWhileDisabled) {
    Stage stage(field("decimals: 0; step: 10", "disabled: true"));
    EXPECT_EQ(stage.item("field").opacity(), 0.55);
    EXPECT_EQ(stage.itemsOf("StepperButton").at(0)->parentItem()->opacity(), 0.4);
    stage.click(*stage.itemsOf("StepperButton").at(0));
    stage.click(stage.item("NumberInput"));
    EXPECT_FALSE(stage.item("NumberInput").hasActiveFocus());
    stage.type("7");
    EXPECT_TRUE(stage.takeLog().isEmpty());
    EXPECT_EQ(shownText(stage), "50");
}

TEST(NumberFieldItem, HasItsMeasures) {
    Stage stage(field("decimals: 0; step: 10", "suffix: \"seconds\""));
    const QRectF outer = Stage::frame(stage.item("field"));
    const QRectF input = Stage::frame(stage.item("NumberInput"));
    const QRectF unit = Stage::frame(stage.showing("seconds"));
    const QRectF up = Stage::frame(*stage.itemsOf("StepperButton").at(0));
    const QRectF down = Stage::frame(*stage.itemsOf("StepperButton").at(1));
    EXPECT_EQ(input.left(), outer.left() + 12);
    EXPECT_EQ(up.right(), outer.right() - 12);
    EXPECT_EQ(up.size(), QSizeF(16, 11));
    EXPECT_EQ(down.top(), up.bottom() + 2);
    EXPECT_EQ(up.top(), outer.top() + 9);
    EXPECT_EQ(down.bottom(), outer.bottom() - 9);
    EXPECT_EQ(unit.left(), input.right() + 8);
    EXPECT_EQ(up.left(), unit.right() + 8);
    EXPECT_EQ(unit.center().y(), outer.center().y());

    retype(stage, "7");
    const QRectF update = Stage::frame(stage.item("CommitNote"));
    const QRectF label = Stage::frame(stage.showing("Update"));
    EXPECT_EQ(update.right() + 8, Stage::frame(*stage.itemsOf("StepperButton").at(0)).left());
    EXPECT_EQ(label.right(), update.right() - 10);
    EXPECT_EQ(Stage::frame(stage.showing("seconds")).right() + 8 + 10, label.left());
    EXPECT_EQ(Stage::frame(stage.item("field")), outer);
}

TEST(NumberFieldItem, NothingIsCutAtItsLeastWidth) {
    Stage stage("property real number: 3600\n"
                "NumberField { id: it; objectName: \"field\"; width: Math.max(110, it.minimumWidth); label: \"Delay\";"
                "model: RealFieldModel { decimals: 0; step: 1; value: stage.number; from: 0; to: 3600;"
                "onStored: number => stage.number = number } }");
    EXPECT_EQ(stage.item("field").width(), 110);
    retype(stage, "3599");
    const auto expectUncut = [&] {
        const QQuickItem& input = stage.item("NumberInput");
        EXPECT_GE(input.width(), input.property("contentWidth").toDouble());
        EXPECT_LE(Stage::frame(*stage.itemsOf("StepperButton").at(0)).right(),
                  Stage::frame(stage.item("field")).right() - 12);
    };
    expectUncut();
    EXPECT_GT(stage.item("field").width(), 110);
    stage.key(Qt::Key_Return);
    EXPECT_TRUE(stage.shows("Updated"));
    expectUncut();
    stage.platform.loop.runDue();
    stage.platform.loop.advance(1.4);
    EXPECT_EQ(stage.item("field").width(), 110);
    stage.setTheme("fontScale", 1.3);
    retype(stage, "3598");
    expectUncut();
}

TEST(NumberFieldItem, ItsBorderTellsItsState) {
    Stage stage(field("decimals: 0"));
    const auto stroke = [&] {
        return Stage::itemsOf("RoundedFace", stage.item("field")).at(0)->property("stroke").value<QColor>();
    };
    EXPECT_EQ(stroke().name(QColor::HexArgb), stage.themeColor("fieldStroke").name(QColor::HexArgb));
    stage.click(stage.item("NumberInput"));
    EXPECT_EQ(stroke().name(QColor::HexArgb), stage.themeColor("fieldStrokeFocus").name(QColor::HexArgb));
    stage.type("1");
    QColor pending = stage.themeColor("accentBlue");
    pending.setAlphaF(0.6F);
    EXPECT_EQ(stroke().name(QColor::HexArgb), pending.name(QColor::HexArgb));
}

TEST(NumberFieldItem, TheUpdateButtonFades) {
    Stage stage(field("decimals: 0"));
    stage.setTheme("reducedMotion", false);
    retype(stage, "7");
    QQuickItem& button = *Stage::itemsOf("PlainButton", stage.item("CommitNote")).at(0);
    EXPECT_LT(button.opacity(), 1);
    EXPECT_TRUE(QTest::qWaitFor([&] { return button.opacity() == 1; }, 2000));
}

TEST(NumberFieldItem, TellsAssistiveTools) {
    Stage stage(field("decimals: 0; step: 10"));
    const auto name = [](QQuickItem& item) {
        return QAccessible::queryAccessibleInterface(&item)->text(QAccessible::Name);
    };
    EXPECT_EQ(name(stage.item("NumberInput")), "Clicks");
    EXPECT_EQ(QAccessible::queryAccessibleInterface(&stage.item("NumberInput"))->role(), QAccessible::EditableText);
    QQuickItem& up = *stage.itemsOf("StepperButton").at(0);
    QQuickItem& down = *stage.itemsOf("StepperButton").at(1);
    EXPECT_EQ(name(up), "Increase Clicks");
    EXPECT_EQ(name(down), "Decrease Clicks");
    Stage::act(up, "Press");
    EXPECT_EQ(stage.takeLog(), QStringList("60"));
    Stage::act(down, "Press");
    EXPECT_EQ(stage.takeLog(), QStringList("50"));
    retype(stage, "8");
    QQuickItem& update = *Stage::itemsOf("PlainButton", stage.item("CommitNote")).at(0);
    EXPECT_EQ(name(update), "Update");
    Stage::act(update, "Press");
    EXPECT_EQ(stage.takeLog(), QStringList("8"));
}

} // namespace
} // namespace velloran::test
