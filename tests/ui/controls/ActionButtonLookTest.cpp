#include "harness/Stage.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdlib>

namespace velloran::test {
namespace {

const QByteArray ground = "AppBackground { anchors.fill: parent }"
                          "CardBackground { x: 61; y: 20; width: 280; height: 61 }";

QByteArray button(const char* type, const char* rest) {
    return QByteArray(type) +
           " { objectName: \"it\"; x: 61; y: 97; width: 280; title: \"Start\"; systemImage:" + "\"play.fill\"; " +
           rest + " }";
}

/// Every pixel of the one picture lies that far on the way from the second to the third.
void expectMixed(const QImage& actual, const QImage& from, const QImage& to, double progress) {
    ASSERT_EQ(actual.size(), from.size());
    ASSERT_EQ(actual.size(), to.size());
    int wrong = 0;
    int changed = 0;
    for (int y = 0; y < actual.height(); ++y) {
        for (int x = 0; x < actual.width(); ++x) {
            const QRgb pixel = actual.pixel(x, y);
            const auto isOff = [&](int (*channel)(QRgb)) {
                const double wanted = channel(from.pixel(x, y)) * (1 - progress) + channel(to.pixel(x, y)) * progress;
                return std::abs(channel(pixel) - wanted) > 2;
            };
            wrong += isOff(qRed) || isOff(qGreen) || isOff(qBlue) ? 1 : 0;
            changed += from.pixel(x, y) != to.pixel(x, y) ? 1 : 0;
        }
    }
    EXPECT_EQ(wrong, 0);
    EXPECT_GT(changed, 280 * 40) << "the button is not in the picture";
}

TEST(DisabledActionButton, IsDrawnAtItsOpacityAsAWhole) {
    for (const char* type : {"PrimaryActionButton", "SecondaryActionButton"}) {
        SCOPED_TRACE(type);
        const QImage behind = Stage(ground).grab();
        Stage stage(ground + button(type, ""));
        const QImage enabled = stage.grab();
        stage.item("it").setProperty("disabled", true);
        expectMixed(stage.grab(), behind, enabled, 0.45);
        // Not only in a picture made from nothing: the window is painted in parts.
        stage.item("it").setProperty("title", "Begin");
        const QImage renamed = stage.grab();
        stage.item("it").setProperty("disabled", false);
        expectMixed(renamed, behind, stage.grab(), 0.45);
    }
}

TEST(DisabledActionButton, ItsTitleShowsWhatLiesBehindTheButton) {
    Stage stage("Rectangle { anchors.fill: parent; color: Theme.appBackground }" +
                button("PrimaryActionButton", "disabled: true"));
    const double scale = stage.window.effectiveDevicePixelRatio();
    const QRectF frame = Stage::frame(*stage.itemsOf("Icon", stage.item("it")).at(0));
    const QColor shown = stage.grab().pixelColor((QPointF(frame.center()) * scale).toPoint());
    EXPECT_NEAR(shown.red(), 120, 2);
    EXPECT_NEAR(shown.green(), 124, 2);
    EXPECT_NEAR(shown.blue(), 132, 2);
}

TEST(ActionButton, ItsGlowBeginsRightAtItsEdge) {
    for (const char* rest : {"", "disabled: true"}) {
        SCOPED_TRACE(rest);
        Stage stage("Rectangle { anchors.fill: parent; color: Theme.appBackground }" +
                    button("PrimaryActionButton", rest));
        const double scale = stage.window.effectiveDevicePixelRatio();
        const QImage picture = stage.grab();
        const QRectF frame = Stage::frame(stage.item("it"));
        const int edge = static_cast<int>(std::lround(frame.bottom() * scale));
        const int column = static_cast<int>(frame.center().x() * scale);
        const auto blue = [&](int row) { return picture.pixelColor(column, row).blue(); };
        EXPECT_GT(blue(edge), picture.pixelColor(2, 2).blue() + 20);
        for (int row = edge; row < edge + 10 * scale; ++row) {
            EXPECT_GE(blue(row), blue(row + 1)) << row - edge;
        }
    }
}

} // namespace
} // namespace velloran::test
