#include "harness/Stage.h"

#include <QTest>

#include <gtest/gtest.h>

#include <cmath>
#include <cstdlib>

namespace velloran::test {
namespace {

struct Veiled {
    const char* qml;
    /// The type of the part that the veil lies over.
    const char* face;
    /// How far the veil goes beyond that.
    double air = 0;
};

const Veiled veiledControls[] = {
    {"FaceButton { label: \"Reset\" }", "FaceButton"},
    {"ProminentButton { label: \"Donate via Stripe\"; systemImage: \"heart.fill\" }", "ProminentButton"},
    {"FooterButton { label: \"Import\"; systemImage: \"square.and.arrow.down\" }", "FooterButton"},
    {"PlainButton { label: \"Maybe later\" }", "PlainButton", 4},
    {"WindowButton { label: \"Close\"; systemImage: \"window.close\" }", "WindowButton"},
    {"HotkeyChoiceMenu { choices: [] }", "HotkeyChoiceMenu"},
    {"HotkeyRecorder { width: 200; hasCombo: false; display: \"\" }", "PlainButton"},
    {"MouseButtonSelect { width: 200; names: [\"Left\", \"Right\", \"Middle\"]; selection: 0 }", "MouseButtonSelect"},
    {"Segment { width: 160; label: \"Stop After\"; isSelected: true }", "Segment"},
    {"Checkbox { width: 200; label: \"Start clicking after\"; isOn: false }", "RoundedFace"},
    {"RadioButton { width: 200; label: \"Stop after\"; isSelected: true }", "RoundedFace"},
};

QByteArray placed(const char* qml) {
    QByteArray text(qml);
    return text.insert(text.indexOf('{') + 1, " objectName: \"it\"; x: 60; y: 60;");
}

/// How much brighter one picture is than the other, all pixels together; none may be darker.
struct Brighter {
    int sum = 0;
    /// What became brighter, in pixels.
    QRect place;
};

Brighter compare(const QImage& now, const QImage& before) {
    Brighter found;
    for (int y = 0; y < now.height(); ++y) {
        for (int x = 0; x < now.width(); ++x) {
            const int more = qGreen(now.pixel(x, y)) - qGreen(before.pixel(x, y));
            found.sum += more;
            if (more != 0) {
                found.place |= QRect(x, y, 1, 1);
            }
        }
    }
    return found;
}

QList<QQuickItem*> shownVeils(const Stage& stage) {
    QList<QQuickItem*> veils = stage.itemsOf("PointerVeil");
    veils.removeIf([](const QQuickItem* veil) { return !veil->isVisible(); });
    return veils;
}

TEST(PointerVeil, LiesOverTheFaceWhileThePointerIsOnIt) {
    for (const Veiled& control : veiledControls) {
        SCOPED_TRACE(control.qml);
        Stage stage(placed(control.qml));
        QQuickItem& item = stage.item("it");
        const QImage atRest = stage.grab();
        EXPECT_TRUE(shownVeils(stage).isEmpty());
        stage.hover(item);
        ASSERT_EQ(shownVeils(stage).size(), 1);
        const QQuickItem& face = *stage.itemsOf(control.face).at(0);
        const QRectF place =
            Stage::frame(face).marginsAdded(QMarginsF(control.air, control.air, control.air, control.air));
        EXPECT_EQ(Stage::frame(*shownVeils(stage).at(0)), place);
        const Brighter hovered = compare(stage.grab(), atRest);
        EXPECT_GT(hovered.sum, 0);
        EXPECT_TRUE(place.toRect().contains(hovered.place));
        stage.leave();
        EXPECT_EQ(stage.grab(), atRest);
    }
}

TEST(PointerVeil, IsDenserWhileTheControlIsHeldDownByPointerOrKey) {
    for (const Veiled& control : veiledControls) {
        SCOPED_TRACE(control.qml);
        Stage stage(placed(control.qml));
        QQuickItem& item = stage.item("it");
        stage.hover(item);
        const auto density = [&] { return shownVeils(stage).at(0)->property("density"); };
        EXPECT_EQ(density(), stage.theme("hoverVeil"));
        stage.press(item);
        EXPECT_EQ(density(), stage.theme("pressedVeil"));
    }
    Stage stage(placed("FaceButton { label: \"Reset\" }"));
    stage.key(Qt::Key_Tab);
    EXPECT_TRUE(shownVeils(stage).isEmpty());
    QTest::keyPress(&stage.window, Qt::Key_Space);
    EXPECT_EQ(shownVeils(stage).size(), 1);
    QTest::keyRelease(&stage.window, Qt::Key_Space);
    EXPECT_TRUE(shownVeils(stage).isEmpty());
}

TEST(PointerVeil, StaysInsideTheRoundedCorners) {
    Stage stage(placed("FaceButton { width: 120; height: 40; label: \"Reset\" }"));
    const QImage atRest = stage.grab();
    stage.hover(stage.item("it"));
    const QImage hovered = stage.grab();
    for (const QPoint corner : {QPoint(0, 0), QPoint(119, 0), QPoint(0, 39), QPoint(119, 39), QPoint(2, 1)}) {
        const QPoint place = QPoint(60, 60) + corner;
        EXPECT_EQ(hovered.pixelColor(place), atRest.pixelColor(place)) << corner.x() << ", " << corner.y();
    }
    EXPECT_NE(hovered.pixelColor(120, 61), atRest.pixelColor(120, 61));
}

TEST(PointerVeil, IsNotForControlsWithALookOfTheirOwnOrDisabledOnes) {
    for (const char* qml : {"PrimaryActionButton { width: 200; title: \"Start\"; systemImage: \"play.fill\" }",
                            "SecondaryActionButton { width: 200; title: \"Stop\"; systemImage: \"stop.fill\" }",
                            "StepperButton { label: \"Increase\"; systemName: \"chevron.up\" }",
                            "FaceButton { label: \"Reset\"; enabled: false }"}) {
        SCOPED_TRACE(qml);
        Stage stage(placed(qml));
        stage.hover(stage.item("it"));
        EXPECT_TRUE(shownVeils(stage).isEmpty());
        stage.press(stage.item("it"));
        EXPECT_TRUE(shownVeils(stage).isEmpty());
    }
}

TEST(PointerVeil, ComesAndGoesGentlyUnlessMotionIsReduced) {
    Stage stage(placed("FaceButton { label: \"Reset\" }"));
    const double full = stage.theme("hoverVeil").toDouble();
    const auto density = [&] { return stage.itemsOf("PointerVeil").at(0)->property("density").toDouble(); };
    stage.hover(stage.item("it"));
    EXPECT_EQ(density(), full);
    stage.leave();
    EXPECT_EQ(density(), 0);
    stage.setTheme("reducedMotion", false);
    stage.hover(stage.item("it"));
    EXPECT_LT(density(), full);
    EXPECT_TRUE(QTest::qWaitFor([&] { return density() == full; }, 5000));
    stage.leave();
    EXPECT_TRUE(QTest::qWaitFor([&] { return shownVeils(stage).isEmpty(); }, 5000));
}

TEST(PointerVeil, IsDenserWithHighContrast) {
    Stage stage("");
    const double usual = stage.theme("hoverVeil").toDouble();
    stage.setTheme("highContrast", true);
    EXPECT_GT(stage.theme("hoverVeil").toDouble(), usual);
    EXPECT_GT(stage.theme("pressedVeil").toDouble(), stage.theme("hoverVeil").toDouble());
}

} // namespace
} // namespace velloran::test
