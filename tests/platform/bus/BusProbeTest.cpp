#include "platform/bus/busProbe.h"

#include "harness/ChildProcess.h"

#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <cerrno>
#include <chrono>
#include <cstring>
#include <string>
#include <thread>
#include <utility>
#include <vector>

namespace velloran::tests {
namespace {

using namespace std::chrono_literals;
using platform::bus::BusState;
using platform::bus::probeBus;

/// Enough for anybody who answers at all.
constexpr auto longLimit = 20s;
/// For those who do not: it is waited out.
constexpr auto shortLimit = 100ms;

sockaddr_un nameOf(const QString& path) {
    sockaddr_un name{};
    name.sun_family = AF_UNIX;
    std::strncpy(name.sun_path, QFile::encodeName(path).constData(), sizeof name.sun_path - 1);
    return name;
}

/// A place to which one can connect. Nobody is taken from its queue, unless `serveOne` does.
class Listener {
public:
    explicit Listener(const QString& path, int queueLength = 5) : descriptor_(socket(AF_UNIX, SOCK_STREAM, 0)) {
        const sockaddr_un name = nameOf(path);
        EXPECT_EQ(bind(descriptor_, reinterpret_cast<const sockaddr*>(&name), sizeof name), 0);
        EXPECT_EQ(listen(descriptor_, queueLength), 0);
    }

    Listener(const Listener&) = delete;
    Listener& operator=(const Listener&) = delete;

    ~Listener() {
        if (server_.joinable()) {
            server_.join();
        }
        close(descriptor_);
    }

    /// Takes one client, says `answer` to the first thing that it says, and nothing more until it goes.
    void serveOne(std::string answer) {
        server_ = std::thread([this, answer = std::move(answer)] {
            const int client = accept(descriptor_, nullptr, nullptr);
            char bytes[512];
            if (recv(client, bytes, sizeof bytes, 0) > 0 && !answer.empty()) {
                send(client, answer.data(), answer.size(), MSG_NOSIGNAL);
                while (recv(client, bytes, sizeof bytes, 0) > 0) {
                }
            }
            close(client);
        });
    }

private:
    int descriptor_;
    std::thread server_;
};

class BusProbeTest : public testing::Test {
protected:
    [[nodiscard]] QString path(const QString& name = QStringLiteral("bus")) const { return folder_.filePath(name); }

    [[nodiscard]] QByteArray address(const QString& name = QStringLiteral("bus")) const {
        return "unix:path=" + QFile::encodeName(path(name));
    }

    QTemporaryDir folder_;
};

/// A bus that is all there, at an address of its choice.
class RealBus {
public:
    explicit RealBus(const QByteArray& address)
        : process_({"dbus-daemon", "--nofork", "--print-address", "--config-file", BUS_CONFIGURATION,
                    "--address=" + address.toStdString()}) {
        address_ = QByteArray::fromStdString(process_.readLine().value_or(""));
    }

    [[nodiscard]] QByteArray address() const { return address_; }

private:
    ChildProcess process_;
    QByteArray address_;
};

TEST_F(BusProbeTest, ABusAnswers) {
    const RealBus bus(address());
    EXPECT_EQ(probeBus(address(), longLimit), BusState::answers);
    EXPECT_EQ(probeBus(bus.address(), longLimit), BusState::answers);
}

TEST_F(BusProbeTest, ReadsAddressesOfAllForms) {
    const RealBus spaced(address("a%20bus"));
    ASSERT_TRUE(QFile::exists(path("a bus")));
    EXPECT_EQ(probeBus(address("a%20bus"), longLimit), BusState::answers);
    EXPECT_EQ(probeBus("unix:guid=12,path=" + QFile::encodeName(path("a%20bus")), longLimit), BusState::answers);
    const QByteArray abstract = "unix:abstract=velloran-test-" + QByteArray::number(getpid());
    EXPECT_EQ(probeBus(abstract, longLimit), BusState::absent);
    const RealBus hidden(abstract);
    EXPECT_EQ(probeBus(abstract, longLimit), BusState::answers);
}

TEST_F(BusProbeTest, NobodyIsThere) {
    EXPECT_EQ(probeBus(address(), longLimit), BusState::absent);
    { const Listener gone(path()); }
    ASSERT_TRUE(QFile::exists(path()));
    EXPECT_EQ(probeBus(address(), longLimit), BusState::absent);
}

TEST_F(BusProbeTest, OneThatIsSilentIsWaitedForNoLongerThanAllowed) {
    const Listener silent(path());
    const auto start = std::chrono::steady_clock::now();
    EXPECT_EQ(probeBus(address(), shortLimit), BusState::silent);
    const auto waited = std::chrono::steady_clock::now() - start;
    EXPECT_GE(waited, shortLimit);
    EXPECT_LT(waited, longLimit);
}

TEST_F(BusProbeTest, OneThatTakesNoMoreConnectionsIsSilent) {
    const Listener full(path(), 0);
    const sockaddr_un name = nameOf(path());
    std::vector<int> waiting;
    int result = 0;
    while (result == 0) {
        waiting.push_back(socket(AF_UNIX, SOCK_STREAM | SOCK_NONBLOCK, 0));
        result = connect(waiting.back(), reinterpret_cast<const sockaddr*>(&name), sizeof name);
    }
    EXPECT_EQ(errno, EAGAIN);
    EXPECT_EQ(probeBus(address(), shortLimit), BusState::silent);
    for (const int descriptor : waiting) {
        close(descriptor);
    }
}

TEST_F(BusProbeTest, OneThatLetsClientsInAndSaysNoMoreIsSilent) {
    Listener listener(path());
    listener.serveOne("OK 0123456789abcdef0123456789abcdef\r\n");
    EXPECT_EQ(probeBus(address(), shortLimit), BusState::silent);
}

TEST_F(BusProbeTest, OneThatNeverEndsItsLineIsSilent) {
    Listener listener(path());
    listener.serveOne("OK");
    EXPECT_EQ(probeBus(address(), shortLimit), BusState::silent);
}

TEST_F(BusProbeTest, OneThatClosesAtOnceIsSilent) {
    Listener listener(path());
    listener.serveOne("");
    EXPECT_EQ(probeBus(address(), longLimit), BusState::silent);
}

TEST_F(BusProbeTest, OneThatLetsClientsInByOtherMeansAnswers) {
    Listener listener(path());
    listener.serveOne("REJECTED DBUS_COOKIE_SHA1\r\n");
    EXPECT_EQ(probeBus(address(), longLimit), BusState::answers);
}

TEST_F(BusProbeTest, TheFirstAddressCountsAtWhichAnybodyIs) {
    const RealBus bus(address());
    const Listener silent(path("silent"));
    EXPECT_EQ(probeBus(address("nobody") + ';' + address() + ';' + address("silent"), longLimit), BusState::answers);
    EXPECT_EQ(probeBus(address("silent") + ';' + address(), shortLimit), BusState::silent);
    EXPECT_EQ(probeBus(address("nobody") + ';' + address("neither"), shortLimit), BusState::absent);
}

TEST_F(BusProbeTest, OtherKindsOfAddressesAreLeftToTheToolkit) {
    EXPECT_EQ(probeBus("tcp:host=localhost,port=1", shortLimit), BusState::answers);
    EXPECT_EQ(probeBus("disabled:", shortLimit), BusState::answers);
    EXPECT_EQ(probeBus("unix:path=" + QByteArray(200, 'x'), shortLimit), BusState::answers);
}

} // namespace
} // namespace velloran::tests
