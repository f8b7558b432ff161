#include "harness/Stage.h"

#include <QAccessible>

#include <gtest/gtest.h>

namespace velloran::test {
namespace {

QAccessibleInterface& accessible(QQuickItem& item) {
    return *QAccessible::queryAccessibleInterface(&item);
}

/// The one button inside a control.
QQuickItem& button(const Stage& stage, const QString& name) {
    return *Stage::itemsOf("AbstractButton", stage.item(name)).at(0);
}

const QByteArray checkboxes =
    "Checkbox { objectName: \"off\"; x: 10; y: 10; width: 300; isOn: false; label: \"Sound & light\";"
    "onToggled: on => stage.note(\"off to \" + on) }"
    "Checkbox { objectName: \"on\"; x: 10; y: 50; width: 300; isOn: true; label: \"On\";"
    "onToggled: on => stage.note(\"on to \" + on) }";

TEST(Checkbox, TogglesWhereverItsRowIsPressed) {
    Stage stage(checkboxes);
    const QRectF row = Stage::frame(stage.item("off"));
    for (const double x : {15.0, 60.0, 305.0}) {
        stage.clickAt({x, row.center().y()});
        EXPECT_EQ(stage.takeLog(), QStringList("off to true")) << x;
        EXPECT_FALSE(accessible(button(stage, "off")).state().checked) << "nobody has told it to be on";
    }
    stage.click(stage.item("on"));
    EXPECT_EQ(stage.takeLog(), QStringList("on to false"));
    // It shows what it is told and nothing else.
    EXPECT_EQ(stage.item("off").property("isOn"), false);
}

TEST(Checkbox, WorksFromTheKeyboard) {
    Stage stage(checkboxes);
    stage.key(Qt::Key_Tab);
    stage.key(Qt::Key_Space);
    EXPECT_EQ(stage.takeLog(), QStringList("off to true"));
    stage.key(Qt::Key_Return);
    EXPECT_EQ(stage.takeLog(), QStringList("off to true"));
    stage.key(Qt::Key_Tab);
    stage.key(Qt::Key_Enter);
    EXPECT_EQ(stage.takeLog(), QStringList("on to false"));
}

TEST(Checkbox, ShowsItsRingForTheKeyboardOnly) {
    Stage stage(checkboxes);
    stage.click(stage.item("off"));
    // Made with what else answers the pointer.
    const QList<QQuickItem*> rings = Stage::itemsOf("FocusRing", stage.item("off"));
    ASSERT_EQ(rings.size(), 1);
    const QQuickItem& ring = *rings.at(0);
    EXPECT_TRUE(button(stage, "off").hasActiveFocus());
    EXPECT_FALSE(ring.isVisible());
    stage.key(Qt::Key_Tab);
    stage.key(Qt::Key_Backtab, Qt::ShiftModifier);
    EXPECT_TRUE(button(stage, "off").hasActiveFocus());
    EXPECT_TRUE(ring.isVisible());
}

TEST(Checkbox, TellsAssistiveTools) {
    Stage stage(checkboxes);
    QAccessibleInterface& off = accessible(button(stage, "off"));
    EXPECT_EQ(off.role(), QAccessible::CheckBox);
    EXPECT_EQ(off.text(QAccessible::Name), "Sound & light");
    EXPECT_TRUE(off.state().checkable);
    EXPECT_FALSE(off.state().checked);
    EXPECT_TRUE(off.state().focusable);
    EXPECT_TRUE(accessible(button(stage, "on")).state().checked);
    Stage::act(button(stage, "off"), "Press");
    EXPECT_EQ(stage.takeLog(), QStringList("off to true"));
    Stage::act(button(stage, "on"), "Toggle");
    EXPECT_EQ(stage.takeLog(), QStringList("on to false"));
}

TEST(Checkbox, HasItsBoxAndItsColours) {
    Stage stage(checkboxes);
    const QQuickItem& box = *Stage::itemsOf("RoundedFace", stage.item("on")).at(0);
    EXPECT_EQ(Stage::frame(box).size(), QSizeF(18, 18));
    EXPECT_EQ(Stage::frame(box).left(), 10);
    EXPECT_EQ(box.property("radius"), 5.0);
    EXPECT_EQ(Stage::frame(stage.showing("On")).left(), 38);
    EXPECT_EQ(stage.pixel(Stage::frame(box).topLeft() + QPointF(9, 3)), stage.themeColor("accentBlue").toRgb().name());
    const QQuickItem& empty = *Stage::itemsOf("RoundedFace", stage.item("off")).at(0);
    EXPECT_EQ(stage.pixel(Stage::frame(empty).center()).name(), stage.themeColor("fieldFill").name());
}

const QByteArray radios =
    "RadioButton { id: one; objectName: \"one\"; x: 10; y: 10; width: 300; isSelected: true; label: \"One\"; next: two;"
    "onTriggered: stage.note(\"one\") }"
    "RadioButton { id: two; objectName: \"two\"; x: 10; y: 50; width: 300; isSelected: false; label: \"Two\"; "
    "previous: one;"
    "onTriggered: stage.note(\"two\") }";

TEST(RadioButton, ReportsAPressAlsoWhileSelected) {
    Stage stage(radios);
    stage.clickAt({300, 20});
    EXPECT_EQ(stage.takeLog(), QStringList("one"));
    stage.click(stage.item("two"));
    EXPECT_EQ(stage.takeLog(), QStringList("two"));
    EXPECT_EQ(stage.item("one").property("isSelected"), true);
}

TEST(RadioButton, TheArrowsGoToTheNeighbourAndPressIt) {
    Stage stage(radios);
    stage.key(Qt::Key_Tab);
    EXPECT_TRUE(stage.item("one").hasActiveFocus());
    stage.key(Qt::Key_Down);
    EXPECT_TRUE(stage.item("two").hasActiveFocus());
    EXPECT_EQ(stage.takeLog(), QStringList("two"));
    stage.key(Qt::Key_Up);
    EXPECT_TRUE(stage.item("one").hasActiveFocus());
    EXPECT_EQ(stage.takeLog(), QStringList("one"));
    stage.key(Qt::Key_Up);
    EXPECT_TRUE(stage.takeLog().isEmpty());
    stage.key(Qt::Key_Space);
    EXPECT_EQ(stage.takeLog(), QStringList("one"));
}

TEST(RadioButton, TellsAssistiveTools) {
    Stage stage(radios);
    QAccessibleInterface& one = accessible(stage.item("one"));
    EXPECT_EQ(one.role(), QAccessible::RadioButton);
    EXPECT_EQ(one.text(QAccessible::Name), "One");
    EXPECT_TRUE(one.state().checked);
    EXPECT_FALSE(accessible(stage.item("two")).state().checked);
    Stage::act(stage.item("two"), "Press");
    EXPECT_EQ(stage.takeLog(), QStringList("two"));
}

TEST(RadioButton, ReadsAsAThickRingOrAThinOne) {
    Stage stage(radios);
    const QQuickItem& ring = *Stage::itemsOf("RoundedFace", stage.item("one")).at(0);
    const QRectF frame = Stage::frame(ring);
    EXPECT_EQ(frame.size(), QSizeF(18, 18));
    EXPECT_EQ(stage.pixel(frame.topLeft() + QPointF(9, 2)).name(), stage.themeColor("accentBlue").name());
    EXPECT_EQ(stage.pixel(frame.center()).name(), stage.themeColor("fieldFill").name());
    const QQuickItem& thin = *Stage::itemsOf("RoundedFace", stage.item("two")).at(0);
    EXPECT_EQ(thin.property("strokeWidth"), 1.5);
    EXPECT_EQ(stage.pixel(Stage::frame(thin).topLeft() + QPointF(9, 4)).name(), stage.themeColor("fieldFill").name());
}

const QByteArray toggle =
    "SegmentedToggle { objectName: \"toggle\"; x: 10; y: 10; width: 400; leftLabel: \"Run Until Stopped\"; rightLabel:"
    "\"Stop After\"; leftSelected: true; onToggled: left => stage.note(left ? \"left\" : \"right\") }";

TEST(SegmentedToggle, SharesItsWidthEqually) {
    Stage stage(toggle);
    const QList<QQuickItem*> segments = stage.itemsOf("Segment");
    ASSERT_EQ(segments.size(), 2);
    EXPECT_EQ(Stage::frame(*segments[0]), QRectF(10, 10, 200, 38));
    EXPECT_EQ(Stage::frame(*segments[1]), QRectF(210, 10, 200, 38));
}

TEST(SegmentedToggle, ReportsEveryPressAlsoOfTheSelectedSegment) {
    Stage stage(toggle);
    stage.clickAt({30, 30});
    EXPECT_EQ(stage.takeLog(), QStringList("left"));
    stage.clickAt({400, 30});
    EXPECT_EQ(stage.takeLog(), QStringList("right"));
    EXPECT_EQ(stage.item("toggle").property("leftSelected"), true);
}

TEST(SegmentedToggle, HasExactlyOneSelectedSegment) {
    Stage stage(toggle);
    const QList<QQuickItem*> segments = stage.itemsOf("Segment");
    for (const bool left : {true, false}) {
        stage.item("toggle").setProperty("leftSelected", left);
        EXPECT_EQ(accessible(*segments[0]).state().checked, left);
        EXPECT_NE(accessible(*segments[1]).state().checked, left);
        EXPECT_EQ(accessible(*segments[0]).role(), QAccessible::RadioButton);
        const auto isChosen = [&](const char* label) {
            return stage.showing(label).property("color").value<QColor>().name() ==
                   stage.themeColor("accentBlue").name();
        };
        EXPECT_EQ(isChosen("Run Until Stopped"), left);
        EXPECT_EQ(isChosen("Stop After"), !left);
    }
}

TEST(SegmentedToggle, TheArrowsChooseAndTabStopsOnce) {
    Stage stage(toggle + "Checkbox { objectName: \"after\"; y: 100; isOn: false; label: \"After\" }");
    stage.key(Qt::Key_Tab);
    EXPECT_TRUE(stage.itemsOf("Segment")[0]->hasActiveFocus());
    stage.key(Qt::Key_Right);
    EXPECT_EQ(stage.takeLog(), QStringList("right"));
    EXPECT_TRUE(stage.itemsOf("Segment")[1]->hasActiveFocus());
    stage.item("toggle").setProperty("leftSelected", false);
    stage.key(Qt::Key_Left);
    EXPECT_EQ(stage.takeLog(), QStringList("left"));
    stage.item("toggle").setProperty("leftSelected", true);
    stage.key(Qt::Key_Tab);
    EXPECT_TRUE(stage.item("after").hasActiveFocus());
}

TEST(SegmentedToggle, HasItsColours) {
    Stage stage(toggle);
    const QColor card = stage.themeColor("cardFill");
    const QColor soft = stage.themeColor("accentBlueSoft");
    const double opacity = soft.alphaF();
    const auto mixed = [&](int top, int bottom) { return top * opacity + bottom * (1 - opacity); };
    const QColor chosen = stage.pixel({20, 40});
    EXPECT_NEAR(chosen.red(), mixed(soft.red(), card.red()), 1);
    EXPECT_NEAR(chosen.blue(), mixed(soft.blue(), card.blue()), 1);
    EXPECT_EQ(stage.pixel({220, 40}).name(), stage.themeColor("fieldFill").name());
}

} // namespace
} // namespace velloran::test
