#include "ui/controls/NumberFieldStage.h"
#include "ui/controls/WholeNumber.h"

#include <gtest/gtest.h>

#include <limits>

namespace velloran::test {
namespace {

/// A stage with a field of whole numbers. They pass through the views' language on both ways.
class CountStage : public Stage {
public:
    CountStage(std::int64_t least, std::int64_t most)
        : Stage("property wholeNumber number\n"
                "property wholeNumber least\n"
                "property wholeNumber most\n"
                "property wholeNumber told\n"
                "NumberField { objectName: \"field\"; x: 20; y: 20; width: 360; label: \"Clicks\"\n"
                "model: CountFieldModel { value: stage.number; from: stage.least; to: stage.most; step: 10\n"
                "onStored: number => { stage.note(number + \"\"); stage.told = number; stage.number = number } } }") {
        set("most", most);
        set("least", least);
    }

    void set(const char* property, std::int64_t number) const {
        root->setProperty(property, QVariant::fromValue(WholeNumber{number}));
    }
};

TEST(WholeNumberItem, AreExact) {
    CountStage stage(-1, std::numeric_limits<std::int64_t>::max());
    for (const char* digits : {"9223372036854775807", "-9223372036854775808", "9007199254740993", "0"}) {
        stage.set("number", QByteArray(digits).toLongLong());
        EXPECT_EQ(shownText(stage), digits);
        EXPECT_FALSE(stage.shows("Update"));
    }
    for (const char* digits : {"9007199254740993", "4611686018427387903"}) {
        retype(stage, digits);
        stage.key(Qt::Key_Return);
        EXPECT_EQ(stage.takeLog(), QStringList(digits));
        EXPECT_EQ(stage.root->property("told").value<WholeNumber>().value, QByteArray(digits).toLongLong());
        EXPECT_EQ(shownText(stage), digits);
        EXPECT_TRUE(stage.shows("Updated"));
    }
    stage.key(Qt::Key_Down);
    EXPECT_EQ(stage.takeLog(), QStringList("4611686018427387893"));
}

TEST(WholeNumberItem, ANumberThatIsTooLongShowsItsBeginning) {
    CountStage stage(1, 100);
    stage.item("field").setWidth(110);
    const auto beginning = [&] {
        QRectF rectangle;
        QMetaObject::invokeMethod(&stage.item("NumberInput"), "positionToRectangle", Q_RETURN_ARG(QRectF, rectangle),
                                  Q_ARG(int, 0));
        return rectangle.left();
    };
    stage.set("number", std::numeric_limits<std::int64_t>::max());
    ASSERT_GT(stage.item("NumberInput").property("contentWidth").toDouble(), stage.item("NumberInput").width());
    EXPECT_GE(beginning(), 0);
    stage.click(stage.item("NumberInput"));
    stage.key(Qt::Key_End);
    EXPECT_LT(beginning(), 0);
}

TEST(WholeNumberItem, BeyondTheBoundsAreShownAndCommittedToTheNearest) {
    CountStage stage(1, 100);
    stage.set("number", std::numeric_limits<std::int64_t>::max());
    stage.key(Qt::Key_Tab);
    stage.key(Qt::Key_Up);
    EXPECT_EQ(stage.takeLog(), QStringList("100"));
    stage.set("number", std::numeric_limits<std::int64_t>::min());
    stage.key(Qt::Key_Down);
    EXPECT_EQ(stage.takeLog(), QStringList("1"));
    EXPECT_EQ(shownText(stage), "1");
}

} // namespace
} // namespace velloran::test
