#include "async/Observers.h"

#include <gtest/gtest.h>

#include <memory>
#include <optional>
#include <vector>

namespace velloran {

namespace {

using Values = std::vector<int>;

} // namespace

TEST(Observers, AreToldInTheOrderInWhichTheyWereAttached) {
    Observers<int> observers;
    Values seen;
    const Subscription one = observers.attach([&](int value) { seen.push_back(value); });
    const Subscription two = observers.attach([&](int value) { seen.push_back(value * 10); });
    observers.notify(3);
    EXPECT_EQ(seen, (Values{3, 30}));
}

TEST(Observers, KnowWhetherThereAreAny) {
    Observers<int> observers;
    EXPECT_TRUE(observers.isEmpty());
    {
        const Subscription one = observers.attach([](int) {});
        EXPECT_FALSE(observers.isEmpty());
    }
    EXPECT_TRUE(observers.isEmpty());
}

TEST(Observers, DetachedFunctionIsLetGoOf) {
    Observers<int> observers;
    const auto held = std::make_shared<int>(0);
    Subscription one = observers.attach([held](int) {});
    const Subscription two = observers.attach([](int) {});
    EXPECT_EQ(held.use_count(), 2);
    one.cancel();
    EXPECT_EQ(held.use_count(), 1);
    EXPECT_FALSE(observers.isEmpty()) << "the other one stays";
}

TEST(Observers, AttachedDuringANotificationIsNotToldOfIt) {
    Observers<int> observers;
    Values seen;
    std::optional<Subscription> late;
    const Subscription early = observers.attach([&](int value) {
        seen.push_back(value);
        if (!late) {
            late = observers.attach([&](int other) { seen.push_back(other * 10); });
        }
    });
    observers.notify(1);
    EXPECT_EQ(seen, Values{1});
    observers.notify(2);
    EXPECT_EQ(seen, (Values{1, 2, 20}));
}

TEST(Observers, DetachedDuringANotificationIsNotCalledAnyMore) {
    Observers<int> observers;
    Values seen;
    std::optional<Subscription> other;
    const Subscription one = observers.attach([&](int value) {
        seen.push_back(value);
        other.reset();
    });
    other = observers.attach([&](int value) { seen.push_back(value * 10); });
    observers.notify(1);
    EXPECT_EQ(seen, Values{1});
}

TEST(Observers, FunctionThatDetachesItselfLivesUntilItReturns) {
    Observers<int> observers;
    Values seen;
    std::optional<Subscription> self;
    self = observers.attach([&, held = std::make_shared<int>(7)](int) {
        self.reset();
        seen.push_back(*held);
    });
    observers.notify(1);
    observers.notify(2);
    EXPECT_EQ(seen, Values{7});
}

TEST(Observers, NotifyingFromInsideReachesEverybody) {
    Observers<int> observers;
    Values seen;
    const Subscription one = observers.attach([&](int value) {
        if (value == 1) {
            observers.notify(2);
        }
    });
    const Subscription two = observers.attach([&](int value) { seen.push_back(value); });
    observers.notify(1);
    EXPECT_EQ(seen, (Values{2, 1}));
}

TEST(Observers, MayGoBeforeTheirSubscriptions) {
    Subscription one;
    {
        Observers<int> observers;
        one = observers.attach([](int) {});
    }
    one.cancel();
}

TEST(Subscription, DetachesOnceAtItsEndOrWhenAssignedOver) {
    Values seen;
    {
        Subscription one([&] { seen.push_back(1); });
        Subscription two([&] { seen.push_back(2); });
        one = std::move(two);
        EXPECT_EQ(seen, Values{1});
        const Subscription three = std::move(one);
        EXPECT_EQ(seen, Values{1});
    }
    EXPECT_EQ(seen, (Values{1, 2}));
}

TEST(Subscription, SurvivesBeingAssignedToItself) {
    Values seen;
    {
        Subscription one([&] { seen.push_back(1); });
        Subscription& same = one;
        one = std::move(same);
        EXPECT_TRUE(seen.empty());
    }
    EXPECT_EQ(seen, Values{1});
}

} // namespace velloran
