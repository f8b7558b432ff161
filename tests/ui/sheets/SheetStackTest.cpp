#include "ui/sheets/SheetStack.h"

#include <QSignalSpy>

#include <gtest/gtest.h>

namespace velloran::tests {

TEST(SheetStackTest, TheLastOneShownIsOnTop) {
    SheetStack stack;
    QObject a;
    QObject b;
    EXPECT_FALSE(stack.isOccupied());
    EXPECT_EQ(stack.top(), nullptr);
    stack.show(&a, false);
    stack.show(&b, false);
    stack.show(&a, false);
    EXPECT_EQ(stack.top(), &b);
    EXPECT_EQ(stack.levelOf(&a), 0);
    EXPECT_EQ(stack.levelOf(&b), 1);
    stack.hide(&a);
    EXPECT_EQ(stack.levelOf(&a), -1);
    EXPECT_EQ(stack.levelOf(&b), 0);
    stack.hide(&a);
    stack.hide(nullptr);
    stack.hide(&b);
    EXPECT_FALSE(stack.isOccupied());
}

TEST(SheetStackTest, OneThatWaitsComesLast) {
    SheetStack stack;
    QSignalSpy changes(&stack, &SheetStack::changed);
    QObject a;
    QObject b;
    QObject waiting;
    stack.show(&a, false);
    stack.show(&waiting, true);
    stack.show(&waiting, true);
    EXPECT_EQ(stack.levelOf(&waiting), -1);
    stack.show(&b, false);
    stack.hide(&a);
    EXPECT_EQ(stack.levelOf(&waiting), -1);
    stack.hide(&b);
    EXPECT_EQ(stack.top(), &waiting);
    EXPECT_EQ(changes.count(), 4);
}

TEST(SheetStackTest, OneThatWaitsOpensAtOnceWhenNothingIsOpen) {
    SheetStack stack;
    QObject waiting;
    stack.show(&waiting, true);
    EXPECT_EQ(stack.top(), &waiting);
}

TEST(SheetStackTest, WaitingCanBeGivenUp) {
    SheetStack stack;
    QObject a;
    QObject waiting;
    stack.show(&a, false);
    stack.show(&waiting, true);
    stack.hide(&waiting);
    stack.hide(&a);
    EXPECT_FALSE(stack.isOccupied());
}

TEST(SheetStackTest, ADestroyedSheetIsClosed) {
    SheetStack stack;
    QObject waiting;
    {
        QObject a;
        stack.show(&a, false);
        stack.show(&waiting, true);
    }
    EXPECT_EQ(stack.top(), &waiting);
}

} // namespace velloran::tests
