#include "platform/portal/EiSender.h"

#include "harness/EiServer.h"
#include "platform/qt/QtEventLoop.h"

#include <QTest>

#include <gtest/gtest.h>

#include <fcntl.h>
#include <sys/socket.h>
#include <unistd.h>

#include <array>
#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace velloran::tests {
namespace {

using namespace platform;
using platform::portal::EiSender;

using Log = std::vector<std::string>;

const std::vector<MouseEvent> click{{MouseEventType::rightMouseDown, {}, EventButton::right},
                                    {MouseEventType::rightMouseUp, {}, EventButton::right}};

/// Carries what goes between a sender and the server, and counts the pieces that come from the sender.
class Wire {
public:
    explicit Wire(int server) : server_(server) {
        EXPECT_EQ(socketpair(AF_UNIX, SOCK_SEQPACKET | SOCK_CLOEXEC | SOCK_NONBLOCK, 0, ends_.data()), 0);
    }

    Wire(const Wire&) = delete;
    Wire& operator=(const Wire&) = delete;

    ~Wire() {
        close(server_);
        close(ends_[0]);
    }

    /// Which it takes over.
    [[nodiscard]] int forSender() const { return ends_[1]; }

    void carry() {
        pieces += pass(ends_[0], server_);
        pass(server_, ends_[0]);
    }

    int pieces = 0;

private:
    static int pass(int from, int to) {
        std::array<char, 8192> piece{};
        int count = 0;
        for (ssize_t size = 0; (size = recv(from, piece.data(), piece.size(), MSG_DONTWAIT)) > 0; ++count) {
            EXPECT_EQ(send(to, piece.data(), static_cast<std::size_t>(size), MSG_NOSIGNAL), size);
        }
        return count;
    }

    int server_;
    std::array<int, 2> ends_{-1, -1};
};

class EiSenderTest : public testing::Test {
protected:
    ~EiSenderTest() override {
        if (sender) {
            sender->end(nullptr);
        }
    }

    template<typename Condition>
    bool until(Condition condition) {
        return QTest::qWaitFor(
            [&] {
                if (server) {
                    server->look();
                }
                return condition();
            },
            10'000);
    }

    void connect() {
        sender = std::make_shared<EiSender>(loop, server->makeClient(),
                                            EiSender::Told{[this] { ++changes; }, [this] { ++losses; }});
    }

    void open() {
        connect();
        ASSERT_TRUE(until([this] { return sender->canSend() && server->isEmulating; }));
    }

    std::optional<EiServer> server{std::in_place};
    qt::QtEventLoop loop;
    std::shared_ptr<EiSender> sender;
    int changes = 0;
    int losses = 0;
};

TEST_F(EiSenderTest, ClickIsAPressAndAReleaseInTwoFrames) {
    ASSERT_NO_FATAL_FAILURE(open());
    EXPECT_EQ(changes, 1);
    EXPECT_FALSE(sender->waits());
    sender->send(click);
    EXPECT_TRUE(until([this] { return server->log.size() >= 4; }));
    EXPECT_EQ(server->log, (Log{"273 down", "frame", "273 up", "frame"})) << "and the pointer alone was asked for";
}

TEST_F(EiSenderTest, ClickLeavesInOnePiece) {
    Wire wire(server->makeClient());
    sender =
        std::make_shared<EiSender>(loop, wire.forSender(), EiSender::Told{[this] { ++changes; }, [this] { ++losses; }});
    ASSERT_TRUE(until([&] {
        wire.carry();
        return sender->canSend() && server->isEmulating;
    }));
    const int before = wire.pieces;
    sender->send(click);
    EXPECT_TRUE(until([&] {
        wire.carry();
        return server->log.size() >= 4;
    }));
    EXPECT_EQ(wire.pieces, before + 1) << "who is killed has sent all of it or nothing";
}

TEST_F(EiSenderTest, ManyClicksKeepTheirOrder) {
    ASSERT_NO_FATAL_FAILURE(open());
    Log expected;
    for (int number = 0; number < 500; ++number) {
        sender->send(click);
        expected.insert(expected.end(), {"273 down", "frame", "273 up", "frame"});
        server->look();
    }
    EXPECT_TRUE(until([&] { return server->log.size() >= expected.size(); }));
    EXPECT_EQ(server->log, expected);
}

TEST_F(EiSenderTest, WhatTheDesktopHasNotReadIsKept) {
    ASSERT_NO_FATAL_FAILURE(open());
    EXPECT_TRUE(until([this] { return !sender->isKeeping(); }));
    sender->send(click);
    EXPECT_TRUE(sender->isKeeping());
    EXPECT_TRUE(until([this] { return !sender->isKeeping(); }));
    sender->end(nullptr);
    EXPECT_FALSE(sender->isKeeping());
}

TEST_F(EiSenderTest, DeviceThatRestsTakesNoClicks) {
    server->resumesAtOnce = false;
    connect();
    ASSERT_TRUE(until([this] { return server->hasDevice(); }));
    EXPECT_FALSE(sender->canSend());
    sender->send(click);
    server->resume();
    // The server's library pauses no device that it knows to be in use.
    ASSERT_TRUE(QTest::qWaitFor([this] { return sender->canSend(); }, 10'000));
    server->pause();
    ASSERT_TRUE(until([this] { return !sender->canSend(); }));
    EXPECT_EQ(changes, 2);
    sender->send(click);
    server->resume();
    ASSERT_TRUE(until([this] { return sender->canSend(); }));
    sender->send(click);
    EXPECT_TRUE(until([this] { return server->log.size() >= 4; }));
    EXPECT_EQ(server->log.size(), 4U);
    EXPECT_EQ(losses, 0);
}

TEST_F(EiSenderTest, DeviceThatGoesTakesNoClicks) {
    ASSERT_NO_FATAL_FAILURE(open());
    server->removeDevice();
    ASSERT_TRUE(until([this] { return !sender->canSend(); }));
    EXPECT_EQ(changes, 2);
    sender->send(click);
    EXPECT_EQ(losses, 0);
}

TEST_F(EiSenderTest, EndOfTheServerIsToldOnce) {
    ASSERT_NO_FATAL_FAILURE(open());
    server.reset();
    ASSERT_TRUE(until([this] { return losses == 1; }));
    EXPECT_FALSE(sender->canSend());
    sender->send(click);
    sender->end(nullptr);
    EXPECT_EQ(losses, 1);
}

TEST_F(EiSenderTest, EndThatIsFoundInSendingIsToldOnce) {
    ASSERT_NO_FATAL_FAILURE(open());
    server.reset();
    // Before any turn in which the end could be read.
    sender->send(click);
    ASSERT_TRUE(until([this] { return losses == 1; }));
    EXPECT_FALSE(sender->canSend());
    sender->end(nullptr);
    EXPECT_EQ(losses, 1);
}

TEST_F(EiSenderTest, EndTellsTheServerAndNobodyElse) {
    ASSERT_NO_FATAL_FAILURE(open());
    sender->end(nullptr);
    EXPECT_FALSE(sender->canSend());
    sender->send(click);
    EXPECT_TRUE(until([this] { return server->isClientGone; }));
    EXPECT_EQ(server->log, Log{});
    EXPECT_EQ(changes, 1);
    EXPECT_EQ(losses, 0);
}

TEST_F(EiSenderTest, MayBeEndedByWhoIsTold) {
    sender = std::make_shared<EiSender>(loop, server->makeClient(),
                                        EiSender::Told{[this] {
                                                           sender->end(nullptr);
                                                           sender.reset();
                                                           ++changes;
                                                       },
                                                       [this] { ++losses; }});
    EXPECT_TRUE(until([this] { return changes == 1 && server->isClientGone; }));
    EXPECT_EQ(losses, 0);
}

TEST_F(EiSenderTest, StaysUntilWhoIsToldIsDone) {
    bool isThere = false;
    sender = std::make_shared<EiSender>(loop, server->makeClient(),
                                        EiSender::Told{[this] { ++changes; },
                                                       [&] {
                                                           const std::weak_ptr<EiSender> weak = sender;
                                                           sender.reset();
                                                           isThere = !weak.expired();
                                                           ++losses;
                                                       }});
    ASSERT_TRUE(until([this] { return sender->canSend(); }));
    server.reset();
    sender->send(click);
    ASSERT_TRUE(until([this] { return losses == 1; }));
    EXPECT_TRUE(isThere);
}

} // namespace
} // namespace velloran::tests
