#include "harness/Stage.h"

#include <gtest/gtest.h>

namespace velloran::test {
namespace {

/// A view with two buttons: of the first the upper half is out of sight, of the second the lower half.
class ScrollAreaItemTest : public testing::Test {
protected:
    ScrollAreaItemTest() { area.setProperty("contentY", 100); }

    [[nodiscard]] double position() const { return area.property("contentY").toDouble(); }

    /// A point of the button that is in sight.
    [[nodiscard]] static QPointF seen(const QQuickItem& button, double share) {
        const QRectF frame = Stage::frame(button);
        return {frame.center().x(), frame.top() + share * frame.height()};
    }

    Stage stage{R"(
        ScrollArea {
            width: 300; height: 200
            contentHeight: 400
            FaceButton { objectName: "first"; y: 80; height: 40; label: "First"; onTriggered: stage.note("first") }
            FaceButton { objectName: "second"; y: 280; height: 40; label: "Second"; onTriggered: stage.note("second") }
        })"};
    QQuickItem& area = stage.item("ScrollArea");
    QQuickItem& first = stage.item("first");
    QQuickItem& second = stage.item("second");
};

} // namespace

TEST_F(ScrollAreaItemTest, WhatIsHalfOutOfSightCanBeClicked) {
    stage.clickAt(seen(first, 0.6));
    EXPECT_EQ(stage.takeLog(), QStringList("first"));
    EXPECT_TRUE(first.hasActiveFocus());
    stage.clickAt(seen(second, 0.4));
    stage.clickAt(seen(second, 0.4));
    EXPECT_EQ(stage.takeLog(), (QStringList{"second", "second"}));
    EXPECT_TRUE(second.hasActiveFocus());
    EXPECT_EQ(position(), 100);
}

TEST_F(ScrollAreaItemTest, TheKeyboardBringsWhatItReachesIntoSight) {
    stage.key(Qt::Key_Tab);
    ASSERT_TRUE(first.hasActiveFocus());
    EXPECT_LT(position(), 80);
    stage.key(Qt::Key_Tab);
    ASSERT_TRUE(second.hasActiveFocus());
    EXPECT_GT(position(), 120);
    area.setProperty("contentY", 100);
    stage.clickAt(seen(second, 0.4));
    stage.key(Qt::Key_Backtab);
    ASSERT_TRUE(first.hasActiveFocus());
    EXPECT_LT(position(), 80);
}

} // namespace velloran::test
