#include "platform/qt/QtEventLoopBench.h"

#include <fcntl.h>
#include <unistd.h>

#include <array>
#include <memory>

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
    auto watch = loop.watch(pipe.readEnd(), [this, &pipe] {
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

TEST_F(QtEventLoopTest, AWatchMayEndItself) {
    const Pipe pipe;
    ASSERT_TRUE(pipe.isOpen());
    std::unique_ptr<EventLoop::Watch> watch;
    watch = loop.watch(pipe.readEnd(), [this, &watch] {
        watch.reset();
        journal.emplace_back("byte");
    });
    pipe.put();
    turnUntilCalls(1);
    turnUntilQuiet();
    EXPECT_EQ(journal.size(), 1U);
}

} // namespace velloran::platform::qt
