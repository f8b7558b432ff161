#include "harness/Stage.h"

#include <QAccessible>
#include <QTest>

#include <gtest/gtest.h>

namespace velloran::test {
namespace {

const QByteArray chooser = "property int chosen: 1\n"
                           "MouseButtonSelect { objectName: \"chooser\"; x: 20; y: 20; width: 240; label: \"Mouse "
                           "Button\"; names: [\"Left Click\","
                           "\"Right Click\", \"Middle Click\"]; selection: stage.chosen; onSelected: index => { "
                           "stage.note(index); stage.chosen ="
                           "index } }";

QObject& menuOf(const Stage& stage) {
    const QList<QObject*> all = stage.root->findChildren<QObject*>();
    for (QObject* object : all) {
        if (object->inherits("QQuickMenu")) {
            return *object;
        }
    }
    return *stage.root;
}

bool isOpen(const Stage& stage) {
    return menuOf(stage).property("opened").toBool();
}

void waitUntil(const std::function<bool()>& condition) {
    ASSERT_TRUE(QTest::qWaitFor(condition, 5000));
}

TEST(MouseButtonSelect, ShowsTheCurrentChoice) {
    Stage stage(chooser);
    EXPECT_TRUE(stage.shows("Right Click"));
    const QList<QQuickItem*> icons = stage.itemsOf("Icon");
    EXPECT_EQ(icons[0]->property("name"), "computermouse.fill");
    EXPECT_EQ(icons[0]->height(), 13);
    EXPECT_EQ(icons[1]->property("name"), "chevron.down");
    EXPECT_EQ(icons[1]->height(), 11);
    const QRectF face = Stage::frame(stage.item("chooser"));
    EXPECT_EQ(Stage::frame(*icons[0]).left(), face.left() + 12);
    EXPECT_EQ(Stage::frame(*icons[1]).right(), face.right() - 12);
    EXPECT_EQ(Stage::frame(stage.showing("Right Click")).left(), Stage::frame(*icons[0]).right() + 8);
    EXPECT_EQ(face.height(), Stage::frame(stage.showing("Right Click")).height() + 18);
    EXPECT_EQ(stage.pixel({100, 24}).name(), stage.themeColor("fieldFill").name());
    QAccessibleInterface& accessible =
        *QAccessible::queryAccessibleInterface(Stage::itemsOf("PlainButton", stage.item("chooser")).at(0));
    EXPECT_EQ(accessible.text(QAccessible::Name), "Right Click");
    EXPECT_EQ(accessible.text(QAccessible::Description), "Mouse Button");
}

TEST(MouseButtonSelect, OffersTheThreeInTheirOrder) {
    Stage stage(chooser);
    stage.click(stage.item("chooser"));
    waitUntil([&] { return isOpen(stage); });
    const QList<QQuickItem*> items = stage.itemsOf("PopupMenuItem");
    ASSERT_EQ(items.size(), 3);
    const QStringList names{"Left Click", "Right Click", "Middle Click"};
    const QStringList icons{"computermouse", "computermouse.fill", "dot.circle"};
    for (int i = 0; i < 3; ++i) {
        EXPECT_EQ(items[i]->property("label"), names[i]);
        EXPECT_EQ(items[i]->property("systemImage"), icons[i]);
        EXPECT_EQ(QAccessible::queryAccessibleInterface(items[i])->role(), QAccessible::MenuItem);
        EXPECT_EQ(QAccessible::queryAccessibleInterface(items[i])->text(QAccessible::Name), names[i]);
        if (i > 0) {
            EXPECT_GE(Stage::frame(*items[i]).top(), Stage::frame(*items[i - 1]).bottom());
        }
    }
    stage.click(*items[2]);
    EXPECT_EQ(stage.takeLog(), QStringList("2"));
    EXPECT_TRUE(stage.shows("Middle Click"));
    waitUntil([&] { return !isOpen(stage); });
}

TEST(MouseButtonSelect, WorksFromTheKeyboard) {
    Stage stage(chooser);
    QQuickItem& face = *Stage::itemsOf("PlainButton", stage.item("chooser")).at(0);
    stage.key(Qt::Key_Tab);
    for (const Qt::Key opener : {Qt::Key_Space, Qt::Key_Return, Qt::Key_Down}) {
        ASSERT_TRUE(face.hasActiveFocus());
        EXPECT_EQ(face.property("visualFocus"), true);
        stage.key(opener);
        waitUntil([&] { return isOpen(stage); });
        // It opens on the current choice.
        stage.key(Qt::Key_Up);
        stage.key(Qt::Key_Return);
        EXPECT_EQ(stage.takeLog(), QStringList("0"));
        waitUntil([&] { return !isOpen(stage); });
        stage.root->setProperty("chosen", 1);
    }
    stage.key(Qt::Key_Space);
    waitUntil([&] { return isOpen(stage); });
    stage.key(Qt::Key_Escape);
    waitUntil([&] { return !isOpen(stage); });
    EXPECT_TRUE(stage.takeLog().isEmpty());
    EXPECT_TRUE(face.hasActiveFocus());
}

TEST(MouseButtonSelect, WithHighContrastTheSelectedEntryHasAnOutline) {
    Stage stage(chooser);
    const auto edge = [&] {
        stage.key(Qt::Key_Tab);
        stage.key(Qt::Key_Space);
        waitUntil([&] { return isOpen(stage); });
        const QRectF selected = Stage::frame(*stage.itemsOf("PopupMenuItem").at(1));
        const QColor color = stage.pixel({selected.center().x(), selected.top()});
        stage.key(Qt::Key_Escape);
        waitUntil([&] { return !isOpen(stage); });
        return color;
    };
    EXPECT_NE(edge().name(), stage.themeColor("accentBlue").name());
    stage.setTheme("highContrast", true);
    EXPECT_EQ(edge().name(), stage.themeColor("accentBlue").name());
}

TEST(MouseButtonSelect, ASecondPressOnTheFaceClosesTheMenu) {
    Stage stage(chooser);
    stage.click(stage.item("chooser"));
    waitUntil([&] { return isOpen(stage); });
    stage.click(stage.item("chooser"));
    waitUntil([&] { return !isOpen(stage); });
    stage.click(stage.item("chooser"));
    waitUntil([&] { return isOpen(stage); });
    stage.clickAt({470, 310});
    waitUntil([&] { return !isOpen(stage); });
}

const QByteArray presets =
    "PopupMenu { objectName: \"menu\"; x: 20; y: 20\n"
    "MenuSection { title: \"Built-in\" }\n"
    "PopupMenuItem { objectName: \"first\"; label: \"Fish & <i>Chips</i> \\\"x\\\"\"; onTriggered: "
    "stage.note(\"first\") }\n"
    "PopupMenuItem { objectName: \"long\"; label: \"A name \" + \"that goes on and on \".repeat(20); onTriggered:"
    "stage.note(\"long\") }\n"
    "MenuDivider {}\n"
    "PopupMenu { title: \"Delete Preset\"\n"
    "PopupMenuItem { objectName: \"inner\"; label: \"Delete \\\"Work\\\"\"; destructive: true; onTriggered: "
    "stage.note(\"deleted\")"
    "} } }";

void open(const Stage& stage) {
    QMetaObject::invokeMethod(&stage.object("menu"), "open");
    waitUntil([&] { return stage.object("menu").property("opened").toBool(); });
}

TEST(PopupMenu, ShowsNamesLetterForLetterAndCutsTheLongOnes) {
    Stage stage(presets);
    open(stage);
    EXPECT_TRUE(stage.shows("Built-in"));
    EXPECT_TRUE(stage.shows("Fish & <i>Chips</i> \"x\""));
    const QQuickItem& longText = *Stage::itemsOf("BodyText", stage.item("long")).at(0);
    EXPECT_EQ(longText.property("truncated"), true);
    EXPECT_LE(stage.item("long").width(), 340);
    EXPECT_LE(Stage::frame(stage.item("long")).right(), stage.window.width());
    EXPECT_EQ(QAccessible::queryAccessibleInterface(&stage.item("long"))->text(QAccessible::Name).size(), 7 + 20 * 20);
    const QQuickItem& first = *Stage::itemsOf("BodyText", stage.item("first")).at(0);
    EXPECT_EQ(first.property("truncated"), false);
}

TEST(PopupMenu, AnAmpersandMakesNoShortcut) {
    Stage stage(presets);
    open(stage);
    stage.key(Qt::Key_Space, Qt::AltModifier);
    stage.key(Qt::Key_Less, Qt::AltModifier);
    EXPECT_TRUE(stage.takeLog().isEmpty());
}

TEST(PopupMenu, TheKeysSkipWhatCannotBeChosenAndEnterSubmenus) {
    Stage stage(presets);
    open(stage);
    stage.key(Qt::Key_Down);
    EXPECT_EQ(stage.item("first").property("highlighted"), true);
    stage.key(Qt::Key_Down);
    EXPECT_EQ(stage.item("long").property("highlighted"), true);
    stage.key(Qt::Key_Down);
    stage.key(Qt::Key_Right);
    waitUntil([&] { return stage.shows("Delete \"Work\""); });
    waitUntil([&] { return stage.item("inner").property("highlighted").toBool(); });
    const QQuickItem& text = stage.showing("Delete \"Work\"");
    EXPECT_EQ(text.property("color").value<QColor>().name(), stage.themeColor("statusError").name());
    stage.key(Qt::Key_Return);
    EXPECT_EQ(stage.takeLog(), QStringList("deleted"));
}

TEST(PopupMenu, LeavesTheFocusToWhoeverTookIt) {
    Stage stage(
        "FocusScope { id: other; objectName: \"other\"; width: 5; height: 5 }"
        "PlainButton { id: opener; objectName: \"opener\"; label: \"Open\"; x: 20; y: 20; onTriggered: it.open()\n"
        "PopupMenu { id: it; objectName: \"menu\"\n"
        "PopupMenuItem { label: \"Stay\" }\n"
        "PopupMenuItem { label: \"Go\"; onTriggered: other.forceActiveFocus() } } }");
    const auto choose = [&](const char* entry) {
        stage.click(stage.item("opener"));
        waitUntil([&] { return stage.object("menu").property("opened").toBool(); });
        stage.click(stage.showing(entry));
        waitUntil([&] { return !stage.object("menu").property("visible").toBool(); });
    };
    choose("Stay");
    EXPECT_TRUE(stage.item("opener").hasActiveFocus());
    EXPECT_EQ(stage.item("opener").property("visualFocus"), false);
    choose("Go");
    EXPECT_TRUE(stage.item("other").hasActiveFocus());
}

TEST(PopupMenu, AssistiveToolsCanChoose) {
    Stage stage(presets);
    open(stage);
    Stage::act(stage.item("first"), "Press");
    EXPECT_EQ(stage.takeLog(), QStringList("first"));
    waitUntil([&] { return !stage.object("menu").property("visible").toBool(); });
}

TEST(PopupMenu, TakesEntriesFromAList) {
    Stage stage("PopupMenu { id: it; objectName: \"menu\"\n"
                "Instantiator { objectName: \"source\"; model: [\"One\", \"Two\"]\n"
                "delegate: PopupMenuItem { required property string modelData; label: modelData }\n"
                "onObjectAdded: (index, object) => it.insertItem(index, object)\n"
                "onObjectRemoved: (index, object) => it.removeItem(object) } }");
    open(stage);
    EXPECT_TRUE(stage.shows("One"));
    stage.object("source").setProperty("model", QStringList{"A much, much longer name", "Three"});
    EXPECT_EQ(stage.object("menu").property("count"), 2);
    waitUntil([&] { return stage.shows("Three") && !stage.shows("One"); });
    const QQuickItem& longer = stage.showing("A much, much longer name");
    EXPECT_EQ(longer.property("truncated"), false);
}

} // namespace
} // namespace velloran::test
