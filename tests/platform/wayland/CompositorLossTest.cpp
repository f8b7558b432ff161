#include "async/SerialQueue.h"
#include "platform/wayland/VirtualPointerTest.h"
#include "platform/wayland/WaylandConnection.h"

#include <atomic>
#include <csignal>

namespace velloran::tests {

using platform::wayland::WaylandConnection;

class CompositorLossTest : public VirtualPointerTest {};

TEST_F(CompositorLossTest, ACompositorThatEndsIsToldOnceAndLostAtOnce) {
    connectToUsualCompositor();
    const int changesBefore = changes;
    compositor.reset();
    click(pointer->pointerEvents());
    EXPECT_FALSE(pointer->isTrusted()) << "whoever asks first notices";
    EXPECT_EQ(changes, changesBefore) << "told in a turn of the loop only";
    EXPECT_FALSE(click(pointer->pointerEvents()));
    ASSERT_TRUE(until([&] { return changes > changesBefore; }));
    EXPECT_EQ(pointer->offer(), Offer::missing);
    idle();
    EXPECT_EQ(changes, changesBefore + 1);
}

TEST_F(CompositorLossTest, AnIdleProgramIsToldToo) {
    connectToUsualCompositor();
    const int changesBefore = changes;
    compositor->endClients();
    ASSERT_TRUE(until([&] { return changes > changesBefore; }));
    EXPECT_FALSE(pointer->isTrusted());
}

TEST_F(CompositorLossTest, ACompositorThatComesBackIsFollowed) {
    connectToUsualCompositor();
    compositor.reset();
    ASSERT_TRUE(untilMissing());
    compositor = std::make_unique<FakeCompositor>(loop, path());
    compositor->addSeat("seat0", true);
    compositor->offerPointers();
    ASSERT_TRUE(untilOffered());
    EXPECT_TRUE(click(pointer->pointerEvents()));
    ASSERT_TRUE(untilDeeds(4));
    EXPECT_TRUE(areClicks(1));
}

TEST_F(CompositorLossTest, ACompositorThatComesLateIsFollowed) {
    compositor.reset();
    connect();
    EXPECT_EQ(pointer->offer(), Offer::missing);
    compositor = std::make_unique<FakeCompositor>(loop, path());
    compositor->addSeat("seat0", true);
    compositor->offerPointers();
    ASSERT_TRUE(until([this] { return changes > 0; }));
    EXPECT_EQ(pointer->offer(), Offer::offered);
}

TEST_F(CompositorLossTest, ClickingGoesOnHarmlesslyWhileTheCompositorEnds) {
    connectToUsualCompositor();
    std::atomic<int> clicks = 0;
    std::atomic<bool> isEnding = false;
    auto queue = loop.makeSerialQueue("clicks");
    queue->async([&] {
        while (!isEnding) {
            click(pointer->pointerEvents());
            ++clicks;
        }
    });
    ASSERT_TRUE(untilDeeds(100));
    compositor.reset();
    ASSERT_TRUE(untilMissing());
    const int clicksAtLoss = clicks;
    ASSERT_TRUE(until([&] { return clicks > clicksAtLoss + 10; }));
    isEnding = true;
    queue.reset();
}

TEST_F(CompositorLossTest, TheLoopComesToRestAfterALoss) {
    connectToUsualCompositor();
    compositor.reset();
    ASSERT_TRUE(untilMissing());
    idle();
    EXPECT_LT(turnsDuring(0.2), 10) << "a broken connection can be read for ever";
}

TEST_F(CompositorLossTest, WhoeverIsToldMayEndIt) {
    connectToUsualCompositor();
    pointer->onChanged([this] { pointer.reset(); });
    compositor->withdrawPointers();
    ASSERT_TRUE(until([this] { return pointer == nullptr; }));
    idle();

    connect();
    ASSERT_TRUE(untilMissing());
    pointer->onChanged([this] { pointer.reset(); });
    compositor->endClients();
    ASSERT_TRUE(until([this] { return pointer == nullptr; }));
    idle();
}

TEST_F(CompositorLossTest, NobodyIsToldAfterItsEnd) {
    connectToUsualCompositor();
    compositor->withdrawPointers();
    pointer.reset();
    const int changesBefore = changes;
    idle();
    EXPECT_EQ(changes, changesBefore);
    ASSERT_TRUE(until([this] { return compositor->pointers == 0; }));
}

TEST_F(CompositorLossTest, ABrokenPipeDoesNotEndTheProgram) {
    std::signal(SIGPIPE, SIG_DFL);
    connectToUsualCompositor();
    compositor.reset();
    for (int i = 0; i < 3; ++i) {
        click(pointer->pointerEvents());
    }
    EXPECT_FALSE(pointer->isTrusted());
}

TEST_F(CompositorLossTest, AConnectionThatTakesInNothingMoreIsLost) {
    int losses = 0;
    const auto connection = WaylandConnection::open(loop, path(), [&losses] { ++losses; });
    ASSERT_NE(connection, nullptr);
    compositor->pause();
    for (int i = 0; i < 100'000 && !connection->isLost(); ++i) {
        connection->send([&] { wl_callback_destroy(wl_display_sync(connection->display())); });
    }
    EXPECT_TRUE(connection->isLost());
    EXPECT_EQ(losses, 0) << "told in a turn of the loop only";
    ASSERT_TRUE(until([&losses] { return losses > 0; }));
    idle();
    EXPECT_EQ(losses, 1);
}

TEST_F(CompositorLossTest, AConnectionThatIsKeptLetsTheLoopRest) {
    int losses = 0;
    const auto connection = WaylandConnection::open(loop, path(), [&losses] { ++losses; });
    ASSERT_NE(connection, nullptr);
    compositor.reset();
    ASSERT_TRUE(until([&losses] { return losses > 0; }));
    EXPECT_LT(turnsDuring(0.2), 10) << "a broken connection can be read for ever";
    EXPECT_EQ(losses, 1);
}

TEST_F(CompositorLossTest, WhereNobodyListensThereIsNoConnection) {
    EXPECT_EQ(WaylandConnection::open(loop, path() + "-of-nobody", {}), nullptr);
}

} // namespace velloran::tests
