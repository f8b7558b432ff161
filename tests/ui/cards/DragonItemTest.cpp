#include "harness/Stage.h"

#include <QSignalSpy>
#include <QTest>

#include <gtest/gtest.h>

namespace velloran::test {
namespace {

const QByteArray dragon = "property bool busy: true\n"
                          "DragonAnimationView { objectName: \"dragon\"; width: 240; flying: stage.busy }";

QQuickItem& body(const Stage& stage) {
    return *stage.itemsOf("Picture").at(1);
}

double value(const Stage& stage, const char* property) {
    return body(stage).property(property).toDouble();
}

bool isMoving(const Stage& stage) {
    return value(stage, "offsetX") != 0 && value(stage, "offsetY") != 0 && value(stage, "tilt") != 0;
}

bool isSettled(const Stage& stage) {
    return value(stage, "offsetX") == 0 && value(stage, "offsetY") == 0 && value(stage, "tilt") == 0;
}

TEST(DragonAnimationView, HasItsMeasures) {
    Stage stage(dragon);
    EXPECT_EQ(stage.item("dragon").height(), 160);
    const QQuickItem& idle = *stage.itemsOf("Picture").at(0);
    EXPECT_EQ(idle.property("name"), "DragonIdle");
    EXPECT_EQ(Stage::frame(idle), QRectF(40, 0, 160, 160));
    EXPECT_EQ(body(stage).property("name"), "DragonFly");
    EXPECT_EQ(Stage::frame(body(stage)), QRectF(30, 10, 180, 140));
}

TEST(DragonAnimationView, FliesAtOnceWhenMadeBusy) {
    Stage stage(dragon);
    EXPECT_TRUE(body(stage).isVisible());
    EXPECT_FALSE(stage.itemsOf("Picture").at(0)->isVisible());
    stage.setTheme("reducedMotion", false);
    EXPECT_TRUE(QTest::qWaitFor([&] { return isMoving(stage); }, 2000));
    // Up, to the right and anticlockwise.
    EXPECT_LT(value(stage, "offsetY"), 0);
    EXPECT_GT(value(stage, "offsetX"), 0);
    EXPECT_LT(value(stage, "tilt"), 0);
    // Sway and tilt keep step.
    EXPECT_NEAR(value(stage, "offsetX") / 10, value(stage, "tilt") / -4, 1e-6);
}

TEST(DragonAnimationView, TurnsBackAtTheFarEnds) {
    Stage stage(dragon);
    stage.setTheme("reducedMotion", false);
    double highest = 0;
    double rightmost = 0;
    const bool came = QTest::qWaitFor(
        [&] {
            highest = std::min(highest, value(stage, "offsetY"));
            rightmost = std::max(rightmost, value(stage, "offsetX"));
            // Both have been at their far end and are on their way back.
            return value(stage, "offsetY") > highest + 1 && value(stage, "offsetX") < rightmost - 1;
        },
        10000);
    EXPECT_TRUE(came);
    EXPECT_NEAR(highest, -16, 0.5);
    EXPECT_NEAR(rightmost, 10, 0.5);
}

TEST(DragonAnimationView, SettlesWithinItsTimeAndFadesOver) {
    Stage stage(dragon);
    stage.setTheme("reducedMotion", false);
    ASSERT_TRUE(QTest::qWaitFor([&] { return value(stage, "offsetX") > 2; }, 5000));
    QElapsedTimer clock;
    clock.start();
    stage.root->setProperty("busy", false);
    EXPECT_FALSE(isSettled(stage));
    ASSERT_TRUE(QTest::qWaitFor([&] { return isSettled(stage); }, 2000));
    EXPECT_GE(clock.elapsed(), 350);
    ASSERT_TRUE(QTest::qWaitFor([&] { return !body(stage).isVisible(); }, 2000));
    EXPECT_EQ(stage.itemsOf("Picture").at(0)->opacity(), 1);
}

TEST(DragonAnimationView, FliesAgainAfterSettling) {
    Stage stage(dragon);
    stage.setTheme("reducedMotion", false);
    ASSERT_TRUE(QTest::qWaitFor([&] { return isMoving(stage); }, 2000));
    stage.root->setProperty("busy", false);
    stage.root->setProperty("busy", true);
    // The settling must not go on against the flight.
    ASSERT_TRUE(QTest::qWaitFor([&] { return value(stage, "offsetY") < -8; }, 5000));
}

TEST(DragonAnimationView, StaysStillWithReducedMotion) {
    Stage stage(dragon);
    QSignalSpy moved(&body(stage), &QQuickItem::yChanged);
    EXPECT_FALSE(moved.wait(200));
    EXPECT_TRUE(isSettled(stage));
    stage.setTheme("reducedMotion", false);
    ASSERT_TRUE(QTest::qWaitFor([&] { return isMoving(stage); }, 2000));
    stage.setTheme("reducedMotion", true);
    EXPECT_TRUE(QTest::qWaitFor([&] { return isSettled(stage); }, 2000));
}

TEST(DragonAnimationView, RestsWhileTheWindowIsNotToBeSeen) {
    Stage stage(dragon);
    stage.setTheme("reducedMotion", false);
    ASSERT_TRUE(QTest::qWaitFor([&] { return isMoving(stage); }, 2000));
    stage.window.hide();
    ASSERT_TRUE(QTest::qWaitFor([&] { return !stage.item("dragon").property("running").toBool(); }, 2000));
    const double height = value(stage, "offsetY");
    QSignalSpy moved(&body(stage), &QQuickItem::yChanged);
    EXPECT_FALSE(moved.wait(300));
    EXPECT_EQ(value(stage, "offsetY"), height);
    // It goes on from where it was.
    stage.window.show();
    ASSERT_TRUE(moved.wait(2000));
    EXPECT_NEAR(value(stage, "offsetY"), height, 3);
}

TEST(DragonAnimationView, RestsInAMinimisedWindow) {
    Stage stage(dragon);
    stage.setTheme("reducedMotion", false);
    ASSERT_TRUE(QTest::qWaitFor([&] { return isMoving(stage); }, 2000));
    stage.window.showMinimized();
    ASSERT_TRUE(QTest::qWaitFor([&] { return !stage.item("dragon").property("running").toBool(); }, 2000));
    QSignalSpy moved(&body(stage), &QQuickItem::yChanged);
    EXPECT_FALSE(moved.wait(300));
}

} // namespace
} // namespace velloran::test
