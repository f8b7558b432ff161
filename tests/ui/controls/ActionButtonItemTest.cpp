#include "harness/Stage.h"

#include <QAccessible>
#include <QTest>

#include <gtest/gtest.h>

namespace velloran::test {
namespace {

const QByteArray start = "PrimaryActionButton { objectName: \"start\"; x: 60; y: 60; width: 280; title: \"Start\"; "
                         "systemImage: \"play.fill\";"
                         "onTriggered: stage.note(\"start\"); onPointerPressed: if (stage.deaf) ignorePress() }"
                         "property bool deaf: false\n";
const QByteArray stop = "SecondaryActionButton { objectName: \"stop\"; x: 60; y: 180; width: 280; title: \"Stop\"; "
                        "systemImage: \"stop.fill\";"
                        "onTriggered: stage.note(\"stop\") }";

QQuickItem& button(const Stage& stage, const QString& name) {
    return *Stage::itemsOf("PlainButton", stage.item(name)).at(0);
}

/// `top` drawn over `bottom`.
QColor over(QColor top, QColor bottom) {
    const auto mix = [&](float a, float b) { return a * top.alphaF() + b * (1 - top.alphaF()); };
    return QColor::fromRgbF(mix(top.redF(), bottom.redF()), mix(top.greenF(), bottom.greenF()),
                            mix(top.blueF(), bottom.blueF()));
}

QColor white(float opacity) {
    return QColor::fromRgbF(1, 1, 1, opacity);
}

void expectNear(QColor actual, QColor expected, const char* what, int steps = 2) {
    EXPECT_LE(std::abs(actual.red() - expected.red()), steps) << what << ": " << actual.name().toStdString();
    EXPECT_LE(std::abs(actual.green() - expected.green()), steps) << what << ": " << actual.name().toStdString();
    EXPECT_LE(std::abs(actual.blue() - expected.blue()), steps) << what << ": " << actual.name().toStdString();
}

TEST(ActionButtons, TriggerByPointerKeysAndAssistiveTools) {
    Stage stage(start + stop);
    stage.click(stage.item("start"));
    stage.click(stage.item("stop"));
    EXPECT_EQ(stage.takeLog(), (QStringList{"start", "stop"}));
    // Pressing gave the focus to the last one.
    stage.key(Qt::Key_Space);
    stage.key(Qt::Key_Return);
    EXPECT_EQ(stage.takeLog(), (QStringList{"stop", "stop"}));
    Stage::act(button(stage, "start"), "Press");
    EXPECT_EQ(stage.takeLog(), QStringList("start"));
}

TEST(ActionButtons, ReturnHeldDownTriggersOnce) {
    Stage stage(start);
    stage.click(stage.item("start"));
    stage.takeLog();
    QKeyEvent repeated(QEvent::KeyPress, Qt::Key_Return, Qt::NoModifier, "\r", true);
    QCoreApplication::sendEvent(&stage.window, &repeated);
    EXPECT_TRUE(stage.takeLog().isEmpty());
}

TEST(ActionButtons, AreHeardWhenLetGoOutsideOfThem) {
    Stage stage(start);
    stage.press(stage.item("start"));
    stage.leave();
    QTest::mouseRelease(&stage.window, Qt::LeftButton, {}, QPoint(5, 5));
    EXPECT_TRUE(stage.takeLog().isEmpty());
}

TEST(ActionButtons, DisabledOnesFollowThePointerButNothingElse) {
    Stage stage(start + stop);
    for (const char* name : {"start", "stop"}) {
        QQuickItem& item = stage.item(name);
        item.setProperty("disabled", true);
        const QQuickItem& group = *Stage::itemsOf("FadedGroup", item).at(0);
        EXPECT_EQ(group.property("strength"), 0.45) << name;
        stage.leave();
        EXPECT_EQ(item.property("hover"), 0.0) << name;
        stage.click(item);
        EXPECT_EQ(item.property("hover"), 1.0) << name;
        stage.key(Qt::Key_Space);
        EXPECT_TRUE(stage.takeLog().isEmpty()) << name;
        item.setProperty("disabled", false);
        EXPECT_EQ(group.property("strength"), 1.0) << name;
    }
}

TEST(ActionButtons, AnIgnoredPressTriggersNothingAndTheNextOneDoes) {
    Stage stage(start);
    stage.root->setProperty("deaf", true);
    stage.click(stage.item("start"));
    EXPECT_TRUE(stage.takeLog().isEmpty());
    // Keys and tools are never ignored.
    stage.key(Qt::Key_Space);
    EXPECT_EQ(stage.takeLog(), QStringList("start"));
    Stage::act(button(stage, "start"), "Press");
    EXPECT_EQ(stage.takeLog(), QStringList("start"));
    stage.root->setProperty("deaf", false);
    stage.click(stage.item("start"));
    EXPECT_EQ(stage.takeLog(), QStringList("start"));
}

TEST(ActionButtons, AnIgnoredPressThatIsDrawnAwayLeavesTheKeysAlone) {
    Stage stage(start);
    stage.root->setProperty("deaf", true);
    stage.press(stage.item("start"));
    stage.leave();
    QTest::mouseRelease(&stage.window, Qt::LeftButton, {}, QPoint(5, 5));
    stage.key(Qt::Key_Space);
    EXPECT_EQ(stage.takeLog(), QStringList("start"));
}

TEST(ActionButtons, HaveTheirMeasures) {
    Stage stage(start + stop);
    EXPECT_EQ(Stage::frame(stage.item("start")).size(), QSizeF(280, 52));
    EXPECT_EQ(Stage::frame(stage.item("stop")).size(), QSizeF(280, 46));
    const QList<QQuickItem*> icons = stage.itemsOf("Icon");
    EXPECT_EQ(icons[0]->height(), 16);
    EXPECT_EQ(icons[1]->height(), 15);
    EXPECT_EQ(Stage::frame(stage.showing("Start")).left(), Stage::frame(*icons[0]).right() + 10);
    EXPECT_EQ(stage.showing("Start").property("font").value<QFont>().pixelSize(), 17);
    EXPECT_EQ(stage.showing("Stop").property("font").value<QFont>().pixelSize(), 16);
    EXPECT_EQ(stage.showing("Stop").property("font").value<QFont>().weight(), QFont::DemiBold);
    // The content is in the middle.
    const double left = Stage::frame(*icons[0]).left();
    const double right = Stage::frame(stage.showing("Start")).right();
    EXPECT_NEAR((left + right) / 2, 60 + 140, 1);
}

TEST(PrimaryActionButton, IsAGradientWithABorderAndAGlow) {
    Stage stage(start);
    const QColor top = stage.themeColor("accentBlue");
    const QColor bottom = stage.themeColor("accentBlueDeep");
    expectNear(stage.pixel({90, 62}), top, "upper end");
    expectNear(stage.pixel({90, 109}), bottom, "lower end", 4);
    expectNear(stage.pixel({200, 60}), over(white(0.08F), top), "border");
    const QColor glow = stage.pixel({200, 116});
    stage.hover(stage.item("start"));
    expectNear(stage.pixel({200, 60}), over(white(0.16F), top), "border under the pointer");
    EXPECT_GT(stage.pixel({200, 116}).blue(), glow.blue() + 10);
    EXPECT_GT(glow.blue(), stage.themeColor("cardFill").blue() + 10);
}

TEST(PrimaryActionButton, ShowsNoShadowThroughItselfWhileDisabled) {
    Stage stage(start);
    stage.item("start").setProperty("disabled", true);
    QColor top = stage.themeColor("accentBlue");
    top.setAlphaF(0.45F);
    expectNear(stage.pixel({90, 63}), over(top, stage.themeColor("cardFill")), "face");
}

TEST(SecondaryActionButton, IsQuietAndTurnsRed) {
    Stage stage(stop);
    const QColor red = stage.themeColor("statusError");
    const QColor card = stage.themeColor("cardFill");
    expectNear(stage.pixel({90, 200}), stage.themeColor("fieldFill"), "face");
    expectNear(stage.pixel({200, 180}), over(stage.themeColor("cardStrokeStrong"), stage.themeColor("fieldFill")),
               "border");
    expectNear(stage.pixel({200, 232}), card, "no shadow");
    stage.hover(stage.item("stop"));
    expectNear(stage.pixel({90, 200}), stage.themeColor("cardFillHover"), "face under the pointer");
    stage.leave();
    stage.item("stop").setProperty("active", true);
    expectNear(stage.pixel({90, 182}), red, "upper end", 4);
    const QColor lower = stage.pixel({90, 224});
    EXPECT_LT(lower.red(), red.red() - 15);
    EXPECT_GT(lower.red(), over(QColor::fromRgbF(red.redF(), red.greenF(), red.blueF(), 0.78F), card).red());
    expectNear(stage.pixel({200, 180}), over(white(0.08F), red), "border", 4);
    EXPECT_GT(stage.pixel({200, 232}).red(), card.red() + 15);
}

TEST(ActionButtons, EaseIntoTheirOtherState) {
    Stage stage(start + stop);
    stage.setTheme("reducedMotion", false);
    QQuickItem& item = stage.item("stop");
    item.setProperty("active", true);
    EXPECT_LT(item.property("activity").toDouble(), 1);
    EXPECT_TRUE(QTest::qWaitFor([&] { return item.property("activity") == 1.0; }, 2000));
    QTest::mouseMove(&stage.window, Stage::frame(item).center().toPoint());
    EXPECT_TRUE(QTest::qWaitFor([&] { return item.property("hover") == 1.0; }, 2000));
}

TEST(PlainButton, ShowsItsNameLetterForLetter) {
    Stage stage(
        "PlainButton { objectName: \"button\"; label: \"Save & <b>go</b>\"; onTriggered: stage.note(\"pressed\") }");
    EXPECT_TRUE(stage.shows("Save & <b>go</b>"));
    EXPECT_EQ(QAccessible::queryAccessibleInterface(&stage.item("button"))->text(QAccessible::Name),
              "Save & <b>go</b>");
    EXPECT_EQ(QAccessible::queryAccessibleInterface(&stage.item("button"))->role(), QAccessible::Button);
    stage.key(Qt::Key_Space, Qt::AltModifier);
    stage.key(Qt::Key_G, Qt::AltModifier);
    EXPECT_TRUE(stage.takeLog().isEmpty());
}

TEST(PlainButton, ShowsItsHelpWhileThePointerRests) {
    Stage stage("PlainButton { objectName: \"button\"; x: 50; y: 50; label: \"X\"; help: \"Clear hotkey\" }");
    EXPECT_EQ(QAccessible::queryAccessibleInterface(&stage.item("button"))->text(QAccessible::Description),
              "Clear hotkey");
    EXPECT_FALSE(stage.shows("Clear hotkey"));
    stage.hover(stage.item("button"));
    EXPECT_TRUE(QTest::qWaitFor([&] { return stage.shows("Clear hotkey"); }, 5000));
    stage.leave();
    EXPECT_TRUE(QTest::qWaitFor([&] { return !stage.shows("Clear hotkey"); }, 5000));
}

TEST(PlainButton, StepsBackWhileHeldDown) {
    Stage stage("PlainButton { objectName: \"button\"; x: 50; y: 50; label: \"Link\" }");
    const QQuickItem& text = stage.showing("Link");
    stage.press(stage.item("button"));
    EXPECT_EQ(text.opacity(), stage.theme("pressedOpacity"));
    stage.release(stage.item("button"));
    EXPECT_EQ(text.opacity(), 1);
}

} // namespace
} // namespace velloran::test
