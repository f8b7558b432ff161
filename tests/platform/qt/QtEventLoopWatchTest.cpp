#include "platform/qt/QtEventLoopBench.h"

#include <fcntl.h>
#include <sys/socket.h>
#include <unistd.h>

#include <array>
#include <memory>
#include <string>

namespace velloran::platform::qt {

namespace {

class Pipe {
public:
    Pipe() { isOpen_ = pipe2(ends_.data(), O_CLOEXEC | O_NONBLOCK) == 0; }

    Pipe(const Pipe&) = delete;
    Pipe& operator=(const Pipe&) = delete;

    ~Pipe() {
        close(ends_[0]);
        close(ends_[1]);
    }

    [[nodiscard]] bool isOpen() const { return isOpen_; }

    [[nodiscard]] int readEnd() const { return ends_[0]; }

    [[nodiscard]] int writeEnd() const { return ends_[1]; }

    /// Puts in what there is room for.
    void fill() const {
        const std::array<char, 4096> bytes{};
        while (write(ends_[1], bytes.data(), bytes.size()) > 0) {
        }
    }

    /// Takes out what there is.
    void empty() const {
        std::array<char, 4096> bytes{};
        while (read(ends_[0], bytes.data(), bytes.size()) > 0) {
        }
    }

    void put() const { EXPECT_EQ(write(ends_[1], "x", 1), 1); }

    void take() const {
        char byte = 0;
        EXPECT_EQ(read(ends_[0], &byte, 1), 1);
    }

private:
    std::array<int, 2> ends_{};
    bool isOpen_ = false;
};

} // namespace

TEST_F(QtEventLoopTest, AWatchTellsOfEveryByteUntilItEnds) {
    const Pipe pipe;
    ASSERT_TRUE(pipe.isOpen());
    auto watch = loop.watch(pipe.readEnd(), EventLoop::Readiness::readable, [this, &pipe] {
        pipe.take();
        journal.emplace_back("byte");
    });
    turnUntilQuiet();
    EXPECT_TRUE(journal.empty());
    pipe.put();
    pipe.put();
    turnUntilCalls(2);
    watch.reset();
    pipe.put();
    turnUntilQuiet();
    EXPECT_EQ(journal.size(), 2U);
}

TEST_F(QtEventLoopTest, AWatchForWritingTellsOfRoomUntilItEnds) {
    const Pipe pipe;
    ASSERT_TRUE(pipe.isOpen());
    pipe.fill();
    auto watch = loop.watch(pipe.writeEnd(), EventLoop::Readiness::writable, note("room"));
    turnUntilQuiet();
    EXPECT_TRUE(journal.empty());
    pipe.empty();
    turnUntilCalls(2);
    watch.reset();
    journal.clear();
    turnUntilQuiet();
    EXPECT_TRUE(journal.empty());
}

TEST_F(QtEventLoopTest, OneDescriptorIsWatchedForBoth) {
    std::array<int, 2> ends{};
    ASSERT_EQ(socketpair(AF_UNIX, SOCK_STREAM | SOCK_NONBLOCK | SOCK_CLOEXEC, 0, ends.data()), 0);
    {
        const auto reading = loop.watch(ends[0], EventLoop::Readiness::readable, note("bytes"));
        auto writing = loop.watch(ends[0], EventLoop::Readiness::writable, note("room"));
        turnUntilCalls(1);
        EXPECT_EQ(journal.front(), "room");
        writing.reset();
        journal.clear();
        turnUntilQuiet();
        EXPECT_TRUE(journal.empty());
        ASSERT_EQ(write(ends[1], "x", 1), 1);
        turnUntilCalls(1);
        EXPECT_EQ(journal.front(), "bytes");
    }
    close(ends[0]);
    close(ends[1]);
}

TEST_F(QtEventLoopTest, AWatchMayEndItself) {
    const Pipe pipe;
    ASSERT_TRUE(pipe.isOpen());
    std::unique_ptr<EventLoop::Watch> watch;
    watch = loop.watch(pipe.readEnd(), EventLoop::Readiness::readable,
                       [this, &watch, name = std::make_shared<std::string>("byte")] {
                           watch.reset();
                           journal.push_back(*name);
                       });
    pipe.put();
    turnUntilCalls(1);
    turnUntilQuiet();
    EXPECT_EQ(journal, Journal{"byte"});
}

TEST_F(QtEventLoopTest, AWatchMayEndAnotherThatIsReadyToo) {
    const Pipe pipes[2];
    ASSERT_TRUE(pipes[0].isOpen() && pipes[1].isOpen());
    std::unique_ptr<EventLoop::Watch> watches[2];
    for (const int index : {0, 1}) {
        watches[index] = loop.watch(pipes[index].readEnd(), EventLoop::Readiness::readable, [this, &watches] {
            watches[0].reset();
            watches[1].reset();
            journal.emplace_back("byte");
        });
        pipes[index].put();
    }
    turnUntilCalls(1);
    turnUntilQuiet();
    EXPECT_EQ(journal, Journal{"byte"});
}

} // namespace velloran::platform::qt
