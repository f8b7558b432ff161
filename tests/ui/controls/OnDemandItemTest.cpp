#include "harness/Stage.h"

#include <gtest/gtest.h>

namespace velloran::test {
namespace {

QObject* made(const Stage& stage) {
    return stage.object("it").property("made").value<QObject*>();
}

TEST(OnDemand, MakesWhatItHoldsWhenThatIsFirstWanted) {
    const Stage stage("Item { width: 40; height: 30\n"
                      "OnDemand { objectName: \"it\"; Item { objectName: \"made\"; anchors.fill: parent } } }");
    EXPECT_EQ(made(stage), nullptr);
    stage.object("it").setProperty("wanted", true);
    EXPECT_EQ(made(stage), &stage.object("made"));
    EXPECT_EQ(stage.item("made").size(), QSizeF(40, 30));
}

TEST(OnDemand, KeepsItOnceItIsMade) {
    const Stage stage("OnDemand { objectName: \"it\"; wanted: true; Item {} }");
    const QObject* const first = made(stage);
    ASSERT_NE(first, nullptr);
    stage.object("it").setProperty("wanted", false);
    stage.object("it").setProperty("wanted", true);
    EXPECT_EQ(made(stage), first);
}

TEST(OnDemand, MakesItFromAFile) {
    const Stage stage("OnDemand { objectName: \"it\"; source: \"qrc:/qt-project.org/imports/Velloran/BodyText.qml\";"
                      "properties: ({ text: \"a\" })\n"
                      "function again() { return get({ text: \"b\" }) } }");
    EXPECT_EQ(made(stage), nullptr);
    EXPECT_FALSE(stage.shows("a"));
    stage.object("it").setProperty("wanted", true);
    EXPECT_TRUE(stage.shows("a"));
    QVariant answer;
    QMetaObject::invokeMethod(&stage.object("it"), "again", Q_RETURN_ARG(QVariant, answer));
    EXPECT_EQ(answer.value<QObject*>(), made(stage));
    EXPECT_FALSE(stage.shows("b"));
}

TEST(OnDemand, NothingOfAButtonIsMadeForAPointerThatDoesNotCome) {
    Stage stage("PlainButton { objectName: \"button\"; x: 20; y: 20; label: \"A\"; help: \"B\" }");
    EXPECT_EQ(stage.itemsOf("PointerVeil").size(), 0);
    EXPECT_EQ(stage.itemsOf("FocusRing").size(), 0);
    stage.hover(stage.item("button"));
    EXPECT_EQ(stage.itemsOf("PointerVeil").size(), 1);
    EXPECT_EQ(stage.itemsOf("FocusRing").size(), 1);
}

} // namespace
} // namespace velloran::test
