#include "harness/Stage.h"

#include <QAccessible>
#include <QClipboard>
#include <QGuiApplication>
#include <QTest>

#include <gtest/gtest.h>

namespace velloran::test {
namespace {

const QByteArray numberField =
    "property real number: 1234\n"
    "NumberField { objectName: \"field\"; x: 20; y: 20; width: 240; label: \"Clicks\"\n"
    "model: RealFieldModel { value: stage.number; from: 0; to: 100000; decimals: 0\n"
    "onStored: number => { stage.note(number); stage.number = number } } }\n"
    "PrimaryActionButton { objectName: \"start\"; x: 20; y: 240; width: 200; title: \"Start\"; systemImage: "
    "\"play.fill\" }";

const QByteArray nameField =
    "NameField { objectName: \"field\"; x: 20; y: 20; width: 240; label: \"Preset name\"; text: \"Work\"\n"
    "onTextEdited: stage.note(text); onAccepted: stage.note(\"accepted\") }";

class EditMenu : public testing::Test {
protected:
    EditMenu() { QGuiApplication::clipboard()->setText("56"); }

    static QQuickItem& box(const Stage& stage) {
        return *(stage.itemsOf("NumberInput") + stage.itemsOf("NameField")).at(0);
    }

    static QString textOf(const Stage& stage) { return box(stage).property("text").toString(); }

    static QString selected(const Stage& stage) { return box(stage).property("selectedText").toString(); }

    static void select(const Stage& stage, int start, int end) {
        box(stage).forceActiveFocus(Qt::MouseFocusReason);
        QMetaObject::invokeMethod(&box(stage), "select", Q_ARG(int, start), Q_ARG(int, end));
    }

    static void waitUntil(const std::function<bool()>& condition) { ASSERT_TRUE(QTest::qWaitFor(condition, 5000)); }

    static bool isOpen(const Stage& stage) { return !stage.itemsOf("PopupMenuItem").isEmpty(); }

    static void waitUntilOpen(const Stage& stage) {
        waitUntil([&] { return isOpen(stage) && stage.window.activeFocusItem() != &box(stage); });
    }

    static void waitUntilClosed(const Stage& stage) {
        waitUntil([&] { return !isOpen(stage); });
    }

    static void rightClick(Stage& stage) { rightClickAt(stage, Stage::frame(box(stage)).center()); }

    static void rightClickAt(Stage& stage, QPointF point) {
        stage.moveTo(point);
        QTest::mouseClick(&stage.window, Qt::RightButton, {}, point.toPoint());
        waitUntilOpen(stage);
    }

    static void choose(Stage& stage, const char* entry) {
        stage.click(stage.showing(entry));
        waitUntilClosed(stage);
    }

    /// The entries that can be chosen.
    static QStringList enabled(const Stage& stage) {
        QStringList names;
        for (QQuickItem* entry : stage.itemsOf("PopupMenuItem")) {
            const QAccessibleInterface* accessible = QAccessible::queryAccessibleInterface(entry);
            EXPECT_EQ(accessible->role(), QAccessible::MenuItem);
            if (entry->isEnabled()) {
                names.append(accessible->text(QAccessible::Name));
            }
        }
        return names;
    }
};

TEST_F(EditMenu, OffersWhatCanBeDone) {
    Stage stage(numberField);
    QGuiApplication::clipboard()->clear();
    rightClick(stage);
    EXPECT_EQ(stage.itemsOf("PopupMenuItem").size(), 4);
    EXPECT_EQ(enabled(stage), QStringList{"Select All"});
    EXPECT_EQ(stage.showing("Cut").parentItem()->opacity(), 0.45);
    EXPECT_EQ(stage.showing("Select All").parentItem()->opacity(), 1);
    choose(stage, "Select All");
    EXPECT_EQ(selected(stage), "1234");
    rightClick(stage);
    EXPECT_EQ(enabled(stage), (QStringList{"Cut", "Copy"}));
    stage.key(Qt::Key_Escape);
    waitUntilClosed(stage);

    QGuiApplication::clipboard()->setText("56");
    select(stage, 1, 3);
    rightClick(stage);
    EXPECT_EQ(enabled(stage), (QStringList{"Cut", "Copy", "Paste", "Select All"}));
    stage.key(Qt::Key_Escape);
    waitUntilClosed(stage);
    EXPECT_EQ(selected(stage), "23");
}

TEST_F(EditMenu, CutsAndPastesWithoutCommitting) {
    Stage stage(numberField);
    select(stage, 1, 3);
    rightClick(stage);
    choose(stage, "Cut");
    EXPECT_EQ(textOf(stage), "14");
    EXPECT_EQ(QGuiApplication::clipboard()->text(), "23");
    EXPECT_TRUE(stage.shows("Update"));
    EXPECT_TRUE(box(stage).hasActiveFocus());
    rightClick(stage);
    EXPECT_TRUE(stage.shows("Update"));
    choose(stage, "Paste");
    EXPECT_EQ(textOf(stage), "1234");
    EXPECT_TRUE(box(stage).hasActiveFocus());
    stage.type("5");
    EXPECT_EQ(textOf(stage), "12354");
    EXPECT_TRUE(stage.takeLog().isEmpty());
    // Leaving is what commits.
    stage.click(stage.item("start"));
    EXPECT_EQ(stage.takeLog(), QStringList("12354"));
}

TEST_F(EditMenu, CopiesAndKeepsTheSelection) {
    Stage stage(numberField);
    select(stage, 0, 2);
    rightClick(stage);
    choose(stage, "Copy");
    EXPECT_EQ(QGuiApplication::clipboard()->text(), "12");
    EXPECT_EQ(selected(stage), "12");
    EXPECT_EQ(textOf(stage), "1234");
    EXPECT_TRUE(box(stage).hasActiveFocus());
    EXPECT_TRUE(stage.takeLog().isEmpty());
}

TEST_F(EditMenu, KeepsAPendingEditWhileNothingIsChosen) {
    Stage stage(numberField);
    stage.click(box(stage));
    stage.type("9");
    const QString typed = textOf(stage);
    rightClick(stage);
    EXPECT_TRUE(stage.shows("Update"));
    stage.key(Qt::Key_Escape);
    waitUntilClosed(stage);
    EXPECT_EQ(textOf(stage), typed);
    EXPECT_TRUE(stage.shows("Update"));
    EXPECT_TRUE(box(stage).hasActiveFocus());
    EXPECT_TRUE(stage.takeLog().isEmpty());
}

TEST_F(EditMenu, ARightClickGivesTheFieldTheFocus) {
    Stage stage(numberField);
    rightClick(stage);
    choose(stage, "Select All");
    EXPECT_TRUE(box(stage).hasActiveFocus());
    stage.type("7");
    EXPECT_EQ(textOf(stage), "7");
}

TEST_F(EditMenu, TheFrameAroundTheTextOpensItToo) {
    Stage stage(numberField);
    const QRectF frame = Stage::frame(stage.item("field"));
    rightClickAt(stage, {frame.left() + 5, frame.top() + 3});
    choose(stage, "Select All");
    rightClickAt(stage, {frame.left() + 5, frame.bottom() - 3});
    choose(stage, "Cut");
    EXPECT_EQ(textOf(stage), "");
}

TEST_F(EditMenu, OpensByTheMenuKeyAndByShiftF10) {
    Stage stage(numberField);
    stage.key(Qt::Key_Tab);
    ASSERT_EQ(selected(stage), "1234");
    stage.key(Qt::Key_Menu);
    waitUntilOpen(stage);
    stage.key(Qt::Key_Return);
    waitUntilClosed(stage);
    EXPECT_EQ(textOf(stage), "");
    EXPECT_EQ(QGuiApplication::clipboard()->text(), "1234");
    EXPECT_TRUE(box(stage).hasActiveFocus());

    stage.type("9");
    select(stage, 0, 1);
    stage.key(Qt::Key_F10, Qt::ShiftModifier);
    waitUntilOpen(stage);
    stage.key(Qt::Key_Down);
    stage.key(Qt::Key_Down);
    stage.key(Qt::Key_Return);
    waitUntilClosed(stage);
    EXPECT_EQ(textOf(stage), "1234");
    EXPECT_TRUE(stage.takeLog().isEmpty());
    EXPECT_TRUE(box(stage).hasActiveFocus());
}

TEST_F(EditMenu, KeepsThePartThatWasSelectedByKeys) {
    Stage stage(numberField);
    stage.key(Qt::Key_Tab);
    stage.key(Qt::Key_Home);
    stage.key(Qt::Key_Right, Qt::ShiftModifier);
    ASSERT_EQ(selected(stage), "1");
    stage.key(Qt::Key_Menu);
    waitUntilOpen(stage);
    stage.key(Qt::Key_Escape);
    waitUntilClosed(stage);
    EXPECT_EQ(selected(stage), "1");
    EXPECT_TRUE(box(stage).hasActiveFocus());
    EXPECT_TRUE(box(stage).property("visualFocus").toBool());
    // The pointer takes nothing of that away, and adds nothing to a focus of its own.
    rightClick(stage);
    stage.key(Qt::Key_Escape);
    waitUntilClosed(stage);
    EXPECT_EQ(selected(stage), "1");
    EXPECT_TRUE(box(stage).property("visualFocus").toBool());
    stage.clickAt({400, 300});
    stage.click(stage.item("start"));
    rightClick(stage);
    stage.key(Qt::Key_Escape);
    waitUntilClosed(stage);
    EXPECT_FALSE(box(stage).property("visualFocus").toBool());
}

TEST_F(EditMenu, WorksInANameField) {
    Stage stage(nameField);
    select(stage, 0, 4);
    rightClick(stage);
    choose(stage, "Paste");
    EXPECT_EQ(textOf(stage), "56");
    EXPECT_EQ(stage.takeLog(), QStringList("56"));
    stage.key(Qt::Key_A, Qt::ControlModifier);
    stage.key(Qt::Key_Menu);
    waitUntilOpen(stage);
    stage.key(Qt::Key_Return);
    waitUntilClosed(stage);
    EXPECT_EQ(stage.takeLog(), QStringList(""));
    stage.key(Qt::Key_Return);
    EXPECT_EQ(stage.takeLog(), QStringList("accepted"));
}

TEST_F(EditMenu, ADisabledFieldHasNone) {
    Stage stage("NumberField { x: 20; y: 20; width: 240; label: \"Clicks\"; disabled: true\n"
                "model: RealFieldModel { value: 1; from: 0; to: 9 } }");
    const QPoint point = Stage::frame(box(stage)).center().toPoint();
    QTest::mouseClick(&stage.window, Qt::RightButton, {}, point);
    QCoreApplication::processEvents();
    EXPECT_FALSE(isOpen(stage));
}

} // namespace
} // namespace velloran::test
