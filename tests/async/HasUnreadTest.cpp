#include "async/hasUnread.h"

#include <gtest/gtest.h>
#include <sys/socket.h>
#include <unistd.h>

#include <array>

namespace velloran {

namespace {

class HasUnreadTest : public testing::Test {
protected:
    void SetUp() override { ASSERT_EQ(socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends.data()), 0); }

    void TearDown() override {
        close(ends[0]);
        close(ends[1]);
    }

    void write(const char* letter) { ASSERT_EQ(send(ends[0], letter, 1, 0), 1); }

    void read() {
        char letter = 0;
        ASSERT_EQ(recv(ends[1], &letter, 1, 0), 1);
    }

    std::array<int, 2> ends{-1, -1};
};

TEST_F(HasUnreadTest, WhatWasWrittenIsUnreadUntilAllOfItIsRead) {
    EXPECT_FALSE(hasUnread(ends[0]));
    write("a");
    EXPECT_TRUE(hasUnread(ends[0]));
    EXPECT_FALSE(hasUnread(ends[1])) << "its own writing counts, not what it has to read";
    write("b");
    read();
    EXPECT_TRUE(hasUnread(ends[0]));
    read();
    EXPECT_FALSE(hasUnread(ends[0]));
}

TEST_F(HasUnreadTest, NobodyHasAnythingToReadAnyMore) {
    write("a");
    close(ends[1]);
    ends[1] = -1;
    EXPECT_FALSE(hasUnread(ends[0]));
    EXPECT_FALSE(hasUnread(-1));
}

} // namespace

} // namespace velloran
