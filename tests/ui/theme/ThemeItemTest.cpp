#include "harness/Stage.h"

#include <QFontMetricsF>

#include <gtest/gtest.h>

#include <cmath>

namespace velloran::test {
namespace {

struct NamedColor {
    const char* name;
    double red;
    double green;
    double blue;
    double opacity = 1;
};

const NamedColor namedColors[] = {
    {"appBackground", 0.039, 0.063, 0.122},
    {"appBackgroundTop", 0.047, 0.078, 0.149},
    {"appBackgroundBot", 0.027, 0.047, 0.098},
    {"cardFill", 0.067, 0.098, 0.176},
    {"cardFillHover", 0.082, 0.118, 0.212},
    {"cardStroke", 1, 1, 1, 0.06},
    {"cardStrokeStrong", 1, 1, 1, 0.1},
    {"textPrimary", 1, 1, 1},
    {"textSecondary", 0.64, 0.69, 0.78},
    {"textMuted", 0.46, 0.5, 0.6},
    {"accentBlue", 0.33, 0.55, 1.0},
    {"accentBlueDeep", 0.19, 0.42, 0.97},
    {"accentBlueSoft", 0.33, 0.55, 1.0, 0.16},
    {"accentBlueBorder", 0.33, 0.55, 1.0, 0.35},
    {"statusRunning", 0.27, 0.85, 0.51},
    {"statusIdle", 0.45, 0.6, 0.9},
    {"statusDelayed", 0.98, 0.74, 0.22},
    {"statusCompleted", 0.27, 0.85, 0.51},
    {"statusError", 0.98, 0.37, 0.37},
    {"statusPaused", 0.75, 0.55, 0.95},
    {"statusArming", 0.55, 0.78, 1.0},
    {"fieldFill", 0.051, 0.075, 0.141},
    {"fieldStroke", 1, 1, 1, 0.09},
    {"fieldStrokeFocus", 0.33, 0.55, 1.0, 0.6},
};

/// Each channel of the one within a step of 1/255 of the other's.
void expectNear(QColor actual, QColor expected, const char* what, int steps = 1) {
    EXPECT_LE(std::abs(actual.red() - expected.red()), steps) << what << ": " << actual.name().toStdString();
    EXPECT_LE(std::abs(actual.green() - expected.green()), steps) << what << ": " << actual.name().toStdString();
    EXPECT_LE(std::abs(actual.blue() - expected.blue()), steps) << what << ": " << actual.name().toStdString();
}

/// `top` drawn over `bottom`.
QColor over(QColor top, QColor bottom) {
    const auto mix = [&](float a, float b) { return a * top.alphaF() + b * (1 - top.alphaF()); };
    return QColor::fromRgbF(mix(top.redF(), bottom.redF()), mix(top.greenF(), bottom.greenF()),
                            mix(top.blueF(), bottom.blueF()));
}

TEST(Theme, HasItsColours) {
    const Stage stage("");
    for (const NamedColor& expected : namedColors) {
        const QColor actual = stage.themeColor(expected.name);
        EXPECT_NEAR(actual.redF(), expected.red, 1e-4) << expected.name;
        EXPECT_NEAR(actual.greenF(), expected.green, 1e-4) << expected.name;
        EXPECT_NEAR(actual.blueF(), expected.blue, 1e-4) << expected.name;
        EXPECT_NEAR(actual.alphaF(), expected.opacity, 1e-4) << expected.name;
    }
}

TEST(Theme, HasItsScales) {
    Stage stage(
        "property list<int> spacing: [Theme.spacing.xs, Theme.spacing.sm, Theme.spacing.md, Theme.spacing.lg,"
        "Theme.spacing.xl]; property list<int> radius: [Theme.radius.field, Theme.radius.card, Theme.radius.button]");
    EXPECT_EQ(stage.root->property("spacing").value<QList<int>>(), (QList<int>{6, 10, 16, 22, 28}));
    EXPECT_EQ(stage.root->property("radius").value<QList<int>>(), (QList<int>{10, 16, 12}));
}

TEST(BodyText, IsSetInHalvesOfAPoint) {
    Stage stage("BodyText { objectName: \"whole\"; text: \"Click Interval\"; size: 13 }"
                "BodyText { objectName: \"half\"; text: \"Click Interval\"; size: 13.5; weight: Font.Medium }");
    const auto font = [&](const char* name) { return stage.item(name).property("font").value<QFont>(); };
    EXPECT_EQ(font("whole").pixelSize(), 13);
    EXPECT_EQ(font("half").family(), "Inter");
    QFont twice("Inter", -1, QFont::Medium);
    twice.setPixelSize(27);
    EXPECT_EQ(stage.item("half").implicitWidth(),
              std::ceil(std::ceil(QFontMetricsF(twice).horizontalAdvance("Click Interval")) / 2));
    stage.setTheme("fontScale", 1.5);
    EXPECT_EQ(stage.item("half").height(), std::ceil(std::ceil(QFontMetricsF(font("half")).height())));
    EXPECT_EQ(font("half").pixelSize(), 20);
}

TEST(Theme, TransitionsTakeNoTimeWithReducedMotion) {
    Stage stage("property int duration: Theme.duration(0.18)");
    EXPECT_EQ(stage.root->property("duration"), 0);
    stage.setTheme("reducedMotion", false);
    EXPECT_EQ(stage.root->property("duration"), 180);
}

TEST(BodyText, ShowsMarkupAsItIs) {
    Stage stage("BodyText { objectName: \"text\"; text: \"<b>A</b> & B\" }"
                "BodyText { objectName: \"plain\"; text: \"A & B\" }");
    EXPECT_GT(stage.item("text").implicitWidth(), stage.item("plain").implicitWidth() + 20);
}

TEST(CardBackground, PadsItsContentOnAllSides) {
    Stage stage(
        "CardBackground { objectName: \"card\"; contentItem: Item { objectName: \"content\"; implicitWidth: 100;"
        "implicitHeight: 50 } }"
        "CardBackground { objectName: \"tight\"; padding: 6; contentItem: Item { implicitWidth: 100;"
        "implicitHeight: 50 } }");
    EXPECT_EQ(Stage::frame(stage.item("card")).size(), QSizeF(144, 94));
    EXPECT_EQ(Stage::frame(stage.item("content")), QRectF(22, 22, 100, 50));
    EXPECT_EQ(Stage::frame(stage.item("tight")).size(), QSizeF(112, 62));
}

TEST(CardBackground, HasItsFillBorderAndShadow) {
    Stage stage("Rectangle { anchors.fill: parent; color: \"#808080\" }"
                "CardBackground { x: 60; y: 60; width: 200; height: 120 }");
    const QColor fill = stage.themeColor("cardFill");
    const QColor ground("#808080");
    expectNear(stage.pixel({160, 120}), fill, "fill");
    expectNear(stage.pixel({160, 60}), over(stage.themeColor("cardStroke"), fill), "top border");
    expectNear(stage.pixel({60, 120}), over(stage.themeColor("cardStroke"), fill), "left border");
    expectNear(stage.pixel({160, 61}), fill, "one point inside the border");
    // The corner: cut off by a radius of 16, so the pixel at the very corner shows the ground and its shadow.
    EXPECT_GT(stage.pixel({61, 61}).red(), 90);
    // Far below the edge, where the shadow that lies 12 lower is at half of its strength; above, next to none.
    expectNear(stage.pixel({160, 191}), over(QColor::fromRgbF(0, 0, 0, 0.35F * 0.5F), ground), "shadow below", 4);
    EXPECT_GE(stage.pixel({160, 57}).red(), 124);
    // Beyond one and a half times the blur there is none.
    expectNear(stage.pixel({160, 220}), ground, "beyond the shadow");
}

TEST(CardBackground, TheShadowIsAGaussianOfHalfItsBlur) {
    Stage stage("Rectangle { anchors.fill: parent; color: \"white\" }"
                "CardBackground { x: 60; y: 60; width: 200; height: 120 }",
                {320, 260});
    // Along a line down from the middle of the lower edge: one minus the normal distribution around 192 with a
    // deviation of 9.
    for (int y = 182; y < 215; ++y) {
        const double reach = (y + 0.5 - 192) / 9;
        const double strength = 0.5 * std::erfc(reach / std::sqrt(2.0));
        EXPECT_NEAR(stage.pixel({160.0, static_cast<double>(y)}).red(), 255 * (1 - 0.35 * strength), 2) << y;
    }
}

TEST(SectionHeader, HasItsTileAndTitle) {
    Stage stage(
        "SectionHeader { objectName: \"header\"; width: 300; icon: \"computermouse.fill\"; title: \"Click & go\" }"
        "SectionHeader { objectName: \"green\"; y: 60; width: 300; icon: \"keyboard.fill\"; title: \"Keys\";"
        "iconColor: Theme.statusRunning }");
    const QQuickItem& icon = *stage.itemsOf("Icon", stage.item("header")).at(0);
    EXPECT_EQ(Stage::frame(stage.item("header")).size(), QSizeF(300, 28));
    EXPECT_EQ(Stage::frame(*icon.parentItem()), QRectF(0, 0, 28, 28));
    EXPECT_EQ(icon.parentItem()->property("radius"), 8.0);
    EXPECT_EQ(Stage::frame(icon), QRectF(6, 6, 16, 16));
    EXPECT_EQ(Stage::frame(stage.showing("Click & go")).left(), 38);
    EXPECT_EQ(stage.showing("Click & go").property("font").value<QFont>().pixelSize(), 17);
    const QColor accent = stage.themeColor("accentBlue");
    QColor faint = accent;
    faint.setAlphaF(0.14F);
    expectNear(stage.pixel({3, 14}), over(faint, stage.themeColor("cardFill")), "tile");
    EXPECT_EQ(icon.property("color").value<QColor>(), accent);
    EXPECT_EQ(stage.itemsOf("Icon", stage.item("green")).at(0)->property("color").value<QColor>(),
              stage.themeColor("statusRunning"));
}

TEST(TitleBar, HasItsSizesAndItsLine) {
    Stage stage(
        "Rectangle { anchors.fill: parent; color: \"black\" } TitleBar { objectName: \"bar\"; width: parent.width }");
    EXPECT_EQ(Stage::frame(stage.item("bar")).size(), QSizeF(480, 64));
    EXPECT_EQ(Stage::frame(stage.item("Picture")), QRectF(20, 6, 52, 52));
    EXPECT_EQ(Stage::frame(stage.showing("Velloran")).left(), 82);
    QColor ground = stage.themeColor("appBackgroundTop");
    ground.setAlphaF(0.6F);
    const QColor shown = over(ground, Qt::black);
    expectNear(stage.pixel({300, 30}), shown, "ground");
    expectNear(stage.pixel({300, 63}), over(QColor::fromRgbF(1, 1, 1, 0.05F), shown), "line");
    EXPECT_TRUE(stage.itemsOf("AbstractButton").isEmpty());
}

TEST(AppBackground, IsAGradientWithAGlowInItsCorner) {
    Stage stage("AppBackground { anchors.fill: parent }", {1000, 800});
    const QColor top = stage.themeColor("appBackgroundTop");
    const QColor bottom = stage.themeColor("appBackgroundBot");
    const QColor accent = stage.themeColor("accentBlue");
    const auto expected = [&](QPointF point) {
        const double down = point.y() / 800;
        const double distance = std::hypot(point.x(), point.y());
        const double glow = 0.12 * std::clamp((520 - distance) / 500, 0.0, 1.0);
        const auto channel = [&](float a, float b, float light) {
            return static_cast<float>(a + (b - a) * down + light * glow);
        };
        return QColor::fromRgbF(channel(top.redF(), bottom.redF(), accent.redF()),
                                channel(top.greenF(), bottom.greenF(), accent.greenF()),
                                channel(top.blueF(), bottom.blueF(), accent.blueF()));
    };
    for (const QPointF point : {QPointF(2, 2), QPointF(14, 14), QPointF(100, 100), QPointF(300, 50), QPointF(50, 300),
                                QPointF(519, 2), QPointF(900, 2), QPointF(900, 400), QPointF(10, 797)}) {
        expectNear(stage.pixel(point), expected(point), "ground", 2);
    }
}

TEST(Icon, IsDrawnInItsColourAtItsSize) {
    Stage stage(
        "Icon { objectName: \"icon\"; x: 10; y: 10; name: \"stop.fill\"; pointSize: 16; color: \"#ff8800\" }"
        "Icon { objectName: \"faint\"; x: 40; y: 10; name: \"stop.fill\"; pointSize: 16; color: \"#80ff8800\" }");
    EXPECT_EQ(Stage::frame(stage.item("icon")), QRectF(10, 10, 16, 16));
    expectNear(stage.pixel({18, 18}), QColor("#ff8800"), "icon");
    expectNear(stage.pixel({48, 18}), over(QColor("#80ff8800"), stage.themeColor("cardFill")), "translucent icon", 2);
    stage.setTheme("fontScale", 1.25);
    EXPECT_EQ(Stage::frame(stage.item("icon")).size(), QSizeF(20, 20));
}

} // namespace
} // namespace velloran::test
