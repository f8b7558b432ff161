#include "platform/sway/SwayConnection.h"

#include "platform/wayland/LoopTest.h"

#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <memory>
#include <string>
#include <thread>

namespace velloran::tests {

using platform::sway::Message;
using platform::sway::MessageType;
using platform::sway::SwayConnection;

/// Somebody who listens as sway does, and takes his time.
class SwayConnectionTest : public LoopTest {
protected:
    void SetUp() override {
        std::string name = std::filesystem::temp_directory_path() / "velloran-socket-XXXXXX";
        folder = mkdtemp(name.data());
        sockaddr_un address{};
        address.sun_family = AF_UNIX;
        path().copy(address.sun_path, sizeof address.sun_path - 1);
        listener = socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
        ASSERT_EQ(bind(listener, reinterpret_cast<const sockaddr*>(&address), sizeof address), 0);
        ASSERT_EQ(listen(listener, 1), 0);
        connection = SwayConnection::open(loop, path(), [](const Message&) {}, {});
        ASSERT_TRUE(connection);
        taken = accept(listener, nullptr, nullptr);
        ASSERT_GE(taken, 0);
    }

    void TearDown() override {
        connection.reset();
        close(taken);
        close(listener);
        std::filesystem::remove_all(folder);
    }

    [[nodiscard]] std::string path() const { return folder / "commands"; }

    /// All that is sent until its end.
    [[nodiscard]] std::string readToTheEnd() const {
        std::string all;
        std::array<char, 65536> bytes{};
        for (ssize_t count = 1; count > 0;) {
            count = read(taken, bytes.data(), bytes.size());
            all.append(bytes.data(), static_cast<std::size_t>(std::max<ssize_t>(0, count)));
        }
        return all;
    }

    std::filesystem::path folder;
    int listener = -1;
    int taken = -1;
    std::unique_ptr<SwayConnection> connection;
};

namespace {

/// More than a socket keeps for a reader.
const Message large{MessageType::runCommand, std::string(std::size_t{1} << 20U, 'x')};
const Message last{MessageType::runCommand, "the last one"};

} // namespace

TEST_F(SwayConnectionTest, WhatTheSocketDidNotTakeYetIsSentAtTheEnd) {
    connection->send(large);
    connection->send(last);
    std::string received;
    std::thread reader([&] {
        received = readToTheEnd();
        shutdown(taken, SHUT_RDWR);
    });
    const auto start = std::chrono::steady_clock::now();
    connection->finish();
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(2));
    connection.reset();
    reader.join();
    EXPECT_TRUE(received.ends_with("the last one")) << received.size() << " bytes";
}

TEST_F(SwayConnectionTest, AnEndIsNotWaitedForLongWhereNobodyReads) {
    connection->send(large);
    const auto start = std::chrono::steady_clock::now();
    connection->finish();
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(2));
}

} // namespace velloran::tests
