#include "visual/StateSheet.h"
#include "visual/comparison.h"

#include <QGuiApplication>
#include <QStyleHints>
#include <QTest>

#include <gtest/gtest.h>

namespace velloran::test {
namespace {

using Pose = std::function<void(Stage&)>;

/// The same as the reference of that name.
void expectReference(const StateSheet& sheet, const QString& name) {
    EXPECT_EQ(compareWithReference(sheet.picture(), name).toStdString(), "");
}

const Pose hovered = [](Stage& stage) { stage.hover(stage.item("it")); };
const Pose pressed = [](Stage& stage) { stage.press(stage.item("it")); };
const Pose focused = [](Stage& stage) { stage.key(Qt::Key_Tab); };

Pose with(const char* property, const QVariant& value, const Pose& then = {}) {
    return [=](Stage& stage) {
        stage.item("it").setProperty(property, value);
        if (then) {
            then(stage);
        }
    };
}

QByteArray at(const char* type, const QByteArray& rest) {
    return QByteArray(type) + " { objectName: \"it\"; x: 30; y: 16; " + rest + " }";
}

TEST(Sheet, NumberField) {
    // A blinking cursor would be in the picture or not.
    QGuiApplication::styleHints()->setCursorFlashTime(0);
    const QByteArray field =
        at("NumberField", "width: 240; label: \"Interval\"; suffix: \"seconds\"; model: RealFieldModel {"
                          "value: 0.1; from: 0.01; to: 3600; decimals: 2; step: 0.05 }");
    const Pose edit = [](Stage& stage) { stage.click(stage.item("NumberInput")); };
    const Pose retype = [edit](Stage& stage) {
        edit(stage);
        stage.key(Qt::Key_A, Qt::ControlModifier);
        stage.type("12");
    };
    StateSheet sheet({300, 74});
    sheet.add("normal", field);
    sheet.add("pointer on a stepper", field, [](Stage& stage) { stage.hover(*stage.itemsOf("StepperButton").at(0)); });
    sheet.add("stepper held down", field, [](Stage& stage) { stage.press(*stage.itemsOf("StepperButton").at(1)); });
    sheet.add("focus by pointer", field, edit);
    sheet.add("focus by key", field, focused);
    sheet.add("change pending", field, retype);
    sheet.add("Update held down", field, [retype](Stage& stage) {
        retype(stage);
        stage.press(stage.showing("Update"));
    });
    sheet.add("just updated", field, [retype](Stage& stage) {
        retype(stage);
        stage.key(Qt::Key_Return);
    });
    sheet.add("disabled", field, with("disabled", true));
    sheet.add("no unit, no steppers",
              at("NumberField",
                 "width: 160; label: \"A\"; model: RealFieldModel { value: 100; from: 1; to: 999; decimals: 0 }"));
    const QByteArray narrow =
        at("NumberField", "width: Math.max(110, minimumWidth); label: \"A\"; model: RealFieldModel {"
                          "value: 30; from: 0; to: 3600; step: 1; decimals: 0 }");
    sheet.add("narrow", narrow);
    sheet.add("narrow, change pending", narrow, retype);
    sheet.add("large text", field, [](Stage& stage) { stage.setTheme("fontScale", 1.3); });
    expectReference(sheet, "number-field");
}

TEST(Sheet, SegmentedToggle) {
    const QByteArray toggle =
        at("SegmentedToggle", "width: 340; leftLabel: \"Run Until Stopped\"; rightLabel: \"Stop After\";"
                              "leftSelected: true");
    StateSheet sheet({400, 90});
    sheet.add("left", toggle);
    sheet.add("right", toggle, with("leftSelected", false));
    sheet.add("under the pointer", toggle, [](Stage& stage) { stage.hover(*stage.itemsOf("Segment").at(1)); });
    sheet.add("held down", toggle, [](Stage& stage) { stage.press(*stage.itemsOf("Segment").at(1)); });
    sheet.add("focus by key", toggle, focused);
    sheet.add("large text", toggle, [](Stage& stage) { stage.setTheme("fontScale", 1.3); });
    expectReference(sheet, "segmented-toggle");
}

TEST(Sheet, Checkbox) {
    const QByteArray box = at("Checkbox", "width: 300; isOn: false; label: \"Start clicking after\"");
    StateSheet sheet({360, 50});
    sheet.add("off", box);
    sheet.add("on", box, with("isOn", true));
    sheet.add("under the pointer", box, hovered);
    sheet.add("on, under the pointer", box, with("isOn", true, hovered));
    sheet.add("held down", box, pressed);
    sheet.add("focus by key", box, focused);
    sheet.add("on, focus by key", box, with("isOn", true, focused));
    sheet.add("large text", box, [](Stage& stage) { stage.setTheme("fontScale", 1.3); });
    expectReference(sheet, "checkbox");
}

TEST(Sheet, RadioButton) {
    const QByteArray radio = at("RadioButton", "width: 300; isSelected: false; label: \"Run until manually stopped\"");
    StateSheet sheet({360, 50});
    sheet.add("not selected", radio);
    sheet.add("selected", radio, with("isSelected", true));
    sheet.add("under the pointer", radio, hovered);
    sheet.add("selected, under the pointer", radio, with("isSelected", true, hovered));
    sheet.add("held down", radio, pressed);
    sheet.add("focus by key", radio, focused);
    sheet.add("selected, focus by key", radio, with("isSelected", true, focused));
    expectReference(sheet, "radio-button");
}

TEST(Sheet, MouseButtonSelect) {
    const QByteArray chooser =
        at("MouseButtonSelect", "width: 240; names: [\"Left Click\", \"Right Click\", \"Middle Click\"];"
                                "selection: 0");
    const Pose opened = [](Stage& stage) {
        stage.click(stage.item("it"));
        ASSERT_TRUE(QTest::qWaitFor([&] { return stage.shows("Middle Click"); }, 5000));
        stage.hover(stage.showing("Right Click"));
    };
    StateSheet closed({300, 66});
    closed.add("left", chooser);
    closed.add("right", chooser, with("selection", 1));
    closed.add("middle", chooser, with("selection", 2));
    closed.add("under the pointer", chooser, hovered);
    closed.add("held down", chooser, pressed);
    closed.add("focus by key", chooser, focused);
    expectReference(closed, "mouse-button-select");
    StateSheet open({300, 190});
    open.add("open", chooser, opened);
    expectReference(open, "mouse-button-menu");
}

TEST(Sheet, PopupMenu) {
    const QByteArray menu = "PopupMenu { objectName: \"menu\"; x: 30; y: 20\n"
                            "MenuSection { title: \"Built-in\" }\n"
                            "PopupMenuItem { label: \"Slow & steady\" }\n"
                            "MenuSection { title: \"My Presets\" }\n"
                            "PopupMenuItem { label: \"A name \" + \"that goes on and on \".repeat(20) }\n"
                            "MenuDivider {}\n"
                            "PopupMenu { title: \"Delete Preset\"\n"
                            "PopupMenuItem { label: \"Delete \\\"Work\\\"\"; destructive: true } }\n"
                            "MenuDivider {}\n"
                            "PopupMenuItem { label: \"Save current as preset…\" } }";
    const Pose opened = [](Stage& stage) {
        QMetaObject::invokeMethod(&stage.object("menu"), "open");
        ASSERT_TRUE(QTest::qWaitFor([&] { return stage.object("menu").property("opened").toBool(); }, 5000));
    };
    StateSheet sheet({560, 280});
    sheet.add("open", menu, opened);
    sheet.add("in a submenu", menu, [opened](Stage& stage) {
        opened(stage);
        for (const Qt::Key key : {Qt::Key_Down, Qt::Key_Down, Qt::Key_Down, Qt::Key_Right}) {
            stage.key(key);
        }
        ASSERT_TRUE(QTest::qWaitFor([&] { return stage.shows("Delete \"Work\""); }, 5000));
    });
    expectReference(sheet, "popup-menu");
}

TEST(Sheet, PrimaryActionButton) {
    const QByteArray button = "Rectangle { anchors.fill: parent; color: Theme.appBackground }" +
                              at("PrimaryActionButton", "width: 280; title: \"Start\"; systemImage: \"play.fill\"");
    StateSheet sheet({340, 100});
    sheet.add("normal", button);
    sheet.add("under the pointer", button, hovered);
    sheet.add("held down", button, pressed);
    sheet.add("focus by key", button, focused);
    sheet.add("disabled", button, with("disabled", true));
    sheet.add("disabled, under the pointer", button, with("disabled", true, hovered));
    sheet.add("large text", button, [](Stage& stage) { stage.setTheme("fontScale", 1.3); });
    expectReference(sheet, "primary-action-button");
}

TEST(Sheet, SecondaryActionButton) {
    const QByteArray button = "Rectangle { anchors.fill: parent; color: Theme.appBackground }" +
                              at("SecondaryActionButton", "width: 280; title: \"Stop\"; systemImage: \"stop.fill\"");
    StateSheet sheet({340, 94});
    sheet.add("normal", button);
    sheet.add("under the pointer", button, hovered);
    sheet.add("held down", button, pressed);
    sheet.add("focus by key", button, focused);
    sheet.add("disabled", button, with("disabled", true));
    sheet.add("active", button, with("active", true));
    sheet.add("active, under the pointer", button, with("active", true, hovered));
    sheet.add("active, held down", button, with("active", true, pressed));
    sheet.add("active, focus by key", button, with("active", true, focused));
    expectReference(sheet, "secondary-action-button");
}

TEST(Sheet, PlainButton) {
    const QByteArray button =
        at("PlainButton", "label: \"Maybe later\"; size: 12.5; weight: Font.Medium; color: Theme.textMuted;"
                          "help: \"Asks again another day\"");
    StateSheet sheet({260, 70});
    sheet.add("normal", button);
    sheet.add("under the pointer", button, hovered);
    sheet.add("held down", button, pressed);
    sheet.add("focus by key", button, focused);
    sheet.add("help", button, [](Stage& stage) {
        stage.hover(stage.item("it"));
        ASSERT_TRUE(QTest::qWaitFor([&] { return stage.shows("Asks again another day"); }, 5000));
    });
    expectReference(sheet, "plain-button");
}

TEST(Sheet, FaceButton) {
    const QByteArray quiet = at("FaceButton", "label: \"I've already donated\"");
    const QByteArray prominent = at("ProminentButton", "label: \"Donate via Stripe\"; systemImage: \"heart.fill\"");
    const QByteArray footer = at("FooterButton", "label: \"Import\"; systemImage: \"square.and.arrow.down\"");
    StateSheet sheet({260, 70});
    for (const QByteArray& button : {quiet, prominent, footer}) {
        sheet.add("normal", button);
        sheet.add("under the pointer", button, hovered);
        sheet.add("held down", button, pressed);
        sheet.add("focus by key", button, focused);
    }
    expectReference(sheet, "face-button");
}

TEST(Sheet, Card) {
    const QByteArray card =
        "AppBackground { anchors.fill: parent }"
        "CardBackground { x: 40; y: 30; width: 420; contentItem: ColumnLayout { spacing: Theme.spacing.md\n"
        "SectionHeader { Layout.fillWidth: true; icon: \"computermouse.fill\"; title: \"Click Configuration\" }\n"
        "SectionHeader { Layout.fillWidth: true; icon: \"keyboard.fill\"; title: \"Start / Stop Options\"; iconColor:"
        "Theme.statusRunning }\n"
        "Divider { Layout.fillWidth: true }\n"
        "BodyText { text: \"Mouse Button\"; size: 13.5; weight: Font.Medium; color: Theme.textSecondary }\n"
        "BodyText { text: \"Time between each click\"; size: 12; color: Theme.textMuted } } }";
    StateSheet sheet({500, 300});
    sheet.add("normal", card);
    sheet.add("large text", card, [](Stage& stage) { stage.setTheme("fontScale", 1.3); });
    expectReference(sheet, "card");
}

} // namespace
} // namespace velloran::test
