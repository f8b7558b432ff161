#include "async/ConnectionLoss.h"

#include "fakes/VirtualLoop.h"

#include <gtest/gtest.h>

#include <memory>
#include <thread>
#include <vector>

namespace velloran {

TEST(ConnectionLoss, ReportsFromManyThreadsAreToldOnceInATurn) {
    fakes::VirtualLoop loop;
    int told = 0;
    ConnectionLoss loss(loop, [&told] { ++told; });
    loop.runDue();
    EXPECT_FALSE(loss.isLost());
    EXPECT_EQ(told, 0);
    {
        std::vector<std::jthread> threads;
        for (int i = 0; i < 8; ++i) {
            threads.emplace_back([&loss] {
                loss.report();
                EXPECT_TRUE(loss.isLost());
            });
        }
    }
    EXPECT_TRUE(loss.isLost());
    EXPECT_EQ(told, 0);
    loop.runDue();
    EXPECT_EQ(told, 1);
    loss.report();
    loop.runDue();
    EXPECT_EQ(told, 1);
}

TEST(ConnectionLoss, NothingIsToldAfterItsEnd) {
    fakes::VirtualLoop loop;
    int told = 0;
    {
        ConnectionLoss loss(loop, [&told] { ++told; });
        loss.report();
    }
    loop.runDue();
    EXPECT_EQ(told, 0);
}

TEST(ConnectionLoss, TheReceiverMayEndIt) {
    fakes::VirtualLoop loop;
    int told = 0;
    std::unique_ptr<ConnectionLoss> loss;
    loss = std::make_unique<ConnectionLoss>(loop, [&told, &loss, one = std::make_shared<int>(1)] {
        loss.reset();
        told += *one;
    });
    loss->report();
    loop.runDue();
    EXPECT_EQ(told, 1);
    EXPECT_EQ(loss, nullptr);
}

TEST(ConnectionLoss, NobodyNeedsToBeTold) {
    fakes::VirtualLoop loop;
    ConnectionLoss loss(loop, {});
    loss.report();
    loop.runDue();
    EXPECT_TRUE(loss.isLost());
}

} // namespace velloran
