#include "platform/sway/messages.h"

#include <gtest/gtest.h>

#include <string>

namespace velloran::tests {

using namespace platform::sway;

TEST(SwayMessagesTest, AMessageIsAMarkItsSizeItsTypeAndItsText) {
    const std::string bytes = encode({MessageType::subscribe, "[1]"});
    ASSERT_EQ(bytes.size(), 17U);
    EXPECT_EQ(bytes.substr(0, 6), "i3-ipc");
    EXPECT_EQ(bytes[6], 3);
    EXPECT_EQ(bytes[10], 2);
    EXPECT_EQ(bytes.substr(14), "[1]");
}

TEST(SwayMessagesTest, MessagesComeBackHoweverTheirBytesAreCut) {
    const std::vector<Message> messages{
        {MessageType::runCommand, "nop"}, {MessageType::bindingEvent, ""}, {MessageType::workspaceEvent, "{}"}};
    std::string bytes;
    for (const Message& message : messages) {
        bytes += encode(message);
    }
    for (std::size_t piece = 1; piece <= bytes.size(); ++piece) {
        MessageReader reader;
        std::vector<Message> read;
        for (std::size_t begin = 0; begin < bytes.size(); begin += piece) {
            reader.append(std::string_view(bytes).substr(begin, piece));
            while (const auto message = reader.next()) {
                read.push_back(*message);
            }
        }
        EXPECT_EQ(read, messages) << "in pieces of " << piece;
        EXPECT_FALSE(reader.isBroken());
    }
}

TEST(SwayMessagesTest, WhatIsNoMessageBreaksTheReader) {
    MessageReader reader;
    reader.append("HTTP/1.1 400 Bad Request");
    EXPECT_EQ(reader.next(), std::nullopt);
    EXPECT_TRUE(reader.isBroken());
    reader.append(encode({MessageType::runCommand, "nop"}));
    EXPECT_EQ(reader.next(), std::nullopt);
}

TEST(SwayMessagesTest, ASizeThatNobodySendsBreaksTheReader) {
    std::string bytes = encode({MessageType::runCommand, ""});
    bytes[9] = 0x7F;
    MessageReader reader;
    reader.append(bytes);
    EXPECT_EQ(reader.next(), std::nullopt);
    EXPECT_TRUE(reader.isBroken());
}

} // namespace velloran::tests
