#include "harness/Stage.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>

namespace velloran::test {
namespace {

/// `top` drawn over `bottom`.
QColor over(QColor top, QColor bottom) {
    const auto mix = [&](float a, float b) { return a * top.alphaF() + b * (1 - top.alphaF()); };
    return QColor::fromRgbF(mix(top.redF(), bottom.redF()), mix(top.greenF(), bottom.greenF()),
                            mix(top.blueF(), bottom.blueF()));
}

bool isNear(QColor a, QColor b) {
    return std::abs(a.red() - b.red()) <= 1 && std::abs(a.green() - b.green()) <= 1 &&
           std::abs(a.blue() - b.blue()) <= 1;
}

double scaleOf(const Stage& stage) {
    return stage.window.effectiveDevicePixelRatio();
}

/// The pixels of a line of one point.
int hairline(const Stage& stage) {
    return std::max(1, static_cast<int>(std::floor(scaleOf(stage))));
}

/// The pixels of the screen that a frame in points is rounded to.
QRect pixelsOf(const Stage& stage, const QRectF& frame) {
    const double scale = scaleOf(stage);
    const auto round = [scale](double points) { return static_cast<int>(std::lround(points * scale)); };
    return {QPoint(round(frame.left()), round(frame.top())),
            QPoint(round(frame.right()) - 1, round(frame.bottom()) - 1)};
}

/// On the way in from the middle of each side: `width` pixels of the border, then the fill, and no border before.
void expectBorder(const QImage& picture, const QRect& face, QColor border, QColor fill, int width, const char* what) {
    struct Side {
        const char* name;
        QPoint start;
        QPoint inwards;
    };

    const QPoint middle = face.center();
    const Side sides[] = {{"left", {face.left(), middle.y()}, {1, 0}},
                          {"top", {middle.x(), face.top()}, {0, 1}},
                          {"right", {face.right(), middle.y()}, {-1, 0}},
                          {"bottom", {middle.x(), face.bottom()}, {0, -1}}};
    for (const Side& side : sides) {
        const auto pixel = [&](int depth) { return picture.pixelColor(side.start + depth * side.inwards); };
        EXPECT_FALSE(isNear(pixel(-1), border)) << what << ", beyond the " << side.name;
        for (int depth = 0; depth < width; ++depth) {
            EXPECT_TRUE(isNear(pixel(depth), border))
                << what << ", " << side.name << " " << depth << ": " << pixel(depth).name().toStdString();
        }
        EXPECT_TRUE(isNear(pixel(width), fill))
            << what << ", inside the " << side.name << ": " << pixel(width).name().toStdString();
    }
}

TEST(RoundedFace, HasTheSameBorderOnAllSidesWhereverItLies) {
    Stage stage("Rectangle { anchors.fill: parent; color: \"black\" }"
                "RoundedFace { objectName: \"face\"; fill: \"#204060\"; stroke: \"#80ffffff\" }");
    QQuickItem& face = stage.item("face");
    for (const double radius : {0.0, 10.0}) {
        face.setProperty("radius", radius);
        for (int step = 0; step < 8; ++step) {
            face.setPosition(QPointF(20 + step, 40 + step / 2.0));
            face.setSize(QSizeF(60 + step, 47 + step));
            expectBorder(stage.grab(), pixelsOf(stage, Stage::frame(face)),
                         over(QColor("#80ffffff"), QColor("#204060")), QColor("#204060"), hairline(stage), "face");
        }
    }
}

TEST(RoundedFace, CoversNoPixelOfItsBorderTwice) {
    Stage stage("Rectangle { anchors.fill: parent; color: \"black\" }"
                "RoundedFace { x: 21; y: 21; width: 41; height: 41; stroke: \"#80ffffff\"; strokeWidth: 3 }");
    const QImage picture = stage.grab();
    for (int y = 0; y < picture.height(); ++y) {
        for (int x = 0; x < picture.width(); ++x) {
            const int brightness = qRed(picture.pixel(x, y));
            ASSERT_TRUE(brightness == 0 || std::abs(brightness - 128) <= 1) << x << ", " << y << ": " << brightness;
        }
    }
}

TEST(RoundedFace, OneThatIsAPointThinIsAHairline) {
    Stage stage("Rectangle { anchors.fill: parent; color: \"black\" }"
                "Divider { objectName: \"lying\"; width: 100; fill: \"white\" }"
                "Divider { objectName: \"standing\"; height: 100; fill: \"white\" }");
    for (int step = 0; step < 8; ++step) {
        stage.item("lying").setPosition(QPointF(20, 20 + step));
        stage.item("standing").setPosition(QPointF(150 + step, 20));
        const QImage picture = stage.grab();
        const double scale = scaleOf(stage);
        int rows = 0;
        for (int y = 0; y < 60 * scale; ++y) {
            const int brightness = picture.pixelColor(static_cast<int>(60 * scale), y).red();
            EXPECT_TRUE(brightness == 0 || brightness == 255) << brightness;
            rows += brightness == 255 ? 1 : 0;
        }
        int columns = 0;
        for (int x = static_cast<int>(140 * scale); x < 200 * scale; ++x) {
            columns += picture.pixelColor(x, static_cast<int>(60 * scale)).red() == 255 ? 1 : 0;
        }
        EXPECT_EQ(rows, hairline(stage));
        EXPECT_EQ(columns, hairline(stage));
    }
}

TEST(RoundedFace, ACircleStaysRoundAndKeepsItsWidth) {
    Stage stage("Rectangle { anchors.fill: parent; color: \"black\" }"
                "RoundedFace { objectName: \"face\"; x: 21; y: 42; width: 18; height: 18; radius: 9; stroke: \"white\";"
                "strokeWidth: 5 }");
    const double scale = scaleOf(stage);
    const QImage picture = stage.grab();
    const int side = static_cast<int>(std::lround(18 * scale));
    const QPoint corner(static_cast<int>(std::lround(21 * scale)), static_cast<int>(std::lround(42 * scale)));
    double across = 0;
    double down = 0;
    for (int i = 0; i < side; ++i) {
        across += picture.pixelColor(corner + QPoint(i, side / 2)).redF();
        down += picture.pixelColor(corner + QPoint(side / 2, i)).redF();
    }
    EXPECT_NEAR(across, 10 * scale, 0.6);
    EXPECT_NEAR(down, 10 * scale, 0.6);
}

TEST(RoundedFace, ShowsNothingWhereItsViewIsCut) {
    Stage stage(
        "Rectangle { anchors.fill: parent; color: \"black\" }"
        "Flickable { objectName: \"view\"; x: 20; y: 20; width: 100; height: 50; contentHeight: 400; clip: true\n"
        "RoundedFace { width: 100; height: 40; radius: 10; fill: \"white\"; stroke: \"white\" } }");
    EXPECT_EQ(stage.pixel({70, 40}), QColor(Qt::white));
    stage.item("view").setProperty("contentY", 10);
    EXPECT_EQ(stage.pixel({70, 30}), QColor(Qt::white));
    EXPECT_EQ(stage.pixel({70, 15}), QColor(Qt::black));
    stage.item("view").setProperty("contentY", 60);
    for (const double y : {10.0, 30.0, 60.0}) {
        EXPECT_EQ(stage.pixel({70, y}), QColor(Qt::black)) << y;
    }
}

TEST(Borders, OfCardsFieldsAndButtonsAreHairlines) {
    Stage stage(
        "Rectangle { anchors.fill: parent; color: \"#808080\" }"
        "CardBackground { objectName: \"cardStroke cardFill\"; x: 21; y: 21; width: 101; height: 63 }"
        "NumberField { objectName: \"fieldStroke fieldFill\"; x: 141; y: 22; width: 161; label: \"A\"; suffix: \" \";"
        "model: RealFieldModel { value: 1; from: 0; to: 9 } }"
        "MouseButtonSelect { objectName: \"fieldStroke fieldFill\"; x: 22; y: 103; width: 203;"
        "names: [\"L\", \"R\", \"M\"]; selection: 0 }"
        "FaceButton { objectName: \"fieldStroke fieldFill\"; x: 241; y: 101; width: 99; label: \" \" }"
        "Segment { objectName: \"fieldStroke fieldFill\"; x: 23; y: 153; width: 143; label: \" \"; isSelected: false }"
        "SecondaryActionButton { objectName: \"cardStrokeStrong fieldFill\"; x: 182; y: 154; width: 201; title: \" \";"
        "systemImage: \"\" }");
    const QImage picture = stage.grab();
    int looked = 0;
    for (const char* type :
         {"CardBackground", "NumberField", "MouseButtonSelect", "FaceButton", "Segment", "SecondaryActionButton"}) {
        const QQuickItem& control = *stage.itemsOf(type).at(0);
        const QStringList colors = control.objectName().split(' ');
        const QColor fill = stage.themeColor(qPrintable(colors[1]));
        expectBorder(picture, pixelsOf(stage, Stage::frame(control)),
                     over(stage.themeColor(qPrintable(colors[0])), fill), fill, hairline(stage), type);
        ++looked;
    }
    EXPECT_EQ(looked, 6);
}

} // namespace
} // namespace velloran::test
