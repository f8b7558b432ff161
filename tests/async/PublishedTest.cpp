#include "async/Published.h"

#include "fakes/VirtualLoop.h"

#include <gtest/gtest.h>

#include <memory>
#include <new>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace velloran {

namespace {

using Values = std::vector<int>;

auto into(Values& values) {
    return [&values](const int& value) { values.push_back(value); };
}

} // namespace

TEST(Published, StreamBeginsWithTheCurrentValueAndEmitsEveryAssignment) {
    Published<int> number(1);
    Values seen;
    const Subscription subscription = number.stream().subscribe(into(seen));
    EXPECT_EQ(seen, Values{1});
    number.set(2);
    number.set(2);
    number.modify([](int& value) { value += 5; });
    EXPECT_EQ(seen, (Values{1, 2, 2, 7}));
    EXPECT_EQ(number.get(), 7);
}

TEST(Published, WillChangeComesWhileTheOldValueIsThere) {
    Published<int> number(1);
    Values seen;
    const Subscription subscription = number.observeWillChange([&] { seen.push_back(number.get()); });
    number.set(2);
    number.set(2);
    EXPECT_EQ(seen, (Values{1, 2}));
}

TEST(Published, UnsubscribedObserversHearNothing) {
    Published<int> number(1);
    Values seen;
    {
        const Subscription subscription = number.stream().subscribe(into(seen));
        const Subscription willChange = number.observeWillChange([&] { seen.push_back(-1); });
    }
    number.set(2);
    EXPECT_EQ(seen, Values{1});
}

TEST(Published, AssigningFromInsideReachesEverybodyInOrder) {
    Published<int> number(0);
    Values first;
    Values second;
    const Subscription one = number.stream().subscribe([&](const int& value) {
        first.push_back(value);
        if (value == 1) {
            number.set(2);
            EXPECT_EQ(number.get(), 2);
        }
    });
    const Subscription two = number.stream().subscribe(into(second));
    number.set(1);
    EXPECT_EQ(first, (Values{0, 1, 2}));
    EXPECT_EQ(second, (Values{0, 1, 2}));
}

TEST(Published, ModifyBuildsOnWhatAWillChangeObserverAssigned) {
    Published<int> number(1);
    Values seen;
    const Subscription stream = number.stream().subscribe(into(seen));
    bool isFirst = true;
    const Subscription willChange = number.observeWillChange([&] {
        if (std::exchange(isFirst, false)) {
            number.set(10);
        }
    });
    number.modify([](int& value) { value += 5; });
    EXPECT_EQ(number.get(), 15);
    EXPECT_EQ(seen, (Values{1, 10, 15}));
}

TEST(Published, SetReplacesWhatAWillChangeObserverAssigned) {
    Published<int> number(1);
    Values seen;
    const Subscription stream = number.stream().subscribe(into(seen));
    bool isFirst = true;
    const Subscription willChange = number.observeWillChange([&] {
        if (std::exchange(isFirst, false)) {
            number.set(10);
        }
    });
    number.set(5);
    EXPECT_EQ(seen, (Values{1, 10, 5}));
}

TEST(Published, ChangeThatDecidesAgainstItIsNotPassedOn) {
    Published<int> number(1);
    Values seen;
    const Subscription stream = number.stream().subscribe(into(seen));
    int announced = 0;
    const Subscription willChange = number.observeWillChange([&] { ++announced; });
    const auto addIfOdd = [](int& value) {
        if (value % 2 == 0) {
            return false;
        }
        value += 1;
        return true;
    };
    number.modify(addIfOdd);
    number.modify(addIfOdd);
    EXPECT_EQ(number.get(), 2);
    EXPECT_EQ(seen, (Values{1, 2}));
    EXPECT_EQ(announced, 2) << "it is told before the decision";
}

TEST(Published, UnsubscribingDuringANotification) {
    Published<int> number(0);
    Values seen;
    std::optional<Subscription> self;
    std::optional<Subscription> other;
    self = number.stream().subscribe([&](const int& value) {
        seen.push_back(value);
        if (value == 1) {
            self.reset();
            other.reset();
        }
    });
    other = number.stream().subscribe([&](const int& value) { seen.push_back(value + 100); });
    number.set(1);
    number.set(2);
    EXPECT_EQ(seen, (Values{0, 100, 1}));
}

TEST(Published, SubscribingDuringANotificationGetsEachValueOnce) {
    Published<int> number(0);
    Values late;
    Subscription inner;
    const Subscription outer = number.stream().subscribe([&](const int& value) {
        if (value == 1) {
            number.set(2);
            inner = number.stream().subscribe(into(late));
        }
    });
    number.set(1);
    EXPECT_EQ(late, Values{2});
    number.set(3);
    EXPECT_EQ(late, (Values{2, 3}));
}

TEST(Published, AnObserverMayEndTheOwner) {
    auto number = std::make_unique<Published<int>>(0);
    Values seen;
    const Subscription ending = number->observeWillChange([&] { number.reset(); });
    Published<int>& alias = *number;
    alias.set(1);
    EXPECT_EQ(number, nullptr);
}

TEST(Published, SubscriptionMayOutliveTheValue) {
    Subscription subscription;
    Values seen;
    {
        Published<int> number(5);
        subscription = number.stream().subscribe(into(seen));
    }
    subscription.cancel();
    EXPECT_EQ(seen, Values{5});
}

TEST(Published, StreamMayOutliveTheValue) {
    std::optional<Stream<int>> stream;
    {
        const Published<int> number(5);
        stream = number.stream();
    }
    Values seen;
    const Subscription subscription = stream->subscribe(into(seen));
    EXPECT_TRUE(seen.empty());
}

TEST(Stream, MapsAndRemovesDuplicates) {
    Published<int> number(1);
    std::vector<std::string> seen;
    const Subscription subscription = number.stream()
                                          .map([](int value) { return std::to_string(value / 10); })
                                          .removeDuplicates()
                                          .subscribe([&](const std::string& text) { seen.push_back(text); });
    for (const int value : {2, 10, 11, 19, 3}) {
        number.set(value);
    }
    EXPECT_EQ(seen, (std::vector<std::string>{"0", "1", "0"}));
}

TEST(Stream, FirstValueIsNoDuplicateWhateverItIs) {
    for (const int first : {0, -1, 7}) {
        const Published<int> number(first);
        Values seen;
        const Subscription subscription = number.stream().removeDuplicates().subscribe(into(seen));
        EXPECT_EQ(seen, Values{first});
    }
}

TEST(Stream, EachSubscriberHasItsOwnMemoryOfDuplicates) {
    Published<int> number(1);
    const auto stream = number.stream().removeDuplicates();
    Values one;
    Values two;
    const Subscription first = stream.subscribe(into(one));
    number.set(2);
    const Subscription second = stream.subscribe(into(two));
    number.set(2);
    number.set(1);
    EXPECT_EQ(one, (Values{1, 2, 1}));
    EXPECT_EQ(two, (Values{2, 1}));
}

TEST(Stream, DebouncePassesOnTheLastOfABurst) {
    fakes::VirtualLoop loop;
    Published<int> number(1);
    Values seen;
    const Subscription subscription = number.stream().debounce(loop, 250'000'000).subscribe(into(seen));
    loop.advance(0.249);
    number.set(2);
    loop.advance(0.2);
    number.set(3);
    loop.advance(0.249);
    EXPECT_TRUE(seen.empty());
    loop.advance(0.001);
    EXPECT_EQ(seen, Values{3});
    loop.advance(10.0);
    EXPECT_EQ(seen, Values{3});
    number.set(3);
    loop.advance(0.25);
    EXPECT_EQ(seen, (Values{3, 3}));
}

TEST(Stream, EndingADebouncedSubscriptionEndsTheWait) {
    fakes::VirtualLoop loop;
    Published<int> number(1);
    Values seen;
    {
        const Subscription subscription = number.stream().debounce(loop, 250'000'000).subscribe(into(seen));
        EXPECT_EQ(loop.pendingCalls(), 1U);
    }
    EXPECT_EQ(loop.pendingCalls(), 0U);
    loop.advance(1.0);
    EXPECT_TRUE(seen.empty());
}

TEST(Published, AnObserverThatThrowsKeepsNobodyFromTheNextValue) {
    Published<int> value(1);
    std::vector<int> seen;
    const Subscription thrower = value.stream().subscribe([](int now) {
        if (now == 2) {
            throw std::bad_alloc();
        }
    });
    const Subscription watcher = value.stream().subscribe([&](int now) { seen.push_back(now); });
    EXPECT_THROW(value.set(2), std::bad_alloc);
    EXPECT_EQ(value.get(), 2);
    value.set(3);
    EXPECT_EQ(seen, (std::vector{1, 3}));
}

} // namespace velloran
