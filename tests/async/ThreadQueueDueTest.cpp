#include "async/ThreadQueue.h"

#include <gtest/gtest.h>

#include <future>
#include <memory>
#include <vector>

// Jobs that are due at a moment.

namespace velloran {

namespace {

class ThreadQueueDueTest : public testing::Test {
protected:
    static constexpr std::chrono::milliseconds shortly{5};
    static constexpr std::chrono::hours farAway{1};

    static Moment now() { return std::chrono::steady_clock::now(); }
};

} // namespace

TEST_F(ThreadQueueDueTest, AJobIsDoneWhenItIsDueAndNotBefore) {
    ThreadQueue queue("velloran.engine");
    for (int round = 0; round < 3; ++round) {
        const Moment due = now() + shortly;
        std::promise<Moment> done;
        queue.asyncAt(due, [&] { done.set_value(now()); });
        EXPECT_GE(done.get_future().get(), due);
    }
}

TEST_F(ThreadQueueDueTest, JobThatIsLateIsDoneAtOnce) {
    ThreadQueue queue("velloran.engine");
    for (const Moment due : {now(), Moment(), Moment::min()}) {
        std::promise<void> done;
        queue.asyncAt(due, [&] { done.set_value(); });
        done.get_future().wait();
    }
}

TEST_F(ThreadQueueDueTest, TheOrderStaysWhateverIsDueFirst) {
    std::vector<int> order;
    std::vector<Moment> times;
    std::promise<void> last;
    const auto note = [&](int job) {
        return [&, job] {
            order.push_back(job);
            times.push_back(now());
        };
    };
    const Moment due = now() + shortly;
    ThreadQueue queue("velloran.engine");
    queue.asyncAt(due, note(1));
    queue.async(note(2));
    queue.asyncAt(due - shortly, note(3));
    queue.asyncAt(due + shortly, note(4));
    queue.async([&] { last.set_value(); });
    last.get_future().wait();
    EXPECT_EQ(order, (std::vector{1, 2, 3, 4}));
    EXPECT_GE(times.at(0), due);
    EXPECT_GE(times.at(3), due + shortly);
}

TEST_F(ThreadQueueDueTest, JobsMayHandOverJobsThatAreDueLater) {
    std::promise<Moment> done;
    const Moment due = now() + shortly;
    ThreadQueue queue("velloran.engine");
    queue.async([&] { queue.asyncAt(due, [&] { done.set_value(now()); }); });
    EXPECT_GE(done.get_future().get(), due);
}

TEST_F(ThreadQueueDueTest, AnEndDoesAtOnceWhatIsNotDueYet) {
    std::vector<int> order;
    const Moment due = now() + farAway;
    {
        ThreadQueue queue("velloran.engine");
        queue.asyncAt(due, [&] { order.push_back(1); });
        queue.asyncAt(Moment::max(), [&] { order.push_back(2); });
        queue.async([&] { order.push_back(3); });
    }
    EXPECT_EQ(order, (std::vector{1, 2, 3}));
    EXPECT_LT(now(), due);
}

TEST_F(ThreadQueueDueTest, AnEndDuringAJobDoesAtOnceWhatIsNotDueYet) {
    const Moment due = now() + farAway;
    auto queue = std::make_unique<ThreadQueue>("velloran.engine");
    std::promise<void> begun;
    bool isDone = false;
    queue->async([&, &waiting = *queue] {
        waiting.asyncAt(due, [&] { isDone = true; });
        begun.set_value();
    });
    begun.get_future().wait();
    queue.reset();
    EXPECT_TRUE(isDone);
    EXPECT_LT(now(), due);
}

} // namespace velloran
